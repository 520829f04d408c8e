// frame_ring.cpp
// The frames that circulate between the library and the handlers for the whole life of a device.
#include "acquisition/frame_ring.h"

#include <functional>
#include <tuple>
#include <utility>

#include "acquisition/frame_description.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_camera.h"
#include "vimba/vimba_features.h"

namespace {

// The library hands contexts back as they were given; a number travels in one as well as a pointer.
void* AsContext(std::uint64_t id) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(id)); }

}  // namespace

std::unique_ptr<FrameRing::Frames> FrameRing::s_unreturned;

FrameRing::FrameRing(const VimbaCamera& camera, void* owner, VmbFrameCallback on_frame_done)
    : m_camera(camera), m_owner(owner), m_on_frame_done(on_frame_done) {
  for (std::atomic<bool>& in_hand : m_in_hand) in_hand = true;
}

bool FrameRing::AnnounceFrames() {
  std::int64_t payload_size = 0;
  if (Vimba::GetInt(m_camera.Handle(), Feature::kPayloadSize, payload_size) != VmbErrorSuccess || payload_size <= 0 ||
      payload_size > kLargestPayloadBytes) {
    ImagingDevice::ShowInfo(L"PayloadSize failed", L"!");
    return false;
  }
  m_payload_size = payload_size;
  for (std::size_t i = 0; i < kRingFrames; ++i) {
    m_frames->buffers[i] = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(payload_size));
    WriteRecord(i, i);
    std::ignore = VmbFrameAnnounce(m_camera.Handle(), &m_frames->records[i], sizeof(VmbFrame_t));
  }
  return true;
}

bool FrameRing::FrameQueueFill(BLogCollector& log) {
  log << L"FrameQueueFill" << L'\n';
  for (VmbFrame_t& frame : m_frames->records) {
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

ArrivedFrame FrameRing::Take(VmbFrame_t* frame) {
  const std::optional<std::size_t> index = IndexOf(frame);
  if (!index) {
    return {.record = frame,
            .received = *frame,
            .pixels = {static_cast<const std::uint8_t*>(frame->buffer), frame->bufferSize},
            .trust = ArrivedFrame::Trust::kForeign};
  }
  if (m_in_hand[*index].exchange(true)) return {};
  const VmbFrame_t received = *frame;
  const bool as_written = IsAsWritten(*index, received);
  return {.record = frame,
          .received = received,
          .pixels = {m_frames->buffers[*index].get(), static_cast<std::size_t>(m_payload_size)},
          .trust = as_written ? ArrivedFrame::Trust::kAsAnnounced : ArrivedFrame::Trust::kAltered};
}

VmbError_t FrameRing::ReQueueFrame(VmbFrame_t* frame) {
  const std::uint64_t id = m_frame_context_counter.fetch_add(1);
  const std::optional<std::size_t> index = IndexOf(frame);
  if (!index) {
    frame->context[1] = AsContext(id);
    return VmbCaptureFrameQueue(m_camera.Handle(), frame, m_on_frame_done);
  }
  WriteRecord(*index, id);
  // Before the call: the frame may come back at once.
  m_in_hand[*index] = false;
  const VmbError_t code = VmbCaptureFrameQueue(m_camera.Handle(), frame, m_on_frame_done);
  if (code != VmbErrorSuccess) m_in_hand[*index] = true;
  return code;
}

void FrameRing::FreeFrames(bool returned) {
  if (!returned) {
    m_frames->next = std::move(s_unreturned);
    s_unreturned = std::move(m_frames);
  }
  m_frames.reset();
}

void FrameRing::FreeUnreturnedFrames() {
  while (s_unreturned) s_unreturned = std::move(s_unreturned->next);
}

std::optional<std::size_t> FrameRing::IndexOf(const VmbFrame_t* frame) const {
  const VmbFrame_t* first = m_frames->records.data();
  const std::less<> before;
  if (before(frame, first) || !before(frame, first + kRingFrames)) return std::nullopt;
  return static_cast<std::size_t>(frame - first);
}

void FrameRing::WriteRecord(std::size_t index, std::uint64_t id) {
  VmbFrame_t& record = m_frames->records[index];
  record.buffer = m_frames->buffers[index].get();
  record.bufferSize = static_cast<VmbUint32_t>(m_payload_size);
  record.context[0] = m_owner;
  record.context[1] = AsContext(id);
  m_ids[index] = id;
}

bool FrameRing::IsAsWritten(std::size_t index, const VmbFrame_t& received) const {
  return received.buffer == m_frames->buffers[index].get() && received.bufferSize == m_payload_size &&
         received.context[0] == m_owner && FrameContextId(received) == m_ids[index];
}
