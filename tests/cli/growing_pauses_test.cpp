// growing_pauses_test.cpp
// How long the pauses between tries are, and what ends them.
#include "kelcam/device/growing_pauses.h"

#include <vector>

#include "gtest/gtest.h"

namespace {

using namespace std::chrono_literals;
using Kelcam::GrowingPauses;
using Clock = std::chrono::steady_clock;

constexpr GrowingPauses::Limits kShort{1ms, 5ms};

bool Never() { return false; }

TEST(GrowingPausesTest, BeginAtAQuarterOfASecondAndEndAtFiveSeconds) {
  const GrowingPauses::Limits limits;

  EXPECT_EQ(limits.first, 250ms);
  EXPECT_EQ(limits.longest, 5s);
}

TEST(GrowingPausesTest, DoubleUpToTheLongest) {
  GrowingPauses pauses(kShort);
  std::vector<std::chrono::milliseconds> lengths;

  for (int pause = 0; pause < 5; ++pause) {
    lengths.push_back(pauses.Next());
    EXPECT_TRUE(pauses.Wait(Never));
  }

  EXPECT_EQ(lengths, (std::vector<std::chrono::milliseconds>{1ms, 2ms, 4ms, 5ms, 5ms}));
}

TEST(GrowingPausesTest, BeginAgainAfterAReset) {
  GrowingPauses pauses(kShort);
  EXPECT_TRUE(pauses.Wait(Never));

  pauses.Reset();

  EXPECT_EQ(pauses.Next(), 1ms);
}

TEST(GrowingPausesTest, LastAtLeastAsLongAsTheySay) {
  GrowingPauses pauses({20ms, 20ms});
  const Clock::time_point begin = Clock::now();

  EXPECT_TRUE(pauses.Wait(Never));

  EXPECT_GE(Clock::now() - begin, 20ms);
}

TEST(GrowingPausesTest, AreNeverLongerThanTheLongest) { EXPECT_EQ(GrowingPauses({250ms, 10ms}).Next(), 10ms); }

TEST(GrowingPausesTest, EndEarlyWhenItIsOver) {
  GrowingPauses pauses({1h, 1h});
  int asked = 0;

  EXPECT_FALSE(pauses.Wait([&asked] { return ++asked > 2; }));

  EXPECT_GT(asked, 2);
}

}  // namespace
