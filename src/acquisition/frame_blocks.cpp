// frame_blocks.cpp
// The memory that frames are copied into, used again instead of being mapped and faulted in anew for each frame.
#include "acquisition/frame_blocks.h"

#include <algorithm>
#include <new>
#include <utility>

FrameBlocks::Block FrameBlocks::Take(std::size_t size) {
  {
    BMutexLock lock(m_mutex);
    if (size != m_size) m_idle.clear();
    m_size = size;
    // So that giving back never needs memory.
    m_idle.reserve(kRunningBlocks);
    ++m_waiting;
    while (m_used >= MostUsedBlocks()) m_returned.Wait(lock);
    --m_waiting;
    ++m_used;
    if (Block block = TakeIdle()) return block;
  }
  try {
    return std::make_unique_for_overwrite<std::uint8_t[]>(size);
  } catch (const std::bad_alloc&) {
    Return(nullptr, size);
    throw;
  }
}

FrameBlocks::Block FrameBlocks::TakeIdle() {
  if (m_idle.empty()) return nullptr;
  Block block = std::move(m_idle.back());
  m_idle.pop_back();
  return block;
}

void FrameBlocks::Return(Block block, std::size_t size) noexcept {
  const BMutexLock lock(m_mutex);
  if (block && size == m_size && m_idle.size() < KeptBlocks()) m_idle.push_back(std::move(block));
  --m_used;
  m_returned.NotifyOne();
}

void FrameBlocks::SetRunning(bool running) {
  const BMutexLock lock(m_mutex);
  m_running = running;
  while (m_idle.size() > KeptBlocks()) m_idle.pop_back();
}

std::size_t FrameBlocks::IdleBytes() const {
  const BMutexLock lock(m_mutex);
  return m_idle.size() * m_size;
}

std::size_t FrameBlocks::Waiting() const {
  const BMutexLock lock(m_mutex);
  return m_waiting;
}

std::size_t FrameBlocks::KeptBlocks() const {
  if (m_running) return kRunningBlocks;
  return m_size == 0 ? 0 : std::min(kRunningBlocks, kIdleBytes / m_size);
}

std::size_t FrameBlocks::MostUsedBlocks() const {
  return std::max(kLeastUsedBlocks, kUsedBytes / std::max<std::size_t>(m_size, 1));
}
