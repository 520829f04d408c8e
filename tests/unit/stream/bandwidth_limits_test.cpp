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

  EXPECT_EQ(state.min, 45'000'000);
  EXPECT_EQ(state.max, 4'294'967'295);
  EXPECT_EQ(state.snap_count, 0);
  EXPECT_EQ(state.average, 0.0);
  EXPECT_EQ(state.failures, 0);
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
  for (const Row& row : rows) EXPECT_EQ(QuantisedRate(row.rate), row.quantised) << row.rate;
}

TEST(BandwidthLimits, ACamerasNumberIsBoundedBeforeItIsComputedWith) {
  EXPECT_EQ(kHighestRate, 1'000'000'000'000'000);
  EXPECT_EQ(BoundedRate(kHighest), kHighestRate);
  EXPECT_EQ(BoundedRate(kHighestRate + 1), kHighestRate);
  EXPECT_EQ(BoundedRate(kHighestRate), kHighestRate);
  EXPECT_EQ(BoundedRate(124'000'000), 124'000'000);
  EXPECT_EQ(BoundedRate(-1), -1);
  EXPECT_EQ(BoundedRate(kLowest), -kHighestRate);
}

TEST(BandwidthLimits, WhereTheLimitsCrossTheLowerOneWins) {
  struct Row {
    std::int64_t rate, min, max, clamped;
  };
  const Row rows[] = {{5, 10, 20, 10},  {10, 10, 20, 10},      {15, 10, 20, 15},       {20, 10, 20, 20},
                      {25, 10, 20, 20}, {5, 20, 10, 20},       {15, 20, 10, 20},       {20, 20, 10, 20},
                      {25, 20, 10, 20}, {kLowest, 20, 10, 20}, {kHighest, 20, 10, 20}, {7, 20, 20, 20}};
  for (const Row& row : rows) EXPECT_EQ(ClampedRate(row.rate, row.min, row.max), row.clamped) << row.rate;
}

TEST(BandwidthLimits, ACameraStartsTwoThirdsOfTheWayUp) {
  EXPECT_EQ(Between(45'000'000, 125'000'000).StartRate(), 98'300'000);
  EXPECT_EQ(Between(10'000'000, 40'000'000).StartRate(), 30'000'000);
  EXPECT_EQ(Between(0, 0).StartRate(), 0);
}

TEST(BandwidthLimits, TheStartRateIsInsideTheLimitsAlsoWhenItsMultipleIsNot) {
  // The multiple lies below.
  EXPECT_EQ(Between(98'333'333, 98'333'333).StartRate(), 98'333'333);
  EXPECT_EQ(Between(60'000, 60'000).StartRate(), 60'000);  // above
  // Crossed.
  EXPECT_EQ(Between(45'000'000, 10'000'000).StartRate(), 45'000'000);
}

TEST(BandwidthLimits, WithoutSnapsTheLearnedLimitsAreTheQuantisedOnes) {
  const BandwidthState state = Between(45'040'000, 124'960'000);

  EXPECT_EQ(state.LearnedMin(), 45'000'000);
  EXPECT_EQ(state.LearnedMax(), 125'000'000);
  EXPECT_EQ(state.BandwidthLimit(1), 45'000'000);
  EXPECT_EQ(state.BandwidthLimit(kHighestRate), 125'000'000);
  EXPECT_EQ(state.BandwidthLimit(98'333'333), 98'300'000);
}

TEST(BandwidthLimits, TheProfilesLimitsWeighAsMuchAsEightySnaps) {
  const BandwidthState state = After(Between(45'000'000, 125'000'000), 80, 50'000'000.0);

  EXPECT_EQ(state.LearnedMin(), 47'500'000);
  EXPECT_EQ(state.LearnedMax(), 87'500'000);
  EXPECT_EQ(state.BandwidthLimit(40'000'000), 47'500'000);
  EXPECT_EQ(state.BandwidthLimit(60'010'000), 60'000'000);
  EXPECT_EQ(state.BandwidthLimit(120'000'000), 87'500'000);
}

// (80 * 1,000,000 + 0) / 81 is 987,654.3...; cut off and quantised.
TEST(BandwidthLimits, ALearnedLimitIsCutOffBeforeItIsQuantised) {
  EXPECT_EQ(After(Between(1'000'000, 0), 1, 0.0).LearnedMin(), 1'000'000);
  EXPECT_EQ(After(Between(50'000, 0), 1, 49'999.9).LearnedMin(), 0);
  EXPECT_EQ(Between(-50'000, 0).LearnedMin(), -100'000);
}

TEST(BandwidthLimits, ARangeCloserThanTwentyPercentGivesTheAverageItself) {
  const BandwidthState state = After(Between(45'000'000, 125'000'000), 720, 50'049'999.9);
  ASSERT_EQ(state.LearnedMin(), 49'500'000);
  ASSERT_EQ(state.LearnedMax(), 57'500'000);

  EXPECT_EQ(state.BandwidthLimit(1), 50'000'000);
  EXPECT_EQ(state.BandwidthLimit(50'000'000), 50'000'000);
  EXPECT_EQ(state.BandwidthLimit(kHighestRate), 50'000'000);
}

TEST(BandwidthLimits, ARangeOfExactlyTwentyPercentStillClamps) {
  EXPECT_EQ(Between(100'000'000, 120'000'000).BandwidthLimit(130'000'000), 120'000'000);
  // No snap yet: the average is 0.
  EXPECT_EQ(Between(100'000'000, 119'900'000).BandwidthLimit(130'000'000), 0);
}

TEST(BandwidthLimits, CrossedLimitsGiveTheAverage) {
  EXPECT_EQ(After(Between(45'000'000, 10'000'000), 1, 30'000'000.0).BandwidthLimit(20'000'000), 30'000'000);
}

TEST(BandwidthLimits, CountingASuccessMovesTheMeanAndEndsARowOfFailures) {
  BandwidthState state;
  state.failures = 3;

  state.CountSuccess(100'000'000);
  EXPECT_EQ(state.snap_count, 1);
  EXPECT_EQ(state.average, 100'000'000.0);
  EXPECT_EQ(state.failures, 0);

  state.CountSuccess(40'000'000);
  // A rate that could not be read.
  state.CountSuccess(0);
  EXPECT_EQ(state.snap_count, 3);
  EXPECT_DOUBLE_EQ(state.average, 140'000'000.0 / 3.0);
}

TEST(BandwidthLimits, ForgettingKeepsTheLimits) {
  BandwidthState state = After(Between(1, 2), 5, 6.0);
  state.failures = 4;

  state.ForgetLearned();

  EXPECT_EQ(state.min, 1);
  EXPECT_EQ(state.max, 2);
  EXPECT_EQ(state.snap_count, 0);
  EXPECT_EQ(state.average, 0.0);
  EXPECT_EQ(state.failures, 0);
}

TEST(BandwidthLimits, TheWidestRangeOverflowsNothing) {
  BandwidthState state = Between(-kHighestRate, kHighestRate);
  for (int snap = 0; snap < 100; ++snap) state.CountSuccess(snap % 2 == 0 ? kHighestRate : -kHighestRate);

  EXPECT_EQ(state.StartRate(), 333'333'333'300'000);
  EXPECT_GE(state.LearnedMin(), -kHighestRate);
  EXPECT_LE(state.LearnedMax(), kHighestRate);
  EXPECT_EQ(state.BandwidthLimit(kHighestRate + kHighestRate / 10), state.LearnedMax());
  EXPECT_EQ(state.BandwidthLimit(-kHighestRate - kHighestRate / 10), state.LearnedMin());
}

}  // namespace
