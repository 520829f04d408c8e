// engine/clock.h
// The clock by which simulated cameras run.
#pragma once

#include <chrono>

namespace Simulator {

using Clock = std::chrono::steady_clock;

}  // namespace Simulator
