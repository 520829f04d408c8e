// frame_receiver.cpp
// What happens to a frame between the library's callback and the frame queue.
#include "acquisition/frame_receiver.h"

#include <cstring>
#include <new>
#include <system_error>
#include <tuple>
#include <utility>

#include "acquisition/frame_description.h"
#include "acquisition/frame_ring.h"
#include "acquisition/module_threads.h"
#include "bstopwatch.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "vimba/vimba_camera.h"

namespace {

using AcquisitionNumber = BFrameQueue::AcquisitionNumber;

constexpr wchar_t kRequeueFailed[] = L" ReQueueFrame failed";
constexpr wchar_t kOutOfMemory[] = L"out of memory";
constexpr wchar_t kNoThread[] = L"no thread";

BError ErrorOfStatus(VmbFrameStatus_t status) {
  switch (status) {
    case VmbFrameStatusIncomplete:
      return BError(BError::eAcquisitionFailed);
    case VmbFrameStatusTooSmall:
      return BError(BError::eFrameTooSmall);
    default:
      return BError(BError::eFrameInvalid);
  }
}

const wchar_t* FailureText(VmbFrameStatus_t status) {
  switch (status) {
    case VmbFrameStatusIncomplete:
      return L"Acq. failed: Frame incomplete";
    case VmbFrameStatusTooSmall:
      return L"Acq. failed: Frame too small";
    case VmbFrameStatusInvalid:
      return L"Acq. failed: Frame invalid";
    default:
      return L"";
  }
}

// A foreign record's pixels are where it says, if that can be.
bool IsTrusted(const ArrivedFrame& frame) {
  if (frame.trust != ArrivedFrame::Trust::kForeign) return frame.trust == ArrivedFrame::Trust::kAsAnnounced;
  return frame.pixels.data() && frame.pixels.size() <= static_cast<std::size_t>(FrameRing::kLargestPayloadBytes);
}

}  // namespace

// A frame that has arrived and that nobody else answers for yet. Where memory or threads run out first, it is given
// back to the library, or the ring would be short of it for good, and the acquisition fails.
class FrameReceiver::FrameInHand {
 public:
  FrameInHand(FrameReceiver& receiver, const ArrivedFrame& frame, AcquisitionNumber acquisition)
      : m_receiver(receiver), m_frame(&frame), m_acquisition(acquisition) {}
  ~FrameInHand() {
    if (!m_frame) return;
    const bool returned = m_receiver.m_ring.ReQueueFrame(m_frame->record) == VmbErrorSuccess;
    m_receiver.PushFailureUnlessOver(m_acquisition, m_failure);
    if (!returned) m_receiver.PushFailure(kRequeueFailed);
  }
  FrameInHand(const FrameInHand&) = delete;
  FrameInHand& operator=(const FrameInHand&) = delete;

  void StartWorker() {
    try {
      m_receiver.StartWorker(*m_frame, m_acquisition);
    } catch (const std::system_error&) {
      m_failure = kNoThread;
      throw;
    }
    m_frame = nullptr;
  }
  VmbError_t GiveBack() { return m_receiver.m_ring.ReQueueFrame(std::exchange(m_frame, nullptr)->record); }

 private:
  FrameReceiver& m_receiver;
  const ArrivedFrame* m_frame;
  AcquisitionNumber m_acquisition;
  const wchar_t* m_failure = kOutOfMemory;
};

FrameReceiver::FrameReceiver(const VimbaCamera& camera, const BStopWatch& snap_watch, FrameRing& ring,
                             BFrameQueue& queue, Listener& listener)
    : m_camera(camera), m_snap_watch(snap_watch), m_ring(ring), m_queue(queue), m_listener(listener) {}

void FrameReceiver::OnFrameExt(VmbFrame_t* frame) {
  // In this order: a starting snap makes the scan start unreachable before it begins a new acquisition, so that a frame
  // that passes with the old scan start also carries the old acquisition.
  const AcquisitionNumber acquisition = m_queue.CurrentAcquisition();
  try {
    const ArrivedFrame arrived = m_ring.Take(frame);
    if (arrived.trust == ArrivedFrame::Trust::kInHand) {
      HandleFrameInHand();
    } else {
      HandleFrame(arrived, acquisition);
    }
    // The frame in hand has seen to the rest.
  } catch (const std::bad_alloc&) {     // NOLINT(bugprone-empty-catch)
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch)
  }
}

// Nothing of the record is read, and whoever has it in hand gives it back.
void FrameReceiver::HandleFrameInHand() {
  BLogCollector log(m_camera.Prefix() + L"OnFrameExt()", m_snap_watch);
  log << L"Frame is in hand already" << L'\n';
  LoseFrame(BError(BError::eFrameInvalid));
}

void FrameReceiver::HandleFrame(const ArrivedFrame& frame, AcquisitionNumber acquisition) {
  FrameInHand in_hand(*this, frame, acquisition);
  BLogCollector log(m_camera.Prefix() + L"OnFrameExt()", m_snap_watch);
  log << DescribeFrame(frame.received).c_str() << L'\n';
  const std::uint64_t start = m_start_scan_timestamp;
  const std::uint64_t timestamp = frame.received.timestamp;
  const bool trusted = IsTrusted(frame);
  if (!trusted) log << L"Frame record is not as announced" << L'\n';
  const VmbFrameStatus_t status = trusted ? frame.received.receiveStatus : VmbFrameStatusInvalid;
  if (status == VmbFrameStatusComplete && timestamp >= start && start != kNoTimestamp) {
    in_hand.StartWorker();
    log << L"process_frame_lambda started" << L'\n';
    return;
  }
  if (in_hand.GiveBack() != VmbErrorSuccess) {
    PushFailure(kRequeueFailed);
    log << L"VmbCaptureFrameQueue failed" << L'\n';
  } else {
    log << L"VmbCaptureFrameQueue ok" << L'\n';
  }
  if (status == VmbFrameStatusComplete) {
    log << L"Invalid timestamp " << timestamp << L" < " << start << L" (StartScan)" << L'\n';
    return;
  }
  log << L"ReceiveStatus failure " << status << L'\n';
  LoseFrame(ErrorOfStatus(status));
}

void FrameReceiver::LoseFrame(BError error) {
  m_queue.Push(nullptr, std::move(error));
  m_listener.OnLostFrame();
}

// The ticket is taken here and given back when the worker's lambda is destroyed, as the worker's last act.
void FrameReceiver::StartWorker(const ArrivedFrame& frame, AcquisitionNumber acquisition) {
  auto process_frame_lambda = [this, frame, acquisition, ticket = m_workers.Enter()] {
    CopyAndHandBack(frame, acquisition);
  };
  ModuleThreads().Start(std::move(process_frame_lambda));
}

// A frame that cannot be handed back is missing in the acquisitions to come, too: its failure counts whatever has begun
// since.
void FrameReceiver::CopyAndHandBack(const ArrivedFrame& frame, AcquisitionNumber acquisition) {
  try {
    m_queue.PushUnlessOver(acquisition, CopyOf(frame));
  } catch (const std::bad_alloc&) {
    PushFailureUnlessOver(acquisition, kOutOfMemory);
  }
  if (m_ring.ReQueueFrame(frame.record) != VmbErrorSuccess) PushFailure(kRequeueFailed);
}

BSmartRef<BFrameQueue::BFrame> FrameReceiver::CopyOf(const ArrivedFrame& frame) {
  const std::size_t bytes = frame.pixels.size();
  BSmartRef<BFrameQueue::BFrame> copy(new BFrameQueue::BFrame(
      bytes, frame.received.pixelFormat, FrameContextId(frame.received), m_camera.UniqueId(), m_blocks));
  std::memcpy(copy->Data(), frame.pixels.data(), bytes);
  return copy;
}

void FrameReceiver::PushFailure(const wchar_t* text) {
  try {
    m_queue.Push(nullptr, BError(BError::eAcquisitionFailed, text));
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
  }
}

void FrameReceiver::PushFailureUnlessOver(AcquisitionNumber acquisition, const wchar_t* text) {
  try {
    m_queue.PushUnlessOver(acquisition, nullptr, BError(BError::eAcquisitionFailed, text));
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
  }
}

void FrameReceiver::OnFrame(VmbFrame_t* frame) {
  const ArrivedFrame arrived = m_ring.Take(frame);
  if (arrived.trust == ArrivedFrame::Trust::kInHand) return;
  BLogCollector log(m_camera.Prefix() + L"OnFrame()", m_snap_watch);
  log << DescribeFrame(arrived.received).c_str() << L'\n';
  const VmbFrameStatus_t status = IsTrusted(arrived) ? arrived.received.receiveStatus : VmbFrameStatusInvalid;
  if (status != VmbFrameStatusComplete) {
    log << L"receiveStatus is not Complete" << L'\n';
  } else {
    log << L"receiveStatus = Complete" << L'\n';
    const BSmartRef<BFrameQueue::BFrame> copy = CopyOf(arrived);
    log << L"new BFrameQueue::BFrame" << L'\n';
    log << L"memcpy" << L'\n';
    m_queue.Push(copy, BError());
    log << L"m_frame_queue.Push" << L'\n';
  }
  if (m_ring.ReQueueFrame(frame) != VmbErrorSuccess) {
    PushFailure(kRequeueFailed);
    log << L"VmbCaptureFrameQueue error" << L'\n';
  } else {
    log << L"VmbCaptureFrameQueue ok" << L'\n';
  }
  if (status == VmbFrameStatusComplete) return;
  const wchar_t* message = FailureText(status);
  ImagingDevice::ShowInfo(message, nullptr);
  m_queue.Push(nullptr, BError(BError::eAcquisitionFailed, message));
  log << message << L'\n';
}
