// frame_receiver_test.cpp
// Both handlers: what becomes of a frame, what the queue gets, who hears of it, and that the frame goes back.
#include "acquisition/frame_receiver.h"

#include <array>
#include <cstring>
#include <functional>
#include <future>

#include "VimbaC.h"
#include "acquisition/frame_description.h"
#include "diagnostics/log_collector.h"
#include "unit/acquisition/scripted_camera.h"

namespace {

using Texts = std::vector<std::wstring>;
using Heard = std::vector<std::string>;

struct Receiver : ScriptedCamera {
  std::array<std::uint8_t, kPayloadBytes> buffer{};

  // A frame as the library hands it over, in number 3.
  VmbFrame_t Arrived(VmbFrameStatus_t status = VmbFrameStatusComplete, std::uint64_t timestamp = kScanStart) {
    for (std::size_t i = 0; i < buffer.size(); ++i) buffer[i] = static_cast<std::uint8_t>(10 * i);
    VmbFrame_t frame{};
    frame.buffer = buffer.data();
    frame.bufferSize = kPayloadBytes;
    frame.context[1] = reinterpret_cast<void*>(std::uintptr_t{3});
    frame.receiveStatus = status;
    frame.pixelFormat = VmbPixelFormatMono8;
    frame.timestamp = timestamp;
    return frame;
  }
  // Until the worker of every frame so far has done its work.
  void Receive(VmbFrame_t& frame) {
    receiver.OnFrameExt(&frame);
    receiver.WaitForWorkers();
  }
  // The pixels of the one entry, which is a frame.
  std::vector<std::uint8_t> PoppedPixels() {
    BSmartRef<BFrameQueue::BFrame> frame;
    EXPECT_EQ(queue.Pop(frame, 0), BError());
    if (!frame) return {};
    EXPECT_EQ(frame->Id(), 3U);
    EXPECT_EQ(frame->PixelFormat(), static_cast<std::uint32_t>(VmbPixelFormatMono8));
    EXPECT_EQ(frame->CameraId().Str(), L"DEV_7");
    return {frame->Data(), frame->Data() + kPayloadBytes};
  }
  std::vector<std::uint8_t> Pixels() const { return {buffer.begin(), buffer.end()}; }
};

TEST_F(Receiver, RefusesEveryFrameBeforeItHasAScanStart) {
  VmbFrame_t frame = Arrived(VmbFrameStatusComplete, FrameReceiver::kNoTimestamp);
  Receive(frame);
  EXPECT_EQ(Pop(), BError(BError::eTimeout));
  EXPECT_EQ(Library().Queued(), std::vector<const VmbFrame_t*>{&frame});
}

TEST_F(Receiver, CopiesAGoodFrameAndHandsItBack) {
  receiver.SetScanStart(kScanStart);
  VmbFrame_t frame = Arrived();
  Receive(frame);
  EXPECT_EQ(PoppedPixels(), Pixels());
  EXPECT_EQ(Library().Queued(), std::vector<const VmbFrame_t*>{&frame});
  EXPECT_EQ(Lines(L"OnFrameExt()"),
            (Texts{L"Start", L"Frame context id = 3 FrameStatusComplete", L"process_frame_lambda started", L"End"}));
  EXPECT_EQ(heard, Heard{});
}

TEST_F(Receiver, HandsAnOlderFrameBackAndSaysNothingToTheHost) {
  receiver.SetScanStart(kScanStart);
  VmbFrame_t frame = Arrived(VmbFrameStatusComplete, kScanStart - 1);
  Receive(frame);
  EXPECT_EQ(Pop(), BError(BError::eTimeout));
  EXPECT_EQ(Lines(L"OnFrameExt()"),
            (Texts{L"Start", L"Frame context id = 3 FrameStatusComplete", L"VmbCaptureFrameQueue ok",
                   L"Invalid timestamp 999 < 1000 (StartScan)", L"End"}));
  EXPECT_EQ(heard, Heard{});
}

TEST_F(Receiver, AGoodFrameThatCannotBeHandedBackIsFollowedByAFailure) {
  receiver.SetScanStart(kScanStart);
  Library().Fail("VmbCaptureFrameQueue", VmbErrorOther);
  VmbFrame_t frame = Arrived();
  Receive(frame);
  EXPECT_EQ(PoppedPixels(), Pixels());
  EXPECT_EQ(Pop(), BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));
}

TEST_F(Receiver, DropsTheCopyOfAnAcquisitionThatIsOver) {
  receiver.SetScanStart(kScanStart);
  VmbFrame_t first = Arrived();
  Receive(first);
  queue.Clear();
  EXPECT_EQ(Pop(), BError(BError::eTimeout));
}

TEST_F(Receiver, KeepsMemoryForTheNextCopiesWhileAnAcquisitionRuns) {
  receiver.SetRunning(true);
  receiver.SetScanStart(kScanStart);
  VmbFrame_t frame = Arrived();
  Receive(frame);
  EXPECT_EQ(PoppedPixels(), Pixels());
  EXPECT_EQ(receiver.IdleBytes(), static_cast<std::size_t>(kPayloadBytes));
}

TEST_F(Receiver, AFailureToHandALateFrameBackCountsForTheNextAcquisition) {
  receiver.SetScanStart(kScanStart);
  Library().Fail("VmbCaptureFrameQueue", VmbErrorOther);
  std::promise<void> is_copied;
  std::promise<void> next_has_begun;
  Library().OnQueueing([&] {
    is_copied.set_value();
    next_has_begun.get_future().wait();
  });
  VmbFrame_t frame = Arrived();
  receiver.OnFrameExt(&frame);
  is_copied.get_future().wait();
  queue.Clear();
  next_has_begun.set_value();
  receiver.WaitForWorkers();
  EXPECT_EQ(Pop(), BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));
}

TEST_F(Receiver, AForeignRecordThatCannotHoldPixelsIsAFailedFrame) {
  receiver.SetScanStart(kScanStart);
  VmbFrame_t nowhere = Arrived();
  nowhere.buffer = nullptr;
  Receive(nowhere);
  EXPECT_EQ(Pop(), BError(BError::eFrameInvalid));
  VmbFrame_t huge = Arrived();
  huge.bufferSize = static_cast<VmbUint32_t>(FrameRing::kLargestPayloadBytes) + 1;
  Receive(huge);
  EXPECT_EQ(Pop(), BError(BError::eFrameInvalid));
}

// With frames of the ring, as the library has them.
struct ReceiverOfRing : Receiver {
  ReceiverOfRing() {
    BLogCollector log(L"fill");
    EXPECT_TRUE(ring.AnnounceFrames() && ring.FrameQueueFill(log));
    receiver.SetScanStart(kScanStart);
  }
  // The n-th record, complete and new enough.
  VmbFrame_t& Delivered(std::size_t n) {
    VmbFrame_t& record = const_cast<VmbFrame_t&>(*Library().Announced().at(n));
    std::memset(record.buffer, 40 + static_cast<int>(n), record.bufferSize);
    record.receiveStatus = VmbFrameStatusComplete;
    record.timestamp = kScanStart;
    return record;
  }
  bool IsAsAnnounced(const VmbFrame_t& record, const void* announced) const {
    return record.buffer == announced && record.bufferSize == kPayloadBytes && record.context[0] == this;
  }
  std::uint8_t PoppedPixel() {
    BSmartRef<BFrameQueue::BFrame> frame;
    EXPECT_EQ(queue.Pop(frame, 0), BError());
    return frame ? frame->Data()[kPayloadBytes - 1] : 0;
  }
};

TEST_F(ReceiverOfRing, CopiesARecordThatIsAsItWasAnnounced) {
  Receive(Delivered(3));
  EXPECT_EQ(PoppedPixel(), 43);
}

TEST_F(ReceiverOfRing, NeverReadsARecordThatCameBackAltered) {
  std::uint8_t other[kPayloadBytes] = {};
  const std::function<void(VmbFrame_t&)> alterations[] = {
      [&](VmbFrame_t& record) { record.buffer = other; },      [](VmbFrame_t& record) { record.buffer = nullptr; },
      [](VmbFrame_t& record) { ++record.bufferSize; },         [](VmbFrame_t& record) { record.bufferSize = 0; },
      [](VmbFrame_t& record) { record.context[0] = nullptr; }, [](VmbFrame_t& record) { record.context[1] = &record; }};
  std::size_t n = 0;
  for (const auto& alter : alterations) {
    VmbFrame_t& record = Delivered(n++);
    const void* announced = record.buffer;
    alter(record);
    output.Clear();
    Receive(record);
    EXPECT_EQ(Pop(), BError(BError::eFrameInvalid)) << n;
    EXPECT_EQ(Pop(), BError(BError::eTimeout)) << n;
    EXPECT_EQ(Lines(L"OnFrameExt()").at(2), L"Frame record is not as announced");
    EXPECT_TRUE(IsAsAnnounced(record, announced)) << "it went back as it had been announced " << n;
  }
}

TEST_F(ReceiverOfRing, ARecordThatTheLibraryDoesNotHaveCannotBeDelivered) {
  VmbFrame_t& record = Delivered(0);
  Library().Fail("VmbCaptureFrameQueue", VmbErrorOther);
  Receive(record);
  EXPECT_EQ(PoppedPixel(), 40);
  EXPECT_EQ(Pop(), BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));
  output.Clear();
  Receive(record);
  EXPECT_EQ(Pop(), BError(BError::eFrameInvalid));
  EXPECT_EQ(Lines(L"OnFrameExt()"), (Texts{L"Start", L"Frame is in hand already", L"End"}));
}

struct Lost {
  VmbFrameStatus_t status;
  BError::Code code;
};

struct LostFrames : Receiver, testing::WithParamInterface<Lost> {};

TEST_P(LostFrames, QueueTheirErrorAndAreHeardOf) {
  VmbFrame_t frame = Arrived(GetParam().status);
  Receive(frame);
  EXPECT_EQ(Pop(), BError(GetParam().code));
  EXPECT_EQ(Pop(), BError(BError::eTimeout));
  EXPECT_EQ(heard, Heard{"lost frame"});
  EXPECT_EQ(Library().Queued(), std::vector<const VmbFrame_t*>{&frame});
}

TEST_P(LostFrames, ThatCannotBeHandedBackQueueBothFailures) {
  Library().Fail("VmbCaptureFrameQueue", VmbErrorOther);
  VmbFrame_t frame = Arrived(GetParam().status);
  Receive(frame);
  EXPECT_EQ(Pop(), BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));
  EXPECT_EQ(Pop(), BError(GetParam().code));
}

INSTANTIATE_TEST_SUITE_P(EveryStatus, LostFrames,
                         testing::Values(Lost{VmbFrameStatusIncomplete, BError::eAcquisitionFailed},
                                         Lost{VmbFrameStatusTooSmall, BError::eFrameTooSmall},
                                         Lost{VmbFrameStatusInvalid, BError::eFrameInvalid},
                                         Lost{-9, BError::eFrameInvalid}, Lost{3, BError::eFrameInvalid}));

struct OnFrame : Receiver {};

TEST_F(OnFrame, CopiesAGoodFrameAndHandsItBack) {
  VmbFrame_t frame = Arrived();
  receiver.OnFrame(&frame);
  EXPECT_EQ(Lines(L": OnFrame()"),
            (Texts{L"Start", L"Frame context id = 3 FrameStatusComplete", L"receiveStatus = Complete",
                   L"new BFrameQueue::BFrame", L"memcpy", L"m_frame_queue.Push", L"VmbCaptureFrameQueue ok", L"End"}));
  EXPECT_EQ(PoppedPixels(), Pixels());
  EXPECT_EQ(Library().Queued(), std::vector<const VmbFrame_t*>{&frame});
}

TEST_F(OnFrame, AFrameThatCannotBeHandedBackIsFollowedByAFailure) {
  Library().Fail("VmbCaptureFrameQueue", VmbErrorOther);
  VmbFrame_t frame = Arrived();
  receiver.OnFrame(&frame);
  EXPECT_EQ(Lines(L": OnFrame()").at(6), L"VmbCaptureFrameQueue error");
  EXPECT_EQ(PoppedPixels(), Pixels());
  EXPECT_EQ(Pop(), BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));
}

struct Failure {
  VmbFrameStatus_t status;
  const wchar_t* described;
  const wchar_t* message;
};

struct OnFailedFrame : OnFrame, testing::WithParamInterface<Failure> {};

TEST_P(OnFailedFrame, ShowsAndQueuesWhatHappened) {
  const Failure& failure = GetParam();
  VmbFrame_t frame = Arrived(failure.status);
  receiver.OnFrame(&frame);
  EXPECT_EQ(Lines(L": OnFrame()"),
            (Texts{L"Start", std::wstring(L"Frame context id = 3") + failure.described,
                   L"receiveStatus is not Complete", L"VmbCaptureFrameQueue ok", failure.message, L"End"}));
  EXPECT_EQ(output.WithCaption(nullptr), Texts{failure.message});
  EXPECT_EQ(Pop(), BError(BError::eAcquisitionFailed, failure.message));
  EXPECT_EQ(heard, Heard{});
}

INSTANTIATE_TEST_SUITE_P(
    EveryStatus, OnFailedFrame,
    testing::Values(Failure{VmbFrameStatusIncomplete, L" FrameStatusInComplete", L"Acq. failed: Frame incomplete"},
                    Failure{VmbFrameStatusTooSmall, L" FrameStatusTooSmall", L"Acq. failed: Frame too small"},
                    Failure{VmbFrameStatusInvalid, L" FrameStatusInvalid", L"Acq. failed: Frame invalid"},
                    Failure{-4, L"unknown FrameStatus", L""}));

}  // namespace
