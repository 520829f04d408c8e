// frame_queue.h
// Hands captured frames from the threads that receive them to the host's thread that waits in a snap.
#pragma once

#include <cstdint>
#include <list>
#include <memory>

#include "acquisition/frame_blocks.h"
#include "berror.h"
#include "bsmartref.h"
#include "bsyncablesmartobj.h"
#include "wstring.h"

// Entries leave first in, first out. An entry is a frame, or no frame and the error that says why.
class BFrameQueue : public BSyncableSmartObj {
 public:
  // A private copy of one frame's pixels.
  class BFrame : public BSmartObj {
   public:
    // Memory for `size` bytes, from `blocks` where given. `id` is the context id under which the frame was queued,
    // `camera_id` the unique id of its camera. Throws std::bad_alloc.
    BFrame(std::uint64_t size, std::uint32_t pixel_format, std::uint64_t id, WString camera_id,
           std::shared_ptr<FrameBlocks> blocks = nullptr);
    ~BFrame() override;
    BFrame(const BFrame&) = delete;
    BFrame& operator=(const BFrame&) = delete;

    std::uint8_t* Data() const { return m_data.get(); }
    std::uint32_t PixelFormat() const { return m_pixel_format; }
    void SetPixelFormat(std::uint32_t pixel_format) { m_pixel_format = pixel_format; }
    std::uint64_t Id() const { return m_id; }
    WString CameraId() const { return m_camera_id; }

   private:
    FrameBlocks::Block m_data;
    std::uint32_t m_pixel_format;
    std::uint64_t m_id;
    WString m_camera_id;
    // Where the block goes back to, and the size it is known by there.
    std::shared_ptr<FrameBlocks> m_blocks;
    std::size_t m_block_size;
  };

  // Which acquisition an entry belongs to: the number of times that the queue has been cleared.
  using AcquisitionNumber = std::uint64_t;

  BFrameQueue() = default;
  ~BFrameQueue() override;
  BFrameQueue(const BFrameQueue&) = delete;
  BFrameQueue& operator=(const BFrameQueue&) = delete;

  void Push(BSmartRef<BFrame> frame, BError error);  // [any thread]
  // Pushes unless the queue has been cleared since `acquisition`; then the entry is dropped. [any thread]
  bool PushUnlessOver(AcquisitionNumber acquisition, BSmartRef<BFrame> frame, BError error = BError());
  void PushAbort();  // wakes a waiting Pop with the error "aborted" [any thread]

  // Takes the oldest entry, waiting up to timeout_ms for one in steps of 10 ms. `frame` gets the entry's frame, maybe
  // none; the result is the entry's error, or "time-out" with no frame. [host thread]
  BError Pop(BSmartRef<BFrame>& frame, std::uint32_t timeout_ms);

  void Clear();                                  // [host thread]
  AcquisitionNumber CurrentAcquisition() const;  // [any thread]

 private:
  struct Entry {
    BError error;
    BSmartRef<BFrame> frame;
  };

  void Append(Entry entry) KEL_REQUIRES(this);

  std::list<Entry> m_entries KEL_GUARDED_BY(this);
  std::uint64_t m_count KEL_GUARDED_BY(this) = 0;
  // Since the last clearing. Part of the queue's layout; nothing reads it.
  std::uint64_t m_push_count KEL_GUARDED_BY(this) = 0;
  AcquisitionNumber m_acquisition KEL_GUARDED_BY(this) = 0;
};
