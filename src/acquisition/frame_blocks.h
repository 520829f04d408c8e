// frame_blocks.h
// The memory that frames are copied into, used again instead of being mapped and faulted in anew for each frame.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "acquisition/ring_size.h"
#include "bmutex.h"

// Blocks of one size at a time. While an acquisition runs, as many idle blocks are kept as the ring has frames; between
// acquisitions at most kIdleBytes. What is in use is bounded too: a host that does not take its frames holds back the
// workers, they hold back the ring, and the library drops what arrives then. [any thread]
class FrameBlocks {
 public:
  using Block = std::unique_ptr<std::uint8_t[]>;

  static constexpr std::size_t kRunningBlocks = kRingFrames;
  static constexpr std::size_t kIdleBytes = 6U << 20U;
  // In use at once: this many bytes, but never fewer blocks than a ring of workers and as many waiting frames need.
  static constexpr std::size_t kUsedBytes = 512U << 20U;
  static constexpr std::size_t kLeastUsedBlocks = 2 * kRingFrames;

  // An idle block of this size or a new one; its content is undefined. Waits while as many are in use as may be. Throws
  // std::bad_alloc.
  Block Take(std::size_t size);
  // A block of that size is no longer used: kept or freed.
  void Return(Block block, std::size_t size) noexcept;
  // An acquisition begins or ends; at the end what is over kIdleBytes is freed.
  void SetRunning(bool running);

  std::size_t IdleBytes() const;
  // How many takers wait for a block to be returned.
  std::size_t Waiting() const;

 private:
  // How many may lie idle and be in use.
  std::size_t KeptBlocks() const KEL_REQUIRES(m_mutex);
  std::size_t MostUsedBlocks() const KEL_REQUIRES(m_mutex);
  Block TakeIdle() KEL_REQUIRES(m_mutex);

  mutable BMutex m_mutex;
  BCondition m_returned;
  std::size_t m_used KEL_GUARDED_BY(m_mutex) = 0;
  std::size_t m_waiting KEL_GUARDED_BY(m_mutex) = 0;
  std::vector<Block> m_idle KEL_GUARDED_BY(m_mutex);
  std::size_t m_size KEL_GUARDED_BY(m_mutex) = 0;
  bool m_running KEL_GUARDED_BY(m_mutex) = false;
};
