// callbacks_test.cpp
// On which thread frames call back, and what may be called from there.
#include <atomic>
#include <future>
#include <set>
#include <thread>
#include <tuple>

#include "bmutex.h"
#include "camera_under_test.h"

namespace {

struct Callbacks : CameraTest {
  // After a capture has ended: receives frames with another ring. A callback of the first ring that is late would come
  // meanwhile. A camera may learn only when it starts where its frames are to go.
  void ExpectNoMoreOf(FrameRing& ended) {
    const std::size_t arrived = ended.Arrived();
    EXPECT_EQ(VmbCaptureQueueFlush(camera), VmbErrorSuccess);
    FrameRing next(camera, 3);
    RunCommand(camera, "AcquisitionStop");
    next.Start();
    RunCommand(camera, "AcquisitionStart");
    next.WaitFor(3);
    EXPECT_EQ(ended.Arrived(), arrived);
  }
};

TEST_F(Callbacks, MayQueueTheirFramesAgain) {
  FrameRing ring(camera, 2);
  ring.KeepQueued();
  ring.Start();

  RunCommand(camera, "AcquisitionStart");

  EXPECT_GE(ring.WaitFor(10).size(), 10u);
}

TEST_F(Callbacks, OfOneCameraComeOneAfterAnotherOnOneThread) {
  std::atomic<int> running{0};
  std::atomic<bool> overlapped{false};
  BMutex mutex;
  std::set<std::thread::id> threads;
  FrameRing ring(camera, 4);
  ring.on_frame = [&](VmbFrame_t& frame) {
    if (++running > 1) overlapped = true;
    {
      const BMutexLock lock(mutex);
      threads.insert(std::this_thread::get_id());
    }
    std::ignore = ring.Queue(frame);
    std::this_thread::yield();
    --running;
  };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(20);
  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);

  EXPECT_FALSE(overlapped);
  EXPECT_EQ(threads.size(), 1u);
  EXPECT_EQ(threads.count(std::this_thread::get_id()), 0u);
}

TEST_F(Callbacks, AreOverWhenTheEndReturns) {
  constexpr std::size_t kSpareFrames = 5'000;
  std::promise<void> entered;
  std::atomic<bool> returned{false};
  FrameRing spare(camera, kSpareFrames, 1);
  FrameRing ring(camera, 2);
  ring.on_frame = [&](VmbFrame_t&) {
    entered.set_value();
    // Queueing is refused from the time on at which VmbCaptureEnd waits for this callback.
    std::size_t queued = 0;
    while (queued < kSpareFrames && spare.Queue(queued) == VmbErrorSuccess) {
      ++queued;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    returned = queued < kSpareFrames;
  };
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  EXPECT_EQ(ring.Queue(0), VmbErrorSuccess);
  RunCommand(camera, "AcquisitionStart");
  ASSERT_EQ(entered.get_future().wait_for(kDeadline), std::future_status::ready);

  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);

  EXPECT_TRUE(returned);
  EXPECT_EQ(ring.Arrived(), 1u);
  ExpectNoMoreOf(spare);
}

TEST_F(Callbacks, DoNotFollowAnEndAmongStreamingFrames) {
  FrameRing ring(camera, 4);
  ring.KeepQueued();
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(4);

  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);

  ExpectNoMoreOf(ring);
}

TEST_F(Callbacks, MayEndTheCapture) {
  VmbError_t answer = VmbErrorOther;
  FrameRing ring(camera, 3);
  ring.on_frame = [&](VmbFrame_t&) { answer = VmbCaptureEnd(camera); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);
  // Waits for the callback, should it still run.
  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);

  EXPECT_EQ(answer, VmbErrorSuccess);
  EXPECT_EQ(ring.Arrived(), 1u);
  ExpectNoMoreOf(ring);
}

TEST_F(Callbacks, MayFlushTheQueue) {
  VmbError_t answer = VmbErrorOther;
  VmbError_t queued = VmbErrorOther;
  std::atomic<int> calls{0};
  FrameRing ring(camera, 3);
  ring.on_frame = [&](VmbFrame_t&) {
    if (++calls > 1) return;
    answer = VmbCaptureQueueFlush(camera);
    queued = ring.Queue(2);
  };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(2);

  EXPECT_EQ(answer, VmbErrorSuccess);
  EXPECT_EQ(queued, VmbErrorSuccess);
  EXPECT_EQ(frames[0].buffer, ring.Buffer(0).data());
  EXPECT_EQ(frames[1].buffer, ring.Buffer(2).data());
}

TEST_F(Callbacks, MayAskForFeatures) {
  VmbInt64_t width = 0;
  VmbError_t answer = VmbErrorOther;
  FrameRing ring(camera, 1);
  ring.on_frame = [&](VmbFrame_t&) { answer = VmbFeatureIntGet(camera, "Width", &width); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);

  EXPECT_EQ(answer, VmbErrorSuccess);
  EXPECT_EQ(width, kWidth);
}

TEST_F(Callbacks, MayBeNone) {
  FrameRing ring(camera, 2);
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbCaptureFrameQueue(camera, &ring.Frame(0), nullptr), VmbErrorSuccess);
  EXPECT_EQ(ring.Queue(1), VmbErrorSuccess);

  RunCommand(camera, "AcquisitionStart");

  EXPECT_EQ(ring.WaitFor(1).front().buffer, ring.Buffer(1).data());
}

}  // namespace
