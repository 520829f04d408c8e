// schedule_test.cpp
// When the images of a time-lapse are due.
#include "kelcam/snap/schedule.h"

#include "gtest/gtest.h"

namespace {

using Kelcam::Schedule;

constexpr Schedule::Seconds kInterval{2.0};

std::int64_t Next(std::int64_t last, double elapsed_s) {
  return Schedule::Next(last, Schedule::Seconds(elapsed_s), kInterval);
}

TEST(Schedules, AnImageThatIsReadyInTimeTakesTheNextTurn) {
  EXPECT_EQ(Next(0, 0.1), 1);
  EXPECT_EQ(Next(1, 3.9), 2);
  EXPECT_EQ(Next(1, 4.0), 2);
}

TEST(Schedules, AnImageThatIsLateTakesTheFirstTurnThatIsToCome) {
  EXPECT_EQ(Next(1, 4.1), 3);
  EXPECT_EQ(Next(1, 9.9), 5);
}

TEST(Schedules, NoTurnIsTakenTwice) {
  EXPECT_EQ(Next(3, 5.9), 4);
  EXPECT_EQ(Next(3, 6.0), 4);
}

TEST(Schedules, TurnsAreCountedFromTheStartAndDoNotDrift) {
  std::int64_t turn = 0;
  // Each image takes three quarters of its interval, and wakes up a little late.
  for (int image = 1; image <= 100'000; ++image) turn = Next(turn, static_cast<double>(turn) * 2.0 + 1.6);

  EXPECT_EQ(turn, 100'000);
}

}  // namespace
