// stream/frame_ids.h
// Numbers of frames that go on where the wire's begin again.
#pragma once

#include <cstdint>

namespace Bridge {

// On the wire a frame has a block id of 16 bits: 65535 is followed by 1. Cameras with ids of 64 bits, by a later
// version of the standard, keep theirs. Frames may come a little out of order.
class FrameIds {
 public:
  std::uint64_t Widen(std::uint64_t id) {
    constexpr std::uint64_t kIds = 65'535;
    if (id > kIds) return id;
    const std::uint64_t last = m_last;
    if (last > kIds / 2 + id) {
      m_base += kIds;
    } else if (id > last + kIds / 2 && m_base != 0) {
      // One that is late, from before the last turn.
      return m_base - kIds + id;
    }
    m_last = id;
    return m_base + id;
  }

 private:
  std::uint64_t m_base = 0;
  std::uint64_t m_last = 0;
};

}  // namespace Bridge
