// stream/frame_stream.cpp
// One camera's stream: announced frames, filled by Aravis, handed out one after the other.
#include "stream/frame_stream.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "aravis/errors.h"
#include "stream/receive_buffer.h"

namespace Bridge {
namespace {

using VimbaLibrary::CaptureQueue;

// How long an incomplete frame waits for its missing packets when no further frame comes, in us.
constexpr guint kFrameRetentionUs = 200'000;

// Packets are read through an ordinary socket, which every user may open. A packet socket costs less, needs a privilege
// and delivers some milliseconds late.
bool WantsPacketSocket() {
  const char* const wanted = std::getenv("VIMBA_ARAVIS_PACKET_SOCKET");
  return wanted && *wanted && std::string_view(wanted) != "0";
}

VmbFrameStatus_t StatusOf(ArvBufferStatus status) {
  switch (status) {
    case ARV_BUFFER_STATUS_SUCCESS:
      return VmbFrameStatusComplete;
    case ARV_BUFFER_STATUS_TIMEOUT:
    case ARV_BUFFER_STATUS_MISSING_PACKETS:
      return VmbFrameStatusIncomplete;
    case ARV_BUFFER_STATUS_SIZE_MISMATCH:
      return VmbFrameStatusTooSmall;
    default:
      return VmbFrameStatusInvalid;
  }
}

}  // namespace

// What a buffer of Aravis carries with it.
struct FrameStream::Pending {
  FrameStream* stream;
  // Empty once it has been handed out.
  CaptureQueue::Filling filling;
};

FrameStream::FrameStream(VmbHandle_t camera, ArvDevice* device, BRecursiveMutex& camera_lock, const CameraClock& clock,
                         AcquisitionState& state)
    : m_device(device), m_camera_lock(camera_lock), m_clock(clock), m_state(state), m_frames(camera, [this] {
        Feed();
      }) {}

FrameStream::~FrameStream() { Close(); }

VmbError_t FrameStream::Start() {
  if (const VmbError_t error = m_frames.Start()) return error;
  m_ids = {};
  VmbError_t error = VmbErrorSuccess;
  Object<ArvStream> stream = MakeStream(error);
  if (!stream) {
    m_frames.End();
    return error;
  }
  {
    const BMutexLock lock(m_mutex);
    m_running = stream.get();
    m_stream = std::move(stream);
  }
  Feed();
  // Ended meanwhile by another thread, which found no stream yet.
  if (!m_frames.Count().capturing) End();
  return VmbErrorSuccess;
}

Object<ArvStream> FrameStream::MakeStream(VmbError_t& error) {
  const BRecursiveMutexLock lock(m_camera_lock);
  if (ARV_IS_GV_DEVICE(m_device)) {
    arv_gv_device_set_stream_options(ARV_GV_DEVICE(m_device), WantsPacketSocket()
                                                                  ? ARV_GV_STREAM_OPTION_NONE
                                                                  : ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
  }
  ErrorSlot slot;
  m_state.SetStreaming(true);
  Object<ArvStream> stream(arv_device_create_stream(m_device, OnStream, this, slot.Take()));
  if (!stream) {
    m_state.SetStreaming(false);
    error = slot.Code() ? slot.Code() : VmbError_t{VmbErrorInternalFault};
    return nullptr;
  }
  if (ARV_IS_GV_STREAM(stream.get())) {
    g_object_set(stream.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED, "socket-buffer-size",
                 kReceiveBufferBytes, "frame-retention", kFrameRetentionUs, nullptr);
    EnlargeReceiveBuffer(arv_gv_stream_get_port(ARV_GV_STREAM(stream.get())));
  }
  return stream;
}

void FrameStream::Feed() {
  const BMutexLock lock(m_mutex);
  if (!m_stream) return;
  while (CaptureQueue::Filling filling = m_frames.Take()) {
    const CaptureQueue::Buffer memory = CaptureQueue::BufferOf(filling);
    auto pending = std::make_unique<Pending>(Pending{this, std::move(filling)});
    arv_stream_push_buffer(m_stream.get(),
                           arv_buffer_new_full(memory.size_bytes, memory.bytes, pending.release(), OnBufferGone));
  }
}

void FrameStream::OnBufferGone(void* pending) {
  const std::unique_ptr<Pending> gone(static_cast<Pending*>(pending));
  if (gone->filling) gone->stream->m_frames.GiveUp(gone->filling);
}

void FrameStream::OnStream(void* self, ArvStreamCallbackType event, ArvBuffer* /*buffer*/) {
  if (event == ARV_STREAM_CALLBACK_TYPE_BUFFER_DONE) static_cast<FrameStream*>(self)->TakeFilled();
}

// All that are there: Aravis 0.8.26 puts out some without saying so.
void FrameStream::TakeFilled() {
  ArvStream* const stream = m_running;
  if (!stream) return;
  while (ArvBuffer* const buffer = arv_stream_try_pop_buffer(stream)) Deliver(Object<ArvBuffer>(buffer));
}

void FrameStream::Deliver(Object<ArvBuffer> buffer) {
  // Its frame goes back to the queue with it.
  if (arv_buffer_get_status(buffer.get()) == ARV_BUFFER_STATUS_ABORTED) return;
  // The buffer's own, which is only lent as constant.
  auto* const pending = const_cast<Pending*>(static_cast<const Pending*>(arv_buffer_get_user_data(buffer.get())));
  const CaptureQueue::Filling filling = std::move(pending->filling);
  const VmbFrame_t received = Describe(buffer.get(), CaptureQueue::BufferOf(filling).size_bytes);
  // From here on the memory is the caller's again.
  buffer.reset();
  m_frames.Complete(filling, received);
}

VmbFrame_t FrameStream::Describe(ArvBuffer* buffer, std::uint32_t announced_bytes) {
  const FrameLayout layout = m_state.Layout();
  VmbFrame_t frame{};
  frame.receiveStatus = StatusOf(arv_buffer_get_status(buffer));
  frame.width = layout.width;
  frame.height = layout.height;
  frame.offsetX = layout.offset_x;
  frame.offsetY = layout.offset_y;
  frame.receiveFlags = VmbFrameFlagsDimension | VmbFrameFlagsOffset;
  // Without a leader nothing is known of the frame.
  if (const std::uint64_t time = m_clock.TimeOf(buffer)) {
    frame.frameID = m_ids.Widen(arv_buffer_get_frame_id(buffer));
    frame.timestamp = time;
    frame.receiveFlags |= VmbFrameFlagsFrameID | VmbFrameFlagsTimestamp;
  }
  // Such a frame may also count as a success.
  if (layout.payload_bytes > announced_bytes) frame.receiveStatus = VmbFrameStatusTooSmall;
  // Of others Aravis answers neither data nor format.
  if (frame.receiveStatus != VmbFrameStatusComplete) return frame;
  size_t bytes = 0;
  arv_buffer_get_image_data(buffer, &bytes);
  frame.imageSize = static_cast<VmbUint32_t>(std::min<size_t>(bytes, announced_bytes));
  frame.pixelFormat = arv_buffer_get_image_pixel_format(buffer);
  frame.width = static_cast<VmbUint32_t>(arv_buffer_get_image_width(buffer));
  frame.height = static_cast<VmbUint32_t>(arv_buffer_get_image_height(buffer));
  frame.offsetX = static_cast<VmbUint32_t>(arv_buffer_get_image_x(buffer));
  frame.offsetY = static_cast<VmbUint32_t>(arv_buffer_get_image_y(buffer));
  return frame;
}

void FrameStream::End() {
  // From here on no callback begins, and nothing is fed.
  m_frames.End();
  Object<ArvStream> stream;
  {
    const BMutexLock lock(m_mutex);
    m_running = nullptr;
    stream = std::move(m_stream);
  }
  if (!stream) return;
  // Ends its thread; the frames that it held are queued again.
  stream.reset();
  m_state.SetStreaming(false);
}

void FrameStream::Flush() {
  const BMutexLock lock(m_mutex);
  if (m_stream) arv_stream_stop_thread(m_stream.get(), TRUE);
  m_frames.Flush();
  if (m_stream) arv_stream_start_thread(m_stream.get());
}

void FrameStream::Close() {
  End();
  m_frames.Close();
}

}  // namespace Bridge
