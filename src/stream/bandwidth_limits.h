// bandwidth_limits.h
// The arithmetic of the stream rate: the range it may move in and how good snaps narrow that range. Bytes per second.
#pragma once

#include <cstdint>

// Upper end of what is computed with: far above any link, far below where 64-bit arithmetic would overflow.
inline constexpr std::int64_t kHighestRate = 1'000'000'000'000'000;
// A camera that can run faster than this never runs slower.
inline constexpr std::int64_t kRateFloor = 45'000'000;

// The rate as it is computed with: a camera's number may be anything.
std::int64_t BoundedRate(std::int64_t rate);

// The nearest multiple of 100,000, halves away from zero.
std::int64_t QuantisedRate(std::int64_t rate);

// `rate` moved into [min, max]; where the limits cross, the lower one wins.
std::int64_t ClampedRate(std::int64_t rate, std::int64_t min, std::int64_t max);

// What is known of one camera's rate.
struct BandwidthState {
  std::int64_t min = kRateFloor;
  std::int64_t max = 4'294'967'295;
  std::int64_t snap_count = 0;  // successful snaps since the last reset
  double average = 0.0;         // mean of the rates read after them
  std::int32_t failures = 0;    // failed snaps in a row

  // Two thirds of the way up from min to max, quantised, inside the limits.
  std::int64_t StartRate() const;

  // The limits drawn toward the average: the profile's limits weigh as much as 80 successful snaps.
  std::int64_t LearnedMin() const;
  std::int64_t LearnedMax() const;

  // The request moved into the learned limits; the average itself once they are closer than 20 %.
  std::int64_t BandwidthLimit(std::int64_t request) const;

  void CountSuccess(std::int64_t rate);
  void ForgetLearned();
};
