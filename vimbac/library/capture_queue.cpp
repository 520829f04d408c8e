// library/capture_queue.cpp
// The announced frames of one opened camera, their way through the queue, and the thread that calls back.
#include "library/capture_queue.h"

#include <tuple>
#include <utility>

namespace VimbaLibrary {

struct CaptureQueue::Entry {
  enum class State { kCaller, kQueued, kFilling, kCompleted, kCalling };

  // The caller's record, which the library writes while it owns the frame.
  VmbFrame_t* frame;
  // As announced; later changes of the record do not move the buffer.
  Buffer buffer;
  VmbFrameCallback callback = nullptr;
  State state = State::kCaller;
  std::uint64_t number = 0;
  std::int64_t deliveries = 1;
};

using State = CaptureQueue::Entry::State;

CaptureQueue::CaptureQueue(VmbHandle_t camera, std::function<void()> queued)
    : m_camera(camera), m_after_queueing(std::move(queued)), m_thread([this] { RunCallbacks(); }) {}

CaptureQueue::~CaptureQueue() { Close(); }

bool CaptureQueue::OnCallbackThread() const { return std::this_thread::get_id() == m_thread_id; }

VmbError_t CaptureQueue::Announce(const VmbFrame_t* frame) {
  if (!frame || !frame->buffer || frame->bufferSize == 0) return VmbErrorBadParameter;
  const BMutexLock lock(m_mutex);
  if (m_closing) return VmbErrorBadHandle;
  auto entry = std::make_shared<Entry>();
  entry->frame = const_cast<VmbFrame_t*>(frame);
  entry->buffer = {static_cast<std::uint8_t*>(frame->buffer), frame->bufferSize};
  return m_announced.emplace(frame, std::move(entry)).second ? VmbErrorSuccess : VmbErrorBadParameter;
}

VmbError_t CaptureQueue::RevokeAll() {
  BMutexLock lock(m_mutex);
  if (m_capturing) return VmbErrorInvalidCall;
  m_queued.clear();
  for (const auto& [frame, entry] : m_announced) entry->state = State::kCaller;
  m_announced.clear();
  WaitForWriters(lock);
  return VmbErrorSuccess;
}

VmbError_t CaptureQueue::Start() {
  const BMutexLock lock(m_mutex);
  if (m_closing) return VmbErrorBadHandle;
  if (m_capturing) return VmbErrorInvalidCall;
  m_capturing = true;
  return VmbErrorSuccess;
}

void CaptureQueue::End() {
  BMutexLock lock(m_mutex);
  m_capturing = false;
  RequeueCompleted();
  m_changed.NotifyAll();
  while (m_calling && !OnCallbackThread()) m_changed.Wait(lock);
}

// Frames whose callback has not begun stay queued: a flush gives them back.
void CaptureQueue::RequeueCompleted() {
  while (!m_completed.empty()) {
    m_completed.back()->state = State::kQueued;
    m_queued.push_front(std::move(m_completed.back()));
    m_completed.pop_back();
  }
}

VmbError_t CaptureQueue::Queue(const VmbFrame_t* frame, VmbFrameCallback callback) {
  if (!frame) return VmbErrorBadParameter;
  {
    const BMutexLock lock(m_mutex);
    const auto found = m_announced.find(frame);
    if (found == m_announced.end()) return VmbErrorBadParameter;
    Entry& entry = *found->second;
    const bool owned_by_caller = entry.state == State::kCaller || entry.state == State::kCalling;
    if (!m_capturing || !owned_by_caller) return VmbErrorInvalidCall;
    entry.callback = callback;
    entry.state = State::kQueued;
    m_queued.push_back(found->second);
  }
  m_after_queueing();
  return VmbErrorSuccess;
}

void CaptureQueue::Flush() {
  BMutexLock lock(m_mutex);
  RequeueCompleted();
  m_queued.clear();
  for (const auto& [frame, entry] : m_announced) entry->state = State::kCaller;
  m_changed.NotifyAll();
  WaitForWriters(lock);
}

void CaptureQueue::WaitForWriters(BMutexLock& lock) {
  while (m_writers != 0) m_changed.Wait(lock);
}

void CaptureQueue::Close() {
  {
    const BMutexLock lock(m_mutex);
    m_closing = true;
  }
  End();
  Flush();
  std::ignore = RevokeAll();
  if (m_thread.joinable()) m_thread.join();
}

CaptureQueue::Buffer CaptureQueue::BufferOf(const Filling& filling) { return filling->buffer; }

bool CaptureQueue::HasQueued() const {
  const BMutexLock lock(m_mutex);
  return m_capturing && !m_queued.empty();
}

CaptureQueue::Filling CaptureQueue::Take() {
  const BMutexLock lock(m_mutex);
  if (!m_capturing || m_queued.empty()) return nullptr;
  Filling filling = std::move(m_queued.front());
  m_queued.pop_front();
  filling->state = State::kFilling;
  ++m_activity;
  ++m_writers;
  return filling;
}

std::uint64_t CaptureQueue::Complete(const Filling& filling, const VmbFrame_t& received,
                                     const FrameDelivery& delivery) {
  const BMutexLock lock(m_mutex);
  --m_writers;
  ++m_activity;
  m_changed.NotifyAll();
  // Flushed or revoked meanwhile: the record is the caller's again.
  if (filling->state != State::kFilling) return m_last_called;
  VmbFrame_t& frame = *filling->frame;
  frame.receiveStatus = received.receiveStatus;
  frame.receiveFlags = received.receiveFlags;
  frame.imageSize = received.imageSize;
  frame.ancillarySize = received.ancillarySize;
  frame.pixelFormat = received.pixelFormat;
  frame.width = received.width;
  frame.height = received.height;
  frame.offsetX = received.offsetX;
  frame.offsetY = received.offsetY;
  frame.frameID = received.frameID;
  frame.timestamp = received.timestamp;
  if (delivery.alter) delivery.alter(frame);
  filling->deliveries = delivery.times;
  filling->number = ++m_last_completed;
  filling->state = State::kCompleted;
  m_completed.push_back(filling);
  if (!m_capturing) RequeueCompleted();
  return m_last_completed;
}

void CaptureQueue::GiveUp(const Filling& filling) {
  const BMutexLock lock(m_mutex);
  --m_writers;
  ++m_activity;
  m_changed.NotifyAll();
  if (filling->state != State::kFilling) return;
  filling->state = State::kQueued;
  m_queued.push_front(filling);
}

void CaptureQueue::RunCallbacks() {
  m_thread_id = std::this_thread::get_id();
  BMutexLock lock(m_mutex);
  while (!m_closing) {
    if (m_capturing && !m_completed.empty()) {
      CallBack(lock);
    } else {
      m_changed.Wait(lock);
    }
  }
}

void CaptureQueue::CallBack(BMutexLock& lock) {
  const Filling entry = std::move(m_completed.front());
  m_completed.pop_front();
  entry->state = State::kCalling;
  m_calling = true;
  VmbFrame_t* const frame = entry->frame;
  const VmbFrameCallback callback = entry->callback;
  const std::uint64_t number = entry->number;
  const std::int64_t deliveries = entry->deliveries;
  {
    const BMutexUnlock unlocked(m_mutex, lock);
    for (std::int64_t i = 0; callback && i < deliveries; ++i) callback(m_camera, frame);
  }
  m_calling = false;
  ++m_activity;
  m_last_called = number;
  // The callback may have queued the frame again, which may even be filled once more by now.
  if (entry->state == State::kCalling) entry->state = State::kCaller;
  m_changed.NotifyAll();
}

void CaptureQueue::WaitForCallback(std::uint64_t number) {
  BMutexLock lock(m_mutex);
  while (m_capturing && m_last_called < number) m_changed.Wait(lock);
}

bool CaptureQueue::Idle() const {
  const BMutexLock lock(m_mutex);
  return !m_calling && m_completed.empty() && m_writers == 0;
}

CaptureQueue::Sizes CaptureQueue::Count() const {
  const BMutexLock lock(m_mutex);
  return {m_announced.size(), m_queued.size(), m_capturing};
}

}  // namespace VimbaLibrary
