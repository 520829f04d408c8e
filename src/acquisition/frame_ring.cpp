// frame_ring.cpp
// The frames that circulate between the library and the handlers for the whole life of a device.
#include "acquisition/frame_ring.h"

#include <limits>
#include <tuple>

#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_camera.h"
#include "vimba/vimba_features.h"

namespace {

// The library hands contexts back as they were given; a number travels in one as well as a pointer.
void* AsContext(std::uint64_t id) {
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(id));  // NOLINT(performance-no-int-to-ptr)
}

bool FitsFrameRecord(std::int64_t payload_size) {
  return payload_size > 0 && payload_size <= std::int64_t{std::numeric_limits<VmbUint32_t>::max()};
}

}  // namespace

FrameRing::FrameRing(const VimbaCamera& camera, void* owner, VmbFrameCallback on_frame_done)
    : m_camera(camera), m_owner(owner), m_on_frame_done(on_frame_done) {}

bool FrameRing::AnnounceFrames() {
  std::int64_t payload_size = 0;
  if (Vimba::GetInt(m_camera.Handle(), Feature::kPayloadSize, payload_size) != VmbErrorSuccess ||
      !FitsFrameRecord(payload_size)) {
    ImagingDevice::ShowInfo(L"PayloadSize failed", L"!");
    return false;
  }
  m_payload_size = payload_size;
  for (std::size_t i = 0; i < kRingFrames; ++i) {
    m_buffers[i] = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(payload_size));
    VmbFrame_t& frame = m_frames[i];
    frame.buffer = m_buffers[i].get();
    frame.bufferSize = static_cast<VmbUint32_t>(payload_size);
    frame.context[0] = m_owner;
    frame.context[1] = AsContext(i);
    std::ignore = VmbFrameAnnounce(m_camera.Handle(), &frame, sizeof frame);
  }
  return true;
}

bool FrameRing::FrameQueueFill(BLogCollector& log) {
  log << L"FrameQueueFill" << L'\n';
  for (VmbFrame_t& frame : m_frames) {
    frame.context[0] = m_owner;
    if (ReQueueFrame(&frame) != VmbErrorSuccess) {
      log << L"QueueFrame failed" << L'\n';
      return false;
    }
  }
  return true;
}

bool FrameRing::RequeueFrames(BLogCollector& log) {
  log << L"RequeueFrames" << L'\n';
  const bool flushed = VmbCaptureQueueFlush(m_camera.Handle()) == VmbErrorSuccess;
  log << (flushed ? L"RequeueFrames: VmbCaptureQueueFlush" : L"CaptureQueueClear failed") << L'\n';
  return flushed;
}

VmbError_t FrameRing::ReQueueFrame(VmbFrame_t* frame) {
  frame->context[1] = AsContext(m_frame_context_counter.fetch_add(1));
  return VmbCaptureFrameQueue(m_camera.Handle(), frame, m_on_frame_done);
}

void FrameRing::FreeFrames() {
  for (std::size_t i = 0; i < kRingFrames; ++i) {
    m_frames[i].buffer = nullptr;
    m_buffers[i].reset();
  }
}
