// engine/counters.h
// What a simulated camera counts since its power-up.
#pragma once

#include <atomic>
#include <cstdint>

namespace Simulator {

struct Counters {
  std::atomic<std::uint64_t> exposed{0};
  std::atomic<std::uint64_t> delivered{0};
  // Complete in the camera, but no frame was queued for them.
  std::atomic<std::uint64_t> dropped{0};
  std::atomic<std::uint64_t> packets_received{0};
  std::atomic<std::uint64_t> packets_lost{0};
  std::atomic<double> frames_per_s{0.0};

  void Reset() {
    for (auto* count : {&exposed, &delivered, &dropped, &packets_received, &packets_lost}) *count = 0;
    frames_per_s = 0.0;
  }
};

}  // namespace Simulator
