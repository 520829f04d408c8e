// frame_ring.cpp
// The ten frames that circulate between the library and the handlers for the whole life of a device.
#include <limits>
#include <memory>

#include "camera/vimba_imaging_device_impl.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_features.h"

namespace {

// The library hands contexts back as they were given; a number travels in one as well as a pointer.
void* AsContext(std::uint64_t id) {
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(id));  // NOLINT(performance-no-int-to-ptr)
}

// Registered with every queueing. Nothing may leave it: the library could not catch it.
void FrameDoneCallback(VmbHandle_t /*camera*/, VmbFrame_t* frame) noexcept {
  static_cast<BVimbaImagingDeviceImpl*>(frame->context[0])->OnFrameExt(frame);
}

bool FitsBuffer(std::int64_t payload_size) {
  return payload_size > 0 && payload_size <= std::int64_t{std::numeric_limits<VmbUint32_t>::max()};
}

}  // namespace

bool BVimbaImagingDeviceImpl::AnnounceFrames() {
  std::int64_t payload_size = 0;
  if (Vimba::GetInt(m_camera, Feature::kPayloadSize, payload_size) != VmbErrorSuccess || !FitsBuffer(payload_size)) {
    ImagingDevice::ShowInfo(L"PayloadSize failed", L"!");
    return false;
  }
  m_payload_size = payload_size;
  std::uint64_t index = 0;
  for (VmbFrame_t& frame : m_frames) {
    frame.buffer = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(payload_size)).release();
    frame.bufferSize = static_cast<VmbUint32_t>(payload_size);
    frame.context[0] = this;
    frame.context[1] = AsContext(index++);
    VmbFrameAnnounce(m_camera, &frame, sizeof frame);
  }
  return true;
}

bool BVimbaImagingDeviceImpl::FrameQueueFill(BLogCollector& log) {
  log << L"FrameQueueFill" << L'\n';
  for (VmbFrame_t& frame : m_frames) {
    frame.context[0] = this;
    if (ReQueueFrame(&frame) != VmbErrorSuccess) {
      log << L"QueueFrame failed" << L'\n';
      return false;
    }
  }
  return true;
}

bool BVimbaImagingDeviceImpl::RequeueFrames(BLogCollector& log) {
  log << L"RequeueFrames" << L'\n';
  const bool flushed = VmbCaptureQueueFlush(m_camera) == VmbErrorSuccess;
  log << (flushed ? L"RequeueFrames: VmbCaptureQueueFlush" : L"CaptureQueueClear failed") << L'\n';
  return flushed;
}

// Once it is queued the frame is the library's: nothing of it may be touched afterwards.
VmbError_t BVimbaImagingDeviceImpl::ReQueueFrame(VmbFrame_t* frame) {
  frame->context[1] = AsContext(m_frame_context_counter.fetch_add(1));
  return VmbCaptureFrameQueue(m_camera, frame, FrameDoneCallback);
}

void BVimbaImagingDeviceImpl::FreeFrames() {
  for (VmbFrame_t& frame : m_frames) {
    const std::unique_ptr<std::uint8_t[]> buffer(static_cast<std::uint8_t*>(frame.buffer));
    frame.buffer = nullptr;
  }
}
