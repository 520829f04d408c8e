// clock_course.h
// How the camera's clock goes, compared with the computer's.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "check/check_facts.h"

namespace Kelcam {

struct ClockCourse {
  enum Kind { kGoes, kUnread, kStands, kGoesBack, kJumps, kGoesWrong };

  Kind kind = kGoes;
  double seconds = 0.0;                       // between the first reading and the last
  std::optional<double> camera_seconds = {};  // in the same time, by the camera's clock
  double worst_jump_s = 0.0;                  // of one step against the computer's clock
};

// What the driver reads of a clock that the camera does not have.
inline constexpr std::uint64_t kUnreadClock = 18446744073709551615u;

// None for fewer than two readings, unless one says that the clock cannot be read.
std::optional<ClockCourse> CourseOf(const std::vector<ClockReading>& readings, std::optional<std::int64_t> ticks_per_s);

}  // namespace Kelcam
