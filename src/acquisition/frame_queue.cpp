// frame_queue.cpp
// Hands captured frames from the threads that receive them to the host's thread that waits in a snap.
#include "acquisition/frame_queue.h"

#include <chrono>
#include <utility>

#include "bstopwatch.h"
#include "diagnostics/platform.h"

namespace {

constexpr std::chrono::milliseconds kPollInterval{10};

}  // namespace

BFrameQueue::BFrame::BFrame(std::uint64_t size, std::uint32_t pixel_format, std::uint64_t id, WString camera_id,
                            std::shared_ptr<FrameBlocks> blocks)
    : m_data(blocks ? blocks->Take(size) : std::make_unique_for_overwrite<std::uint8_t[]>(size)),
      m_pixel_format(pixel_format),
      m_id(id),
      m_camera_id(std::move(camera_id)),
      m_blocks(std::move(blocks)),
      m_block_size(size) {}

BFrameQueue::BFrame::~BFrame() {
  if (m_blocks) m_blocks->Return(std::move(m_data), m_block_size);
}

BFrameQueue::~BFrameQueue() = default;

void BFrameQueue::Append(Entry entry) {
  m_entries.push_back(std::move(entry));
  ++m_count;
  ++m_push_count;
}

void BFrameQueue::Push(BSmartRef<BFrame> frame, BError error) {
  const BAutoLockW lock(*this);
  Append({std::move(error), std::move(frame)});
}

bool BFrameQueue::PushUnlessOver(AcquisitionNumber acquisition, BSmartRef<BFrame> frame, BError error) {
  const BAutoLockW lock(*this);
  if (acquisition != m_acquisition) return false;
  Append({std::move(error), std::move(frame)});
  return true;
}

void BFrameQueue::PushAbort() { Push(nullptr, BError(BError::eAborted)); }

BError BFrameQueue::Pop(BSmartRef<BFrame>& frame, std::uint32_t timeout_ms) {
  frame = nullptr;
  const BStopWatch waiting;
  LockW();
  while (m_count == 0) {
    UnlockW();
    if (waiting.Period() >= timeout_ms) return BError(BError::eTimeout);
    SleepFor(kPollInterval);
    LockW();
  }
  Entry entry = std::move(m_entries.front());
  m_entries.pop_front();
  --m_count;
  UnlockW();
  frame = std::move(entry.frame);
  return std::move(entry.error);
}

void BFrameQueue::Clear() {
  std::list<Entry> dropped;
  const BAutoLockW lock(*this);
  dropped.swap(m_entries);
  m_count = 0;
  m_push_count = 0;
  ++m_acquisition;
}

BFrameQueue::AcquisitionNumber BFrameQueue::CurrentAcquisition() const {
  const BAutoLockW lock(*this);
  return m_acquisition;
}
