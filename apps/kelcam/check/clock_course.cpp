// clock_course.cpp
// How the camera's clock goes, compared with the computer's.
#include "check/clock_course.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace Kelcam {
namespace {

// The driver reports the clock when the start has ended, which takes a busy computer a while.
constexpr double kLatestReportSeconds = 1.0;
// Of quartzes that differ by some millionths, after some seconds.
constexpr double kLargestDeviation = 0.05;
constexpr double kShortestComparisonSeconds = 2.0;

double SecondsBetween(const ClockReading& a, const ClockReading& b) {
  return std::chrono::duration<double>(b.time - a.time).count();
}

ClockCourse::Kind KindOf(const ClockCourse& course) {
  if (course.worst_jump_s > kLatestReportSeconds) return ClockCourse::kJumps;
  if (!course.camera_seconds || course.seconds < kShortestComparisonSeconds) return ClockCourse::kGoes;
  // The reports of the first reading and of the last may be late.
  const double deviation_s = std::fabs(*course.camera_seconds - course.seconds);
  return deviation_s > course.seconds * kLargestDeviation + kLatestReportSeconds ? ClockCourse::kGoesWrong
                                                                                 : ClockCourse::kGoes;
}

}  // namespace

std::optional<ClockCourse> CourseOf(const std::vector<ClockReading>& readings,
                                    std::optional<std::int64_t> ticks_per_s) {
  const auto is_unread = [](const ClockReading& reading) { return reading.ticks == kUnreadClock; };
  if (std::any_of(readings.begin(), readings.end(), is_unread)) return ClockCourse{.kind = ClockCourse::kUnread};
  if (readings.size() < 2) return std::nullopt;
  ClockCourse course{.seconds = SecondsBetween(readings.front(), readings.back())};
  bool stands = true, goes_back = false;
  for (auto here = readings.begin(), next = here + 1; next != readings.end(); here = next++) {
    stands = stands && next->ticks == here->ticks;
    goes_back = goes_back || next->ticks < here->ticks;
    if (!ticks_per_s || *ticks_per_s <= 0) continue;
    const double step_s =
        (static_cast<double>(next->ticks) - static_cast<double>(here->ticks)) / static_cast<double>(*ticks_per_s);
    course.worst_jump_s = std::max(course.worst_jump_s, std::fabs(step_s - SecondsBetween(*here, *next)));
    course.camera_seconds = course.camera_seconds.value_or(0.0) + step_s;
  }
  course.kind = stands ? ClockCourse::kStands : goes_back ? ClockCourse::kGoesBack : KindOf(course);
  return course;
}

}  // namespace Kelcam
