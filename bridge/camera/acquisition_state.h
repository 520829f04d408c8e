// camera/acquisition_state.h
// Whether one camera sends, and what.
#pragma once

#include <atomic>
#include <cstdint>

#include "VimbaC.h"
#include "bmutex.h"

namespace Bridge {

// What the frames of one acquisition are, read before it began: it cannot change while they come.
struct FrameLayout {
  std::uint64_t payload_bytes = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t offset_x = 0;
  std::uint32_t offset_y = 0;
};

// [any thread]
class AcquisitionState {
 public:
  void Begin(const FrameLayout& layout) {
    const BMutexLock lock(m_mutex);
    m_layout = layout;
    m_acquiring = true;
  }
  void End() { m_acquiring = false; }
  bool Acquiring() const { return m_acquiring; }
  FrameLayout Layout() const {
    const BMutexLock lock(m_mutex);
    return m_layout;
  }

  // A stream fixes the packet size when it is made.
  void SetStreaming(bool streaming) { m_streaming = streaming; }
  bool Streaming() const { return m_streaming; }

 private:
  mutable BMutex m_mutex;
  FrameLayout m_layout KEL_GUARDED_BY(m_mutex);
  std::atomic<bool> m_acquiring{false};
  std::atomic<bool> m_streaming{false};
};

}  // namespace Bridge
