// frame_handlers.cpp
// What happens to a frame between the library's callback and the frame queue.
#include <cstring>
#include <new>
#include <utility>

#include "acquisition/frame_description.h"
#include "acquisition/module_threads.h"
#include "camera/vimba_imaging_device_impl.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"

namespace {

constexpr wchar_t kRequeueFailed[] = L" ReQueueFrame failed";
constexpr wchar_t kOutOfMemory[] = L"out of memory";

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

}  // namespace

// A frame that has arrived and that nobody else answers for yet. Where memory runs out first, it is given back to the
// library, or the ring would be short of it for good, and the acquisition fails.
class BVimbaImagingDeviceImpl::FrameInHand {
 public:
  FrameInHand(BVimbaImagingDeviceImpl& device, VmbFrame_t* frame, BFrameQueue::Acquisition acquisition)
      : m_device(device), m_frame(frame), m_acquisition(acquisition) {}
  ~FrameInHand() {
    if (!m_frame) return;
    m_device.ReQueueFrame(m_frame);
    m_device.PushFailure(m_acquisition, kOutOfMemory);
  }
  FrameInHand(const FrameInHand&) = delete;
  FrameInHand& operator=(const FrameInHand&) = delete;

  void StartWorker() {
    m_device.StartWorker(m_frame, m_acquisition);
    m_frame = nullptr;
  }
  VmbError_t GiveBack() { return m_device.ReQueueFrame(std::exchange(m_frame, nullptr)); }

 private:
  BVimbaImagingDeviceImpl& m_device;
  VmbFrame_t* m_frame;
  BFrameQueue::Acquisition m_acquisition;
};

void BVimbaImagingDeviceImpl::OnFrameExt(VmbFrame_t* frame) {
  // In this order: StartSnap makes the scan start unreachable before it begins a new acquisition, so that a frame that
  // passes with the old scan start also carries the old acquisition.
  const BFrameQueue::Acquisition acquisition = m_frame_queue.CurrentAcquisition();
  try {
    HandleFrame(frame, acquisition);
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): the frame in hand has seen to the rest
  }
}

void BVimbaImagingDeviceImpl::HandleFrame(VmbFrame_t* frame, BFrameQueue::Acquisition acquisition) {
  FrameInHand in_hand(*this, frame, acquisition);
  BLogCollector log(Prefix() + L"OnFrameExt()", m_snap_stop_watch);
  log << DescribeFrame(*frame).c_str() << L'\n';
  const std::uint64_t start = m_start_scan_timestamp;
  const VmbFrameStatus_t status = frame->receiveStatus;
  const std::uint64_t timestamp = frame->timestamp;
  if (status == VmbFrameStatusComplete && timestamp >= start && start != kNoTimestamp) {
    in_hand.StartWorker();
    log << L"process_frame_lambda started" << L'\n';
    return;
  }
  if (in_hand.GiveBack() != VmbErrorSuccess) {
    PushFailure(acquisition, kRequeueFailed);
    log << L"VmbCaptureFrameQueue failed" << L'\n';
  } else {
    log << L"VmbCaptureFrameQueue ok" << L'\n';
  }
  if (status == VmbFrameStatusComplete) {
    log << L"Invalid timestamp " << timestamp << L" < " << start << L" (StartScan)" << L'\n';
    return;
  }
  log << L"ReceiveStatus failure " << status << L'\n';
  m_frame_queue.Push(nullptr, ErrorOfStatus(status));
  AbortPartners();
}

// The ticket is taken here and given back by the worker as its last act.
void BVimbaImagingDeviceImpl::StartWorker(VmbFrame_t* frame, BFrameQueue::Acquisition acquisition) {
  ModuleThreads().Start([frame, device = this, acquisition, ticket = m_workers.Enter()] {
    process_frame_lambda(frame, device, acquisition);
  });
}

void BVimbaImagingDeviceImpl::process_frame_lambda(VmbFrame_t* frame, BVimbaImagingDeviceImpl* device,
                                                   BFrameQueue::Acquisition acquisition) {
  try {
    device->m_frame_queue.PushUnlessOver(acquisition, device->CopyOf(*frame));
  } catch (const std::bad_alloc&) {
    device->PushFailure(acquisition, kOutOfMemory);
  }
  if (device->ReQueueFrame(frame) != VmbErrorSuccess) device->PushFailure(acquisition, kRequeueFailed);
}

BSmartRef<BFrameQueue::BFrame> BVimbaImagingDeviceImpl::CopyOf(const VmbFrame_t& frame) {
  BSmartRef<BFrameQueue::BFrame> copy(
      new BFrameQueue::BFrame(frame.bufferSize, frame.pixelFormat, FrameContextId(frame), m_unique_id, m_frame_blocks));
  std::memcpy(copy->Data(), frame.buffer, frame.bufferSize);
  return copy;
}

// Without memory even for this entry, a snap that waits runs into its time-out instead.
void BVimbaImagingDeviceImpl::PushFailure(BFrameQueue::Acquisition acquisition, const wchar_t* text) {
  try {
    m_frame_queue.PushUnlessOver(acquisition, nullptr, BError(BError::eAcquisitionFailed, text));
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
  }
}

// The whole job on the library's thread: an alternative to OnFrameExt that is not registered.
void BVimbaImagingDeviceImpl::OnFrame(VmbFrame_t* frame) {
  BLogCollector log(Prefix() + L"OnFrame()", m_snap_stop_watch);
  log << DescribeFrame(*frame).c_str() << L'\n';
  const VmbFrameStatus_t status = frame->receiveStatus;
  if (status != VmbFrameStatusComplete) {
    log << L"receiveStatus is not Complete" << L'\n';
  } else {
    log << L"receiveStatus = Complete" << L'\n';
    const BSmartRef<BFrameQueue::BFrame> copy = CopyOf(*frame);
    log << L"new BFrameQueue::BFrame" << L'\n';
    log << L"memcpy" << L'\n';
    m_frame_queue.Push(copy, BError());
    log << L"m_frame_queue.Push" << L'\n';
  }
  if (ReQueueFrame(frame) != VmbErrorSuccess) {
    PushFailure(m_frame_queue.CurrentAcquisition(), kRequeueFailed);
    log << L"VmbCaptureFrameQueue error" << L'\n';
  } else {
    log << L"VmbCaptureFrameQueue ok" << L'\n';
  }
  if (status == VmbFrameStatusComplete) return;
  const wchar_t* message = FailureText(status);
  ImagingDevice::ShowInfo(message, nullptr);
  m_frame_queue.Push(nullptr, BError(BError::eAcquisitionFailed, message));
  log << message << L'\n';
}
