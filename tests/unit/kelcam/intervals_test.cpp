// intervals_test.cpp
// The time from one frame to the next.
#include "check/intervals.h"

#include "gtest/gtest.h"

using namespace Kelcam;

namespace {

constexpr std::int64_t kTicksPerSecond = 1'000'000;

FrameArrival Arrival(std::uint64_t ticks, int here_ms) {
  FrameArrival arrival{.time = std::chrono::steady_clock::time_point(std::chrono::milliseconds(here_ms)),
                       .timestamp = ticks};
  arrival.is_complete = true;
  return arrival;
}

TEST(Intervals, OfOneFrameThereAreNone) {
  EXPECT_FALSE(IntervalsOf(std::vector<double>{7.0}));
  EXPECT_FALSE(IntervalsOf(std::vector<double>{}));
}

TEST(Intervals, HaveMeanLeastMostAndGaps) {
  const auto intervals = IntervalsOf(std::vector<double>{0.0, 40.0, 80.0, 160.0, 199.0});

  ASSERT_TRUE(intervals);
  EXPECT_EQ(intervals->count, 4u);
  EXPECT_DOUBLE_EQ(intervals->mean_ms, 49.75);
  EXPECT_DOUBLE_EQ(intervals->least_ms, 39.0);
  EXPECT_DOUBLE_EQ(intervals->most_ms, 80.0);
  EXPECT_EQ(intervals->gaps, 1u);
}

TEST(Intervals, AreThoseOfTheCamerasClock) {
  const auto intervals = IntervalsOf({Arrival(0, 0), Arrival(40'000, 100)}, kTicksPerSecond);

  ASSERT_TRUE(intervals);
  EXPECT_DOUBLE_EQ(intervals->mean_ms, 40.0);
  EXPECT_TRUE(intervals->by_camera_clock);
}

TEST(Intervals, AreThoseOfTheArrivalsWhereTheCamerasClockStands) {
  const auto intervals = IntervalsOf({Arrival(5, 0), Arrival(5, 100)}, kTicksPerSecond);

  ASSERT_TRUE(intervals);
  EXPECT_DOUBLE_EQ(intervals->mean_ms, 100.0);
  EXPECT_FALSE(intervals->by_camera_clock);
}

TEST(Intervals, LeaveOutFramesThatWereNotUsed) {
  FrameArrival incomplete = Arrival(20'000, 20);
  incomplete.is_complete = false;
  FrameArrival refused = Arrival(1, 30);
  refused.is_refused = true;

  const auto intervals = IntervalsOf({Arrival(0, 0), incomplete, refused, Arrival(40'000, 40)}, kTicksPerSecond);

  ASSERT_TRUE(intervals);
  EXPECT_EQ(intervals->count, 1u);
  EXPECT_DOUBLE_EQ(intervals->mean_ms, 40.0);
}

TEST(Arrivals, AreReadFromTheMessageOfAFrame) {
  const std::string message =
      "Camera 7 (X) : Thread ID = 1 : OnFrameExt()\n"
      "   1 :  1.0 ( 0.0) : Start\n"
      "   2 :  1.1 ( 0.1) : Frame context id = 0 FrameStatusComplete FrameID = 3 Timestamp = 156562862\n"
      "   3 :  1.2 ( 0.1) : End";

  const auto arrival = ArrivalIn(message, {});

  ASSERT_TRUE(arrival);
  EXPECT_EQ(arrival->timestamp, 156562862u);
  EXPECT_TRUE(arrival->is_complete);
  EXPECT_FALSE(arrival->is_refused);
  EXPECT_FALSE(ArrivalIn("Camera 7 (X) : Thread ID = 1 : Snap\n   1 :  1.0 ( 0.0) : Start", {}));
}

}  // namespace
