// frame_ring.h
// The frames that circulate between the library and the handlers for the whole life of a device.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "VimbaC.h"
#include "acquisition/ring_size.h"

class BLogCollector;
class VimbaCamera;

// A frame as a handler gets it: what its record said when it arrived, and where its pixels are. Neither is read from
// the record again, which the library may write to when it should not.
struct ArrivedFrame {
  enum class Trust {
    kAsAnnounced,
    // A record of the ring with another buffer, size or context than the library was given with it.
    kAltered,
    // A record of the ring that somebody here has in hand already, or that was never queued.
    kInHand,
    // A record that is none of the ring: it speaks for itself.
    kForeign,
  };

  VmbFrame_t* record = nullptr;
  VmbFrame_t received{};
  std::span<const std::uint8_t> pixels;
  Trust trust = Trust::kInHand;
};

// Owns the frame records and their buffers. A record belongs to the library while it is queued, and to one handler or
// worker between its delivery and its return. [host thread] unless an operation says otherwise.
class FrameRing {
 public:
  // Larger frames are not believed: no buffer is made for them.
  static constexpr std::int64_t kLargestPayloadBytes = std::int64_t{1} << 30;

  // Every record carries `owner` as its first context value and is queued with `on_frame_done`, which finds its way
  // from there. The second context value is the frame's id: its index when announced, from then on a number that no
  // other queueing gets.
  FrameRing(const VimbaCamera& camera, void* owner, VmbFrameCallback on_frame_done);
  FrameRing(const FrameRing&) = delete;
  FrameRing& operator=(const FrameRing&) = delete;

  // Makes buffers of the camera's payload size and announces them. False, with a notice, when that size cannot be read
  // or believed; nothing is announced then. Whether the library takes an announced frame is not asked.
  [[nodiscard]] bool AnnounceFrames();
  // Queues every frame. False at the first that the library refuses; those before it stay queued.
  [[nodiscard]] bool FrameQueueFill(BLogCollector& log);
  // Takes every queued frame back, without a callback. False when the library refuses. Nothing in the driver calls it.
  bool RequeueFrames(BLogCollector& log);

  // What the library has delivered, once for each queueing; the frame is in the caller's hand from then on.
  // [Vimba thread]
  ArrivedFrame Take(VmbFrame_t* frame);
  // Hands one frame back to the library under a new id; from then on it is not to be touched. A frame that the library
  // refuses is lost to the ring. [Vimba thread] [worker]
  [[nodiscard]] VmbError_t ReQueueFrame(VmbFrame_t* frame);

  // Gives the frames up; the last use of this object. Frames that the library has not given back, because it refused,
  // it may still write to: they are kept until FreeUnreturnedFrames.
  void FreeFrames(bool returned);
  // Once the Vimba system is shut down.
  static void FreeUnreturnedFrames();

  // Bytes of a frame; 0 before the announcement.
  std::int64_t PayloadSize() const { return m_payload_size; }
  // Where the records are, as long as this object lives. [any thread]
  std::span<const VmbFrame_t> Records() const { return m_frames->records; }

 private:
  // What the library knows by address.
  struct Frames {
    std::array<VmbFrame_t, kRingFrames> records{};
    std::array<std::unique_ptr<std::uint8_t[]>, kRingFrames> buffers;
    // The next of those that were not given back.
    std::unique_ptr<Frames> next;
  };

  std::optional<std::size_t> IndexOf(const VmbFrame_t* frame) const;
  void WriteRecord(std::size_t index, std::uint64_t id);
  bool IsAsWritten(std::size_t index, const VmbFrame_t& received) const;

  // [host thread, as devices are released on one thread at a time]
  static std::unique_ptr<Frames> s_unreturned;

  const VimbaCamera& m_camera;
  void* const m_owner;
  const VmbFrameCallback m_on_frame_done;
  std::unique_ptr<Frames> m_frames = std::make_unique<Frames>();
  std::int64_t m_payload_size = 0;
  std::atomic<std::uint64_t> m_frame_context_counter{0};
  // Of each record: the id that it was given last, and whether it is out of the library's hand.
  std::array<std::atomic<std::uint64_t>, kRingFrames> m_ids{};
  std::array<std::atomic<bool>, kRingFrames> m_in_hand;
};
