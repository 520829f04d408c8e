// scene/times.h
// Times with fractions, as features and configurations give them.
#pragma once

#include <chrono>

namespace Simulator {

using Seconds = std::chrono::duration<double>;
using Milliseconds = std::chrono::duration<double, std::milli>;
using Microseconds = std::chrono::duration<double, std::micro>;

}  // namespace Simulator
