// bandwidth_limits_properties_test.cpp
// The arithmetic of the stream rate on random ranges, averages and counts, against the same rule in integers.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "stream/bandwidth_limits.h"
#include "support/random_cases.h"
#include "unit/stream/rate_book.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Ge;
using testing::Le;

constexpr int kCases = 20'000;
constexpr std::int64_t kStep = 100'000;
constexpr std::int64_t kHalfStep = kStep / 2;
// Ten times the fastest link there is. The doubles of the rule are exact for integers of this size.
constexpr std::int64_t kFastest = 12'500'000'000;

struct RateProperties : RandomCases {
  // Numbers of every size, and often on or next to an edge of rounding.
  std::int64_t AnyRate() {
    std::int64_t bound = kFastest;
    for (int halvings = random.Below(34); halvings > 0; --halvings) bound /= 2;
    const std::int64_t rate = random.BetweenWide(-bound, bound);
    if (!random.OneIn(3)) return rate;
    return rate / kStep * kStep + kHalfStep * random.Below(3) + random.Between(-1, 1);
  }
  // As cameras and profiles have them: only the key of the upper limit can be negative. Some cross.
  void DrawLimits(BandwidthState& state) {
    state.min = std::abs(AnyRate());
    state.max = random.OneIn(8) ? AnyRate() : std::abs(AnyRate());
    if (state.max >= 0 && state.min > state.max && !random.OneIn(4)) std::swap(state.min, state.max);
  }
  // The same history, in doubles and in integers. The mean of the rates is a whole number, so both hold it exactly.
  RateBook DrawHistory(BandwidthState& state) {
    constexpr int kMostSnaps = 5'000;
    DrawLimits(state);
    state.snap_count = random.OneIn(8) ? 0 : random.Between(1, random.OneIn(2) ? 100 : kMostSnaps);
    const std::int64_t average = state.snap_count == 0   ? 0
                                 : random.OneIn(8)       ? std::abs(AnyRate())
                                 : state.min < state.max ? random.BetweenWide(state.min, state.max)
                                                         : state.min;
    state.average = static_cast<double>(average);
    return {state.min, state.max, average * state.snap_count, state.snap_count, 0};
  }
};

struct Quantising : RateProperties {};

TEST_F(Quantising, GivesTheNearestMultipleAndOfTwoTheOuterOne) {
  for (int i = 0; i < kCases; ++i) {
    const std::int64_t rate = AnyRate();
    const std::int64_t quantised = QuantisedRate(rate);
    ASSERT_EQ(quantised % kStep, 0) << rate;
    ASSERT_LE(std::abs(quantised - rate), kHalfStep) << rate;
    if (std::abs(quantised - rate) == kHalfStep) {
      ASSERT_GT(std::abs(quantised), std::abs(rate)) << rate;
    }
  }
}

TEST_F(Quantising, IsOddAndKeepsOrderAndItsOwnResults) {
  for (int i = 0; i < kCases; ++i) {
    const std::int64_t one = AnyRate();
    const std::int64_t other = AnyRate();
    ASSERT_EQ(QuantisedRate(-one), -QuantisedRate(one)) << one;
    ASSERT_EQ(QuantisedRate(QuantisedRate(one)), QuantisedRate(one)) << one;
    ASSERT_LE(QuantisedRate(std::min(one, other)), QuantisedRate(std::max(one, other))) << one << " " << other;
  }
}

struct Clamping : RateProperties {};

TEST_F(Clamping, ChangesOnlyWhatIsOutside) {
  for (int i = 0; i < kCases; ++i) {
    BandwidthState state;
    DrawLimits(state);
    const std::int64_t rate = AnyRate();
    const std::int64_t clamped = ClampedRate(rate, state.min, state.max);
    ASSERT_EQ(clamped, MovedInto(rate, state.min, state.max)) << rate << " " << state.min << " " << state.max;
    if (state.min <= state.max) {
      ASSERT_THAT(clamped, AllOf(Ge(state.min), Le(state.max))) << rate;
    }
    if (state.min > state.max) {
      ASSERT_EQ(clamped, state.min) << rate;
    }
    if (rate >= state.min && rate <= state.max) {
      ASSERT_EQ(clamped, rate);
    }
  }
}

struct Limits : RateProperties {};

TEST_F(Limits, TheStartIsTwoThirdsUp) {
  for (int i = 0; i < kCases; ++i) {
    BandwidthState state;
    DrawLimits(state);
    const std::int64_t two_thirds = (state.min + state.max + state.max) / 3;
    ASSERT_EQ(state.StartRate(), MovedInto(NearestStep(two_thirds), state.min, state.max))
        << state.min << " " << state.max;
  }
}

TEST_F(Limits, AreDrawnTowardTheAverageByTheWeightOfTheSnaps) {
  int in_doubt = 0;
  for (int i = 0; i < kCases; ++i) {
    BandwidthState state;
    const RateBook book = DrawHistory(state);
    const Rates lo = book.Learned(book.min);
    const Rates hi = book.Learned(book.max);
    ASSERT_THAT(lo, Contains(state.LearnedMin())) << book.min << " " << book.sum << "/" << book.snaps;
    ASSERT_THAT(hi, Contains(state.LearnedMax())) << book.max << " " << book.sum << "/" << book.snaps;
    in_doubt += lo.size() > 1 || hi.size() > 1 ? 1 : 0;
  }
  EXPECT_LT(in_doubt, kCases / 20) << "the comparison lets too much pass";
}

TEST_F(Limits, LieBetweenTheProfilesAndTheAverage) {
  for (int i = 0; i < kCases; ++i) {
    BandwidthState state;
    DrawHistory(state);
    const auto average = static_cast<std::int64_t>(state.average);
    for (const auto& [learned, limit] :
         {std::pair(state.LearnedMin(), state.min), std::pair(state.LearnedMax(), state.max)}) {
      if (state.snap_count == 0) {
        ASSERT_EQ(learned, QuantisedRate(limit));
      }
      ASSERT_GE(learned, std::min(limit, average) - kHalfStep - 1);
      ASSERT_LE(learned, std::max(limit, average) + kHalfStep + 1);
    }
  }
}

TEST_F(Limits, OfARequestFollowTheRule) {
  int narrow = 0;
  for (int i = 0; i < kCases; ++i) {
    BandwidthState state;
    const RateBook book = DrawHistory(state);
    const std::int64_t request = AnyRate();
    const std::int64_t limited = state.BandwidthLimit(request);
    ASSERT_THAT(book.Limited(request), Contains(limited))
        << request << " in " << book.min << " " << book.max << ", " << book.sum << "/" << book.snaps;
    ASSERT_EQ(limited % kStep, 0);
    narrow += 5 * state.LearnedMax() < 6 * state.LearnedMin() ? 1 : 0;
  }
  EXPECT_GT(narrow, kCases / 100) << "hardly a range was narrow";
}

TEST_F(Limits, AHigherRequestNeverGivesALowerRate) {
  for (int i = 0; i < kCases; ++i) {
    BandwidthState state;
    DrawHistory(state);
    const std::int64_t one = AnyRate();
    const std::int64_t other = AnyRate();
    ASSERT_LE(state.BandwidthLimit(std::min(one, other)), state.BandwidthLimit(std::max(one, other)));
  }
}

struct Narrowing : RateProperties {
  BandwidthState Camera() {
    BandwidthState state;
    state.min = random.BetweenWide(1, kFastest / 2);
    state.max = random.BetweenWide(state.min, kFastest);
    return state;
  }
};

TEST_F(Narrowing, ASteadyRateShrinksTheRangeAsEightyToEightyPlusItsSnaps) {
  constexpr int kCameras = 100;
  constexpr std::int64_t kSnaps = 400;
  for (int i = 0; i < kCameras; ++i) {
    BandwidthState state = Camera();
    const std::int64_t rate = random.BetweenWide(state.min, state.max);
    for (std::int64_t snaps = 1; snaps <= kSnaps; ++snaps) {
      state.CountSuccess(rate);
      const std::int64_t width = state.LearnedMax() - state.LearnedMin();
      // Each end is cut off and quantised.
      ASSERT_NEAR(static_cast<double>(width), static_cast<double>(80 * (state.max - state.min) / (snaps + 80)),
                  static_cast<double>(kStep + 2));
    }
  }
}

TEST_F(Narrowing, EndsAtTheAverageAndFromThereOnNothingMovesTheRate) {
  constexpr int kCameras = 100;
  for (int i = 0; i < kCameras; ++i) {
    BandwidthState state = Camera();
    const std::int64_t rate = random.BetweenWide(state.min, state.max);
    // 80 (max - min) / (snaps + 80) is a tenth of the rate by then.
    const std::int64_t snaps = 800 * (state.max - state.min) / rate + 1;
    for (std::int64_t snap = 0; snap < std::min<std::int64_t>(snaps, kCases); ++snap) state.CountSuccess(rate);
    if (snaps > kCases || rate < 10 * kStep) continue;
    ASSERT_NEAR(static_cast<double>(state.BandwidthLimit(state.min)), static_cast<double>(rate), kHalfStep + 1.0);
    ASSERT_EQ(state.BandwidthLimit(state.max), state.BandwidthLimit(state.min));
  }
}

struct Learning : RateProperties {};

TEST_F(Learning, TheMeanIsThatOfAllRates) {
  constexpr int kHistories = 200;
  for (int i = 0; i < kHistories; ++i) {
    BandwidthState state;
    std::int64_t sum = 0;
    const int snaps = random.Between(1, 1'000);
    for (int snap = 0; snap < snaps; ++snap) {
      const std::int64_t rate = random.BetweenWide(0, kFastest);
      sum += rate;
      state.CountSuccess(rate);
    }
    ASSERT_EQ(state.snap_count, snaps);
    ASSERT_NEAR(state.average, static_cast<double>(sum) / snaps, 1e-3);
  }
}

TEST_F(Learning, ForgettingGivesTheProfilesLimitsBack) {
  for (int i = 0; i < kCases; ++i) {
    BandwidthState state;
    const RateBook before = DrawHistory(state);
    state.failures = random.Below(5);
    state.ForgetLearned();
    ASSERT_EQ(state.min, before.min);
    ASSERT_EQ(state.max, before.max);
    ASSERT_EQ(state.LearnedMin(), NearestStep(before.min));
    ASSERT_EQ(state.LearnedMax(), NearestStep(before.max));
    ASSERT_EQ(state.failures, 0);
  }
}

}  // namespace
