// period_test.cpp
// Times that come once or again and again.
#include "link/period.h"

#include <gtest/gtest.h>

namespace {

using Simulator::kNever;
using Simulator::Period;
using Simulator::Seconds;

TEST(Period, ComesOnceWithoutARound) {
  const Period period{Seconds(2.0), Seconds(3.0), Seconds::zero()};

  EXPECT_FALSE(period.Holds(Seconds(1.9)));
  EXPECT_TRUE(period.Holds(Seconds(2.0)));
  EXPECT_FALSE(period.Holds(Seconds(5.0)));
  EXPECT_EQ(period.NextChange(Seconds(0.0)), Seconds(2.0));
  EXPECT_EQ(period.NextChange(Seconds(2.0)), Seconds(5.0));
  EXPECT_EQ(period.NextChange(Seconds(5.0)), kNever);
}

TEST(Period, IsWithoutEndByDefault) {
  const Period period;

  EXPECT_FALSE(period.Holds(Seconds(-0.1)));
  EXPECT_TRUE(period.Holds(Seconds(1e9)));
  EXPECT_EQ(period.NextChange(-kNever), Seconds(0.0));
  EXPECT_EQ(period.NextChange(Seconds(0.0)), kNever);
}

TEST(Period, ComesAgainAfterEachRound) {
  const Period period{Seconds(1.0), Seconds(0.5), Seconds(2.0)};

  EXPECT_TRUE(period.Holds(Seconds(7.25)));
  EXPECT_FALSE(period.Holds(Seconds(7.75)));
  EXPECT_EQ(period.NextChange(Seconds(7.25)), Seconds(7.5));
  EXPECT_EQ(period.NextChange(Seconds(7.75)), Seconds(9.0));
}

TEST(Period, MayLastLongerThanItsRound) {
  const Period period{Seconds(0.0), Seconds(3.0), Seconds(2.0)};

  EXPECT_TRUE(period.Holds(Seconds(100.9)));
}

// Whatever rounding does: each change lies ahead, and at each one the state is the new one.
TEST(Period, ChangesAreNeverPassedOverOrMetTwice) {
  const Period period{Seconds(0.1), Seconds(0.7 / 3.0), Seconds(0.7)};
  Seconds moment{0.0};
  for (int i = 0; i < 20'000; ++i) {
    const Seconds next = period.NextChange(moment);
    ASSERT_GT(next, moment);
    ASSERT_EQ(period.Holds(next), i % 2 == 0) << i;
    moment = next;
  }
  EXPECT_NEAR(moment.count(), 0.1 + 9'999 * 0.7 + 0.7 / 3.0, 1e-6);
}

}  // namespace
