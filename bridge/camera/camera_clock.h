// camera/camera_clock.h
// The clock of one camera's frames.
#pragma once

#include <arv.h>

#include <cstdint>
#include <optional>

#include "VimbaC.h"

namespace Bridge {

// The camera's own, if it can be latched: registers of the GigE Vision bootstrap block. Otherwise the host's, and a
// frame has the time at which it began to arrive. Which of the two is decided once, as times of one are nothing to the
// other. Takes no lock: its owner does, but for TimeOf.
class CameraClock {
 public:
  explicit CameraClock(ArvDevice* device);

  // As GevTimestampControlLatch and GevTimestampValue, in ns.
  VmbError_t Latch();
  std::int64_t Latched() const { return m_latched_ns; }
  // The time of a frame, in ns; 0 when no leader of it has arrived. [any thread]
  std::uint64_t TimeOf(ArvBuffer* buffer) const;
  bool IsTheCameras() const { return m_ticks_per_s.has_value(); }

 private:
  // The camera's time, in ticks.
  VmbError_t ReadTicks(std::uint64_t& ticks) const;

  ArvDevice* const m_device;
  std::optional<std::uint64_t> m_ticks_per_s;
  std::int64_t m_latched_ns = 0;
};

}  // namespace Bridge
