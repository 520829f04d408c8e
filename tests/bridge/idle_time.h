// idle_time.h
// How much of the machine nobody has used.
#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <numeric>
#include <string>

// From its construction on. A camera of these tests sends when it gets the processor, so a rate says something of the
// host only where there was some to be had; that no frame is missing says it always.
class IdleTime {
 public:
  // Whether the processors had nothing to do for a tenth of the time at least.
  bool WasEnough() const {
    const Ticks now = Read();
    return (now.idle - m_begin.idle) * 10 >= now.all - m_begin.all;
  }

 private:
  struct Ticks {
    std::uint64_t idle = 0;
    std::uint64_t all = 0;
  };
  // The first line of /proc/stat: user, nice, system, idle, waiting for input and output, interrupts, ...
  static Ticks Read() {
    std::ifstream file("/proc/stat");
    std::string name;
    std::array<std::uint64_t, 8> ticks{};
    file >> name;
    for (std::uint64_t& tick : ticks) file >> tick;
    return {ticks[3] + ticks[4], std::accumulate(ticks.begin(), ticks.end(), std::uint64_t{0})};
  }

  const Ticks m_begin = Read();
};
