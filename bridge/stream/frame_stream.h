// stream/frame_stream.h
// One camera's stream: announced frames, filled by Aravis, handed out one after the other.
#pragma once

#include <arv.h>

#include <atomic>
#include <cstdint>

#include "VimbaC.h"
#include "aravis/object.h"
#include "bmutex.h"
#include "camera/acquisition_state.h"
#include "camera/camera_clock.h"
#include "library/capture_queue.h"
#include "stream/frame_ids.h"

namespace Bridge {

// Every queued frame is a buffer of the stream's, over the caller's memory, made anew each time: a used one keeps what
// the last frame has left in it. The stream's thread only passes frames on; callbacks run on the queue's thread, so
// that they may end or flush what they are called by. [any thread] but where a function says otherwise.
class FrameStream {
 public:
  // The arguments outlive it. `camera_lock` guards the camera's features, which making a stream reads.
  FrameStream(VmbHandle_t camera, ArvDevice* device, BRecursiveMutex& camera_lock, const CameraClock& clock,
              AcquisitionState& state);
  ~FrameStream();
  FrameStream(const FrameStream&) = delete;
  FrameStream& operator=(const FrameStream&) = delete;

  // As the API calls of these names.
  VmbError_t Announce(const VmbFrame_t* frame) { return m_frames.Announce(frame); }
  VmbError_t RevokeAll() { return m_frames.RevokeAll(); }
  VmbError_t Start();
  void End();
  VmbError_t Queue(const VmbFrame_t* frame, VmbFrameCallback callback) { return m_frames.Queue(frame, callback); }
  void Flush();

  bool OnCallbackThread() const { return m_frames.OnCallbackThread(); }
  // Ends capture and the threads. Not from a callback.
  void Close();

 private:
  struct Pending;

  static void OnStream(void* self, ArvStreamCallbackType event, ArvBuffer* buffer);
  static void OnBufferGone(void* pending);
  Object<ArvStream> MakeStream(VmbError_t& error);
  // Gives Aravis a buffer for each queued frame.
  void Feed();
  // On the stream's thread.
  void TakeFilled();
  void Deliver(Object<ArvBuffer> buffer);
  VmbFrame_t Describe(ArvBuffer* buffer, std::uint32_t announced_bytes);

  ArvDevice* const m_device;
  BRecursiveMutex& m_camera_lock;
  const CameraClock& m_clock;
  AcquisitionState& m_state;

  VimbaLibrary::CaptureQueue m_frames;
  // Held while the stream is made, fed, flushed and taken away; never while a callback runs or is waited for.
  BMutex m_mutex;
  Object<ArvStream> m_stream KEL_GUARDED_BY(m_mutex);
  // The same, for the stream's own thread, which outlives neither it nor this.
  std::atomic<ArvStream*> m_running{nullptr};
  // Of the stream's thread.
  FrameIds m_ids;
};

}  // namespace Bridge
