// bandwidth_limits_test.cpp
// The arithmetic of the stream rate, in bytes per second.
#include "stream/bandwidth_limits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

BandwidthState Between(std::int64_t min, std::int64_t max) {
  BandwidthState state;
  state.min = min;
  state.max = max;
  return state;
}

BandwidthState After(BandwidthState state, std::int64_t snaps, double average) {
  state.snap_count = snaps;
  state.average = average;
  return state;
}

TEST(BandwidthLimits, StartAsEveryCameraDoes) {
  const BandwidthState state;

  EXPECT_EQ(45'000'000, state.min);
  EXPECT_EQ(4'294'967'295, state.max);
  EXPECT_EQ(0, state.snap_count);
  EXPECT_EQ(0.0, state.average);
  EXPECT_EQ(0, state.failures);
}

TEST(BandwidthLimits, AQuantisedRateIsTheNearestMultipleHalvesAwayFromZero) {
  struct Row {
    std::int64_t rate, quantised;
  };
  const Row rows[] = {{0, 0},
                      {1, 0},
                      {49'999, 0},
                      {50'000, 100'000},
                      {100'000, 100'000},
                      {149'999, 100'000},
                      {150'000, 200'000},
                      {98'333'333, 98'300'000},
                      {4'294'967'295, 4'295'000'000},
                      {-49'999, 0},
                      {-50'000, -100'000},
                      {-149'999, -100'000},
                      {-150'000, -200'000}};
  for (const Row& row : rows) EXPECT_EQ(row.quantised, QuantisedRate(row.rate)) << row.rate;
}

TEST(BandwidthLimits, ACamerasNumberIsBoundedBeforeItIsComputedWith) {
  EXPECT_EQ(1'000'000'000'000'000, kHighestRate);
  EXPECT_EQ(kHighestRate, BoundedRate(kHighest));
  EXPECT_EQ(kHighestRate, BoundedRate(kHighestRate + 1));
  EXPECT_EQ(kHighestRate, BoundedRate(kHighestRate));
  EXPECT_EQ(124'000'000, BoundedRate(124'000'000));
  EXPECT_EQ(-1, BoundedRate(-1));
  EXPECT_EQ(-kHighestRate, BoundedRate(kLowest));
}

TEST(BandwidthLimits, WhereTheLimitsCrossTheLowerOneWins) {
  struct Row {
    std::int64_t rate, min, max, clamped;
  };
  const Row rows[] = {{5, 10, 20, 10},  {10, 10, 20, 10},      {15, 10, 20, 15},       {20, 10, 20, 20},
                      {25, 10, 20, 20}, {5, 20, 10, 20},       {15, 20, 10, 20},       {20, 20, 10, 20},
                      {25, 20, 10, 20}, {kLowest, 20, 10, 20}, {kHighest, 20, 10, 20}, {7, 20, 20, 20}};
  for (const Row& row : rows) EXPECT_EQ(row.clamped, ClampedRate(row.rate, row.min, row.max)) << row.rate;
}

TEST(BandwidthLimits, ACameraStartsTwoThirdsOfTheWayUp) {
  EXPECT_EQ(98'300'000, Between(45'000'000, 125'000'000).StartRate());
  EXPECT_EQ(30'000'000, Between(10'000'000, 40'000'000).StartRate());
  EXPECT_EQ(0, Between(0, 0).StartRate());
}

TEST(BandwidthLimits, TheStartRateIsInsideTheLimitsAlsoWhenItsMultipleIsNot) {
  EXPECT_EQ(98'333'333, Between(98'333'333, 98'333'333).StartRate());  // the multiple lies below
  EXPECT_EQ(60'000, Between(60'000, 60'000).StartRate());              // above
  EXPECT_EQ(45'000'000, Between(45'000'000, 10'000'000).StartRate());  // crossed
}

TEST(BandwidthLimits, WithoutSnapsTheLearnedLimitsAreTheQuantisedOnes) {
  const BandwidthState state = Between(45'040'000, 124'960'000);

  EXPECT_EQ(45'000'000, state.LearnedMin());
  EXPECT_EQ(125'000'000, state.LearnedMax());
  EXPECT_EQ(45'000'000, state.BandwidthLimit(1));
  EXPECT_EQ(125'000'000, state.BandwidthLimit(kHighestRate));
  EXPECT_EQ(98'300'000, state.BandwidthLimit(98'333'333));
}

TEST(BandwidthLimits, TheProfilesLimitsWeighAsMuchAsEightySnaps) {
  const BandwidthState state = After(Between(45'000'000, 125'000'000), 80, 50'000'000.0);

  EXPECT_EQ(47'500'000, state.LearnedMin());
  EXPECT_EQ(87'500'000, state.LearnedMax());
  EXPECT_EQ(47'500'000, state.BandwidthLimit(40'000'000));
  EXPECT_EQ(60'000'000, state.BandwidthLimit(60'010'000));
  EXPECT_EQ(87'500'000, state.BandwidthLimit(120'000'000));
}

// (80 * 1,000,000 + 0) / 81 is 987,654.3...; cut off and quantised.
TEST(BandwidthLimits, ALearnedLimitIsCutOffBeforeItIsQuantised) {
  EXPECT_EQ(1'000'000, After(Between(1'000'000, 0), 1, 0.0).LearnedMin());
  EXPECT_EQ(0, After(Between(50'000, 0), 1, 49'999.9).LearnedMin());
  EXPECT_EQ(-100'000, Between(-50'000, 0).LearnedMin());
}

TEST(BandwidthLimits, ARangeCloserThanTwentyPercentGivesTheAverageItself) {
  const BandwidthState state = After(Between(45'000'000, 125'000'000), 720, 50'049'999.9);
  ASSERT_EQ(49'500'000, state.LearnedMin());
  ASSERT_EQ(57'500'000, state.LearnedMax());

  EXPECT_EQ(50'000'000, state.BandwidthLimit(1));
  EXPECT_EQ(50'000'000, state.BandwidthLimit(50'000'000));
  EXPECT_EQ(50'000'000, state.BandwidthLimit(kHighestRate));
}

TEST(BandwidthLimits, ARangeOfExactlyTwentyPercentStillClamps) {
  EXPECT_EQ(120'000'000, Between(100'000'000, 120'000'000).BandwidthLimit(130'000'000));
  EXPECT_EQ(0, Between(100'000'000, 119'900'000).BandwidthLimit(130'000'000));  // no snap yet: the average is 0
}

TEST(BandwidthLimits, CrossedLimitsGiveTheAverage) {
  EXPECT_EQ(30'000'000, After(Between(45'000'000, 10'000'000), 1, 30'000'000.0).BandwidthLimit(20'000'000));
}

TEST(BandwidthLimits, CountingASuccessMovesTheMeanAndEndsARowOfFailures) {
  BandwidthState state;
  state.failures = 3;

  state.CountSuccess(100'000'000);
  EXPECT_EQ(1, state.snap_count);
  EXPECT_EQ(100'000'000.0, state.average);
  EXPECT_EQ(0, state.failures);

  state.CountSuccess(40'000'000);
  state.CountSuccess(0);  // a rate that could not be read
  EXPECT_EQ(3, state.snap_count);
  EXPECT_DOUBLE_EQ(140'000'000.0 / 3.0, state.average);
}

TEST(BandwidthLimits, ForgettingKeepsTheLimits) {
  BandwidthState state = After(Between(1, 2), 5, 6.0);
  state.failures = 4;

  state.ForgetLearned();

  EXPECT_EQ(1, state.min);
  EXPECT_EQ(2, state.max);
  EXPECT_EQ(0, state.snap_count);
  EXPECT_EQ(0.0, state.average);
  EXPECT_EQ(0, state.failures);
}

TEST(BandwidthLimits, TheWidestRangeOverflowsNothing) {
  BandwidthState state = Between(-kHighestRate, kHighestRate);
  for (int snap = 0; snap < 100; ++snap) state.CountSuccess(snap % 2 == 0 ? kHighestRate : -kHighestRate);

  EXPECT_EQ(333'333'333'300'000, state.StartRate());
  EXPECT_LE(-kHighestRate, state.LearnedMin());
  EXPECT_GE(kHighestRate, state.LearnedMax());
  EXPECT_EQ(state.LearnedMax(), state.BandwidthLimit(kHighestRate + kHighestRate / 10));
  EXPECT_EQ(state.LearnedMin(), state.BandwidthLimit(-kHighestRate - kHighestRate / 10));
}

}  // namespace
