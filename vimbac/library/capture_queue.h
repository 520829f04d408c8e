// library/capture_queue.h
// The announced frames of one opened camera, their way through the queue, and the thread that calls back.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <thread>

#include "VimbaC.h"
#include "bmutex.h"

namespace VimbaLibrary {

// How a frame is handed out. `alter` may change what was announced; empty: nothing does.
struct FrameDelivery {
  std::function<void(VmbFrame_t&)> alter = {};
  std::int64_t times = 1;
};

// A frame goes caller -> queued -> filling -> completed -> calling -> caller. From queued to completed the library owns
// it. [any thread] but where a function says otherwise.
class CaptureQueue {
 public:
  // `queued` runs after each queueing, without a lock.
  CaptureQueue(VmbHandle_t camera, std::function<void()> queued);
  // Ends as Close does.
  ~CaptureQueue();
  CaptureQueue(const CaptureQueue&) = delete;
  CaptureQueue& operator=(const CaptureQueue&) = delete;

  // As the API calls of these names.
  VmbError_t Announce(const VmbFrame_t* frame);
  VmbError_t RevokeAll();
  VmbError_t Start();
  // Returns after the running callback, or at once when called from it.
  void End();
  VmbError_t Queue(const VmbFrame_t* frame, VmbFrameCallback callback);
  void Flush();

  // Ends capture, takes all frames back and ends the callback thread. Not from a callback.
  void Close();
  // Whether the caller runs on that thread.
  bool OnCallbackThread() const;

  // A frame being filled. Its buffer may be written until Complete.
  struct Entry;
  using Filling = std::shared_ptr<Entry>;
  struct Buffer {
    std::uint8_t* bytes;
    std::uint32_t size_bytes;
  };
  static Buffer BufferOf(const Filling& filling);

  bool HasQueued() const;
  // The frame queued longest, or null.
  Filling Take();
  // Copies the received part of the record to the frame and hands it to the callback thread. Returns the number for
  // WaitForCallback.
  std::uint64_t Complete(const Filling& filling, const VmbFrame_t& received, const FrameDelivery& delivery = {});
  // The frame was not filled: it is the next one in the queue again, unless it was taken back meanwhile.
  void GiveUp(const Filling& filling);

  // Returns when the callback of that frame has returned or capture has ended.
  void WaitForCallback(std::uint64_t number);
  // No callback runs or is due.
  bool Idle() const;
  // Grows with every frame that is taken, completed or called back.
  std::uint64_t Activity() const { return m_activity; }

  struct Sizes {
    std::size_t announced;
    std::size_t queued;
    bool capturing;
  };
  Sizes Count() const;

 private:
  void RunCallbacks();
  void CallBack(BMutexLock& lock) KEL_REQUIRES(m_mutex);
  void RequeueCompleted() KEL_REQUIRES(m_mutex);
  void WaitForWriters(BMutexLock& lock) KEL_REQUIRES(m_mutex);

  const VmbHandle_t m_camera;
  const std::function<void()> m_after_queueing;

  mutable BMutex m_mutex;
  BCondition m_changed;
  std::map<const VmbFrame_t*, Filling> m_announced KEL_GUARDED_BY(m_mutex);
  std::deque<Filling> m_queued KEL_GUARDED_BY(m_mutex);
  std::deque<Filling> m_completed KEL_GUARDED_BY(m_mutex);
  bool m_capturing KEL_GUARDED_BY(m_mutex) = false;
  bool m_closing KEL_GUARDED_BY(m_mutex) = false;
  bool m_calling KEL_GUARDED_BY(m_mutex) = false;
  int m_writers KEL_GUARDED_BY(m_mutex) = 0;
  std::uint64_t m_last_completed KEL_GUARDED_BY(m_mutex) = 0;
  std::uint64_t m_last_called KEL_GUARDED_BY(m_mutex) = 0;
  std::atomic<std::uint64_t> m_activity{0};
  std::atomic<std::thread::id> m_thread_id;
  std::thread m_thread;
};

}  // namespace VimbaLibrary
