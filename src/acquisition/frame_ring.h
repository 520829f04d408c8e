// frame_ring.h
// The frames that circulate between the library and the handlers for the whole life of a device.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include "VimbaC.h"
#include "acquisition/ring_size.h"

class BLogCollector;
class VimbaCamera;

// Owns the frame records and their buffers. A record belongs to the library while it is queued, and to one handler or
// worker between its delivery and its return. [host thread] unless an operation says otherwise.
class FrameRing {
 public:
  // Every record carries `owner` as its first context value and is queued with `on_frame_done`, which finds its way
  // from there. The second context value is the frame's id: its index when announced, from then on a number that no
  // other queueing gets.
  FrameRing(const VimbaCamera& camera, void* owner, VmbFrameCallback on_frame_done);
  FrameRing(const FrameRing&) = delete;
  FrameRing& operator=(const FrameRing&) = delete;

  // Makes buffers of the camera's payload size and announces them. False, with a notice, when that size cannot be read
  // or fits no frame record; nothing is announced then. Whether the library takes an announced frame is not asked.
  [[nodiscard]] bool AnnounceFrames();
  // Queues every frame. False at the first that the library refuses; those before it stay queued.
  [[nodiscard]] bool FrameQueueFill(BLogCollector& log);
  // Takes every queued frame back, without a callback. False when the library refuses. Nothing in the driver calls it.
  bool RequeueFrames(BLogCollector& log);
  // Hands one frame back to the library under a new id; from then on it is not to be touched. A frame that the library
  // refuses is lost to the ring. [Vimba thread] [worker]
  [[nodiscard]] VmbError_t ReQueueFrame(VmbFrame_t* frame);
  // Frees the buffers, once the library knows none of them any more.
  void FreeFrames();

  // Bytes of a frame; 0 before the announcement.
  std::int64_t PayloadSize() const { return m_payload_size; }

 private:
  const VimbaCamera& m_camera;
  void* m_owner;
  VmbFrameCallback m_on_frame_done;
  std::int64_t m_payload_size = 0;
  std::array<std::unique_ptr<std::uint8_t[]>, kRingFrames> m_buffers;
  std::array<VmbFrame_t, kRingFrames> m_frames{};
  std::atomic<std::uint64_t> m_frame_context_counter{0};
};
