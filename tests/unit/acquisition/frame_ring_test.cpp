// frame_ring_test.cpp
// The frames that circulate: announced once, queued under a new number each time, freed at the end.
#include "acquisition/frame_ring.h"

#include <algorithm>
#include <cstring>

#include "VimbaC.h"
#include "acquisition/frame_description.h"
#include "diagnostics/log_collector.h"
#include "unit/acquisition/scripted_camera.h"

namespace {

using Texts = std::vector<std::wstring>;
using Numbers = std::vector<std::uint64_t>;

Numbers IdsOf(const std::vector<const VmbFrame_t*>& frames) {
  Numbers ids;
  for (const VmbFrame_t* frame : frames) ids.push_back(FrameContextId(*frame));
  return ids;
}

Numbers UpTo(std::uint64_t end) {
  Numbers numbers;
  for (std::uint64_t number = 0; number < end; ++number) numbers.push_back(number);
  return numbers;
}

struct Ring : ScriptedCamera {
  bool Fill() {
    BLogCollector log(L"title");
    return ring.FrameQueueFill(log);
  }
  bool Flush() {
    BLogCollector log(L"title");
    return ring.RequeueFrames(log);
  }
};

TEST_F(Ring, AnnouncesEveryFrameUnderItsIndexWithABufferOfItsOwn) {
  ASSERT_TRUE(ring.AnnounceFrames());

  const std::vector<const VmbFrame_t*> frames = Library().Announced();
  EXPECT_EQ(IdsOf(frames), UpTo(kRingFrames));
  std::vector<const void*> buffers;
  for (const VmbFrame_t* frame : frames) {
    EXPECT_EQ(frame->bufferSize, kPayloadBytes);
    EXPECT_EQ(frame->context[0], this);
    buffers.push_back(frame->buffer);
  }
  std::sort(buffers.begin(), buffers.end());
  EXPECT_EQ(std::adjacent_find(buffers.begin(), buffers.end()), buffers.end()) << "a buffer is shared";
  EXPECT_EQ(ring.PayloadSize(), kPayloadBytes);
  EXPECT_EQ(ring.Records().data(), frames.front());
  EXPECT_EQ(ring.Records().size(), frames.size());
}

TEST_F(Ring, AnnouncesRecordsOfTheLibrarysSize) {
  ASSERT_TRUE(ring.AnnounceFrames());
  const std::vector<std::string> calls = Library().Calls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "VmbFrameAnnounce(104)"), kRingFrames);
}

TEST_F(Ring, DoesNotAskWhetherTheLibraryTakesAFrame) {
  Library().Fail("VmbFrameAnnounce", VmbErrorResources);
  EXPECT_TRUE(ring.AnnounceFrames());
  EXPECT_TRUE(output.Messages().empty());
}

TEST_F(Ring, WithoutAPayloadSizeAnnouncesNothing) {
  Library().Fail("VmbFeatureIntGet", VmbErrorNotFound, "PayloadSize");
  EXPECT_FALSE(ring.AnnounceFrames());
  EXPECT_EQ(output.WithCaption(L"!"), Texts{L"PayloadSize failed"});
  EXPECT_TRUE(Library().Announced().empty());
}

TEST_F(Ring, RefusesAPayloadThatIsNoneOrCannotBeBelieved) {
  EXPECT_EQ(FrameRing::kLargestPayloadBytes, 1'073'741'824);
  for (const VmbInt64_t bytes : {VmbInt64_t{0}, VmbInt64_t{-1}, FrameRing::kLargestPayloadBytes + 1}) {
    Library().SetInteger(camera.Handle(), "PayloadSize", bytes);
    EXPECT_FALSE(ring.AnnounceFrames()) << bytes;
    EXPECT_EQ(ring.PayloadSize(), 0);
  }
  EXPECT_TRUE(Library().Announced().empty());
}

TEST_F(Ring, IsFilledWithEveryFrameUnderANumberOfItsOwn) {
  ASSERT_TRUE(ring.AnnounceFrames());

  EXPECT_TRUE(Fill());

  EXPECT_EQ(Library().Queued(), Library().Announced());
  EXPECT_EQ(IdsOf(Library().Queued()), UpTo(kRingFrames));
  EXPECT_EQ(Lines(L"title"), (Texts{L"FrameQueueFill", L"End"}));
}

TEST_F(Ring, AFrameMayComeBackBeforeTheLibraryHasAnswered) {
  ASSERT_TRUE(ring.AnnounceFrames());
  std::size_t came_back = 0;
  Library().OnQueued([&](const VmbFrame_t* frame) {
    came_back += ring.Take(const_cast<VmbFrame_t*>(frame)).trust == ArrivedFrame::Trust::kAsAnnounced;
  });

  EXPECT_TRUE(Fill());

  EXPECT_EQ(came_back, kRingFrames);
  for (const VmbFrame_t* frame : Library().Announced()) {
    EXPECT_EQ(ring.Take(const_cast<VmbFrame_t*>(frame)).trust, ArrivedFrame::Trust::kInHand) << "it is still in hand";
  }
}

TEST_F(Ring, FillingEndsAtTheFirstRefusal) {
  ASSERT_TRUE(ring.AnnounceFrames());
  Library().ClearCalls();
  Library().Fail("VmbCaptureFrameQueue", VmbErrorInvalidCall);

  EXPECT_FALSE(Fill());

  EXPECT_EQ(Library().Calls(), std::vector<std::string>{"VmbCaptureFrameQueue()"});
  EXPECT_EQ(Lines(L"title"), (Texts{L"FrameQueueFill", L"QueueFrame failed", L"End"}));
}

TEST_F(Ring, NoNumberIsGivenTwice) {
  ASSERT_TRUE(ring.AnnounceFrames());
  ASSERT_TRUE(Fill());
  VmbFrame_t frame = *Library().Queued().front();

  EXPECT_EQ(ring.ReQueueFrame(&frame), VmbErrorSuccess);
  EXPECT_EQ(FrameContextId(frame), kRingFrames);
  Library().Fail("VmbCaptureFrameQueue", VmbErrorOther);
  EXPECT_EQ(ring.ReQueueFrame(&frame), VmbErrorOther);

  EXPECT_EQ(FrameContextId(frame), kRingFrames + 1) << "a refused frame has used a number up";
}

TEST_F(Ring, FlushingOnlyTakesTheFramesBack) {
  ASSERT_TRUE(ring.AnnounceFrames());
  ASSERT_TRUE(Fill());
  Library().ClearCalls();
  output.Clear();

  EXPECT_TRUE(Flush());

  EXPECT_TRUE(Library().Queued().empty());
  EXPECT_EQ(Library().Calls(), std::vector<std::string>{"VmbCaptureQueueFlush()"});
  EXPECT_EQ(Lines(L"title"), (Texts{L"RequeueFrames", L"RequeueFrames: VmbCaptureQueueFlush", L"End"}));
}

TEST_F(Ring, AFlushThatFailsIsReported) {
  Library().Fail("VmbCaptureQueueFlush", VmbErrorOther);
  EXPECT_FALSE(Flush());
  EXPECT_EQ(Lines(L"title"), (Texts{L"RequeueFrames", L"CaptureQueueClear failed", L"End"}));
}

// The address sanitizer sees a touch of what is freed, the leak sanitizer what is forgotten.
TEST_F(Ring, FramesThatWereNotGivenBackAreKeptUntilTheSystemIsDown) {
  ASSERT_TRUE(ring.AnnounceFrames());
  auto* const record = const_cast<VmbFrame_t*>(Library().Announced().front());
  ring.FreeFrames(false);
  record->receiveStatus = VmbFrameStatusIncomplete;
  std::memset(record->buffer, 1, record->bufferSize);
  FrameRing::FreeUnreturnedFrames();
}

}  // namespace
