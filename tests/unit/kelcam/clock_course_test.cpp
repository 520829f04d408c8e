// clock_course_test.cpp
// How the camera's clock goes, compared with the computer's.
#include "check/clock_course.h"

#include "gtest/gtest.h"

using namespace Kelcam;

namespace {

constexpr std::int64_t kTicksPerSecond = 1000;

// Seconds here, ticks there.
ClockReading At(double here_s, std::uint64_t ticks) {
  const auto here =
      std::chrono::duration_cast<std::chrono::steady_clock::duration>(std::chrono::duration<double>(here_s));
  return {std::chrono::steady_clock::time_point(here), ticks};
}

ClockCourse::Kind KindOf(const std::vector<ClockReading>& readings) {
  const auto course = CourseOf(readings, kTicksPerSecond);
  return course ? course->kind : ClockCourse::kUnread;
}

TEST(ClockCourse, IsUnknownFromOneReading) {
  EXPECT_FALSE(CourseOf({}, kTicksPerSecond));
  EXPECT_FALSE(CourseOf({At(0, 7)}, kTicksPerSecond));
}

TEST(ClockCourse, GoesThoughReportsAreLate) {
  EXPECT_EQ(KindOf({At(0, 0), At(1.3, 1000), At(2, 2000), At(6, 6000)}), ClockCourse::kGoes);
}

TEST(ClockCourse, OneUnreadReadingSaysThatTheClockCannotBeRead) {
  const auto course = CourseOf({At(0, kUnreadClock)}, kTicksPerSecond);

  ASSERT_TRUE(course);
  EXPECT_EQ(course->kind, ClockCourse::kUnread);
}

TEST(ClockCourse, StandsGoesBackOrJumps) {
  EXPECT_EQ(KindOf({At(0, 5), At(1, 5), At(2, 5)}), ClockCourse::kStands);
  EXPECT_EQ(KindOf({At(0, 5000), At(1, 6000), At(2, 100)}), ClockCourse::kGoesBack);
  EXPECT_EQ(KindOf({At(0, 0), At(1, 1000), At(2, 20000)}), ClockCourse::kJumps);
}

TEST(ClockCourse, AClockOfTwiceTheSpeedGoesWrong) {
  std::vector<ClockReading> readings;
  for (int second = 0; second <= 50; ++second)
    readings.push_back(At(second / 10.0, static_cast<std::uint64_t>(second) * 200));

  EXPECT_EQ(KindOf(readings), ClockCourse::kGoesWrong);
}

TEST(ClockCourse, WithoutAFrequencyIsNotCompared) {
  const auto course = CourseOf({At(0, 0), At(1, 1'000'000)}, std::nullopt);

  ASSERT_TRUE(course);
  EXPECT_EQ(course->kind, ClockCourse::kGoes);
  EXPECT_FALSE(course->camera_seconds);
}

}  // namespace
