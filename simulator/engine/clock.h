// engine/clock.h
// The clock by which simulated cameras run.
#pragma once

#include <chrono>

#include "scene/times.h"

namespace Simulator {

using Clock = std::chrono::steady_clock;

// The time in the clock's own steps, rounded down.
constexpr Clock::duration ClockDuration(Seconds time) { return std::chrono::duration_cast<Clock::duration>(time); }

}  // namespace Simulator
