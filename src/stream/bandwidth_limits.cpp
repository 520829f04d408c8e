// bandwidth_limits.cpp
// The arithmetic of the stream rate: the range it may move in and how good snaps narrow that range.
#include "stream/bandwidth_limits.h"

#include <algorithm>

namespace {

constexpr std::int64_t kRateStep = 100'000;
constexpr std::int64_t kWeightOfLimits = 80;

std::int64_t DrawnToward(const BandwidthState& state, std::int64_t limit) {
  const auto snaps = static_cast<double>(state.snap_count);
  const double weighted = static_cast<double>(kWeightOfLimits * limit) + snaps * state.average;
  return QuantisedRate(static_cast<std::int64_t>(weighted / (snaps + static_cast<double>(kWeightOfLimits))));
}

}  // namespace

std::int64_t BoundedRate(std::int64_t rate) { return std::clamp<std::int64_t>(rate, -kHighestRate, kHighestRate); }

std::int64_t QuantisedRate(std::int64_t rate) {
  const std::int64_t magnitude = ((rate < 0 ? -rate : rate) + kRateStep / 2) / kRateStep * kRateStep;
  return rate < 0 ? -magnitude : magnitude;
}

std::int64_t ClampedRate(std::int64_t rate, std::int64_t min, std::int64_t max) {
  return rate < min ? min : std::max(min, std::min(rate, max));
}

std::int64_t BandwidthState::StartRate() const { return ClampedRate(QuantisedRate((min + 2 * max) / 3), min, max); }

std::int64_t BandwidthState::LearnedMin() const { return DrawnToward(*this, min); }

std::int64_t BandwidthState::LearnedMax() const { return DrawnToward(*this, max); }

std::int64_t BandwidthState::BandwidthLimit(std::int64_t request) const {
  const std::int64_t lo = LearnedMin();
  const std::int64_t hi = LearnedMax();
  const bool narrow = 5 * hi < 6 * lo;
  return QuantisedRate(narrow ? static_cast<std::int64_t>(average) : ClampedRate(request, lo, hi));
}

void BandwidthState::CountSuccess(std::int64_t rate) {
  const auto snaps = static_cast<double>(snap_count);
  failures = 0;
  average = (snaps * average + static_cast<double>(rate)) / (snaps + 1.0);
  ++snap_count;
}

void BandwidthState::ForgetLearned() {
  average = 0.0;
  snap_count = 0;
  failures = 0;
}
