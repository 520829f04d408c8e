// frame_handlers_test.cpp
// What the module has beside its registered handler: the synchronous one, the flush, and the camera's clock.
#include <array>
#include <cstring>

#include "acquisition/frame_description.h"
#include "diagnostics/log_collector.h"
#include "unit/acquisition/opened_implementation.h"

namespace {

using Texts = std::vector<std::wstring>;
using Implementation = BVimbaImagingDeviceImpl;

// The ring, its flush and the frame memory are the object's own. An explicit instantiation may name them.
struct Ring {
  using Type = std::array<VmbFrame_t, 10> Implementation::*;
  friend Type MemberOf(Ring);
};
struct Flush {
  using Type = bool (Implementation::*)(BLogCollector&);
  friend Type MemberOf(Flush);
};
struct Blocks {
  using Type = std::shared_ptr<FrameBlocks> Implementation::*;
  friend Type MemberOf(Blocks);
};
template <class Tag, typename Tag::Type kMember>
struct Exposed {
  friend typename Tag::Type MemberOf(Tag) { return kMember; }
};
template struct Exposed<Ring, &Implementation::m_frames>;
template struct Exposed<Blocks, &Implementation::m_frame_blocks>;
template struct Exposed<Flush, &Implementation::RequeueFrames>;

struct RequeueFrames : OpenedImplementation {
  bool Flushed() {
    BLogCollector log(L"title");
    return (implementation.*MemberOf(Flush()))(log);
  }
};

TEST_F(RequeueFrames, OnlyTakesTheFramesBack) {
  ASSERT_EQ(10, QueuedFrames());
  EXPECT_TRUE(Flushed());
  EXPECT_EQ(0, QueuedFrames());
  EXPECT_EQ((Texts{L"RequeueFrames", L"RequeueFrames: VmbCaptureQueueFlush", L"End"}), Lines(L"title"));
  EXPECT_EQ(std::vector<std::string>{"VmbCaptureQueueFlush()"}, cameras.Calls());
}

TEST_F(RequeueFrames, ThatFailsIsReported) {
  cameras.FailCall("VmbCaptureQueueFlush", "", -13);
  EXPECT_FALSE(Flushed());
  EXPECT_EQ((Texts{L"RequeueFrames", L"CaptureQueueClear failed", L"End"}), Lines(L"title"));
}

// Ten blocks for such frames are more than may lie idle between acquisitions.
struct FrameMemory : OpenedImplementation {
  static constexpr int kDelivered = 8;

  FrameMemory() : OpenedImplementation(SimulatedCamera().Sensor(1280, 1024).With("scene", "none")) {}

  std::size_t IdleBytes() const { return (implementation.*MemberOf(Blocks()))->IdleBytes(); }
  void UseManyBlocksAtOnce() {
    for (int i = 0; i < kDelivered; ++i) cameras.Deliver();
    ASSERT_TRUE(AllFramesComeBack());  // so every copy is in the queue
    for (int i = 0; i < kDelivered; ++i) ASSERT_EQ(BError(), Snap());
  }
};

TEST_F(FrameMemory, IsKeptWhileAnAcquisitionRuns) {
  UseManyBlocksAtOnce();
  EXPECT_GT(IdleBytes(), FrameBlocks::kIdleBytes);
}

TEST_F(FrameMemory, IsGivenBackWhenTheStopFails) {
  UseManyBlocksAtOnce();
  cameras.FailCall("VmbFeatureCommandRun", "AcquisitionStop", -13);
  EXPECT_THROW(implementation.StopSnap(), BError);
  EXPECT_LE(IdleBytes(), FrameBlocks::kIdleBytes);
}

TEST_F(FrameMemory, IsGivenBackWhenTheStartFails) {
  implementation.StopSnap();
  cameras.FailCall("VmbFeatureCommandRun", "AcquisitionStart", -13);
  EXPECT_THROW(implementation.StartSnap(false), BError);
  UseManyBlocksAtOnce();
  EXPECT_LE(IdleBytes(), FrameBlocks::kIdleBytes);
}

struct OnFrame : OpenedImplementation {
  // Frame 3 as the library would hand it over, with this status.
  VmbFrame_t& Received(VmbFrameStatus_t status) {
    TakeBackAll();
    VmbFrame_t& frame = (implementation.*MemberOf(Ring()))[3];
    std::memset(frame.buffer, 77, frame.bufferSize);
    frame.receiveStatus = status;
    frame.receiveFlags = 0;
    frame.pixelFormat = VmbPixelFormatMono8;
    return frame;
  }
  void TakeBackAll() {
    BLogCollector log(L"flush");
    ASSERT_TRUE((implementation.*MemberOf(Flush()))(log));
  }
};

TEST_F(OnFrame, CopiesAGoodFrameAndHandsItBack) {
  VmbFrame_t& frame = Received(VmbFrameStatusComplete);
  implementation.OnFrame(&frame);
  EXPECT_EQ((Texts{L"Start", L"Frame context id = 3 FrameStatusComplete", L"receiveStatus = Complete",
                   L"new BFrameQueue::BFrame", L"memcpy", L"m_frame_queue.Push", L"VmbCaptureFrameQueue ok", L"End"}),
            Lines(L": OnFrame()"));
  EXPECT_EQ(1, QueuedFrames());
  EXPECT_EQ(10U, FrameContextId(frame));
  EXPECT_EQ(BError(), Snap());
  EXPECT_EQ((Texts{L"Start", L"Frame Id = 3", L"Frame error code = 0", L"End"}), Lines(L": Snap"));
}

TEST_F(OnFrame, AFrameThatCannotBeHandedBackIsFollowedByAFailure) {
  VmbFrame_t& frame = Received(VmbFrameStatusComplete);
  cameras.FailCall("VmbCaptureFrameQueue", "", -13, 1);
  implementation.OnFrame(&frame);
  EXPECT_EQ(L"VmbCaptureFrameQueue error", Lines(L": OnFrame()").at(6));
  EXPECT_EQ(BError(), Snap());
  EXPECT_EQ(BError(12103, L" ReQueueFrame failed"), Snap());
}

struct Failure {
  VmbFrameStatus_t status;
  const wchar_t* described;
  const wchar_t* message;
};

struct OnFailedFrame : OnFrame, testing::WithParamInterface<Failure> {};

TEST_P(OnFailedFrame, ShowsAndQueuesWhatHappened) {
  const Failure& failure = GetParam();
  VmbFrame_t& frame = Received(failure.status);
  implementation.OnFrame(&frame);
  EXPECT_EQ((Texts{L"Start", std::wstring(L"Frame context id = 3") + failure.described,
                   L"receiveStatus is not Complete", L"VmbCaptureFrameQueue ok", failure.message, L"End"}),
            Lines(L": OnFrame()"));
  EXPECT_EQ(Texts{failure.message}, output.WithCaption(nullptr));
  EXPECT_EQ(BError(12103, failure.message), Snap());
}

INSTANTIATE_TEST_SUITE_P(EveryStatus, OnFailedFrame,
                         testing::Values(Failure{-1, L" FrameStatusInComplete", L"Acq. failed: Frame incomplete"},
                                         Failure{-2, L" FrameStatusTooSmall", L"Acq. failed: Frame too small"},
                                         Failure{-3, L" FrameStatusInvalid", L"Acq. failed: Frame invalid"},
                                         Failure{-4, L"unknown FrameStatus", L""}));

struct CameraTimestamp : OpenedImplementation {};

TEST_F(CameraTimestamp, IsLatchedAndThenRead) {
  const std::uint64_t now = implementation.LatchCameraTimestamp();
  EXPECT_EQ(std::to_string(now), cameras.State()["features"]["GevTimestampValue"].get<std::string>());
  EXPECT_EQ((std::vector<std::string>{"VmbFeatureCommandRun(\"GevTimestampControlLatch\")",
                                      "VmbFeatureIntGet(\"GevTimestampValue\")"}),
            cameras.Calls());
}

TEST_F(CameraTimestamp, IsAllOnesWhenEitherStepFails) {
  cameras.FailCall("VmbFeatureIntGet", "GevTimestampValue", -13);
  EXPECT_EQ(~std::uint64_t{0}, implementation.LatchCameraTimestamp());
  cameras.ClearFaults();
  cameras.FailCall("VmbFeatureCommandRun", "GevTimestampControlLatch", -13);
  EXPECT_EQ(~std::uint64_t{0}, implementation.LatchCameraTimestamp());
}

}  // namespace
