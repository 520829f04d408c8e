// rate_book.h
// The rule of the stream rate, computed a second time: exactly, in integers. Nothing here comes from src/.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <set>

// Rates that a rule allows. There is more than one only where an exact result lies on the edge between two and doubles
// may come to either.
using Rates = std::set<std::int64_t>;

// What dividing in doubles and cutting off may come to.
inline Rates CutOff(std::int64_t numerator, std::int64_t denominator) {
  constexpr double kDoubt = 1e-5;
  const std::int64_t whole = numerator / denominator;
  const double rest = std::abs(static_cast<double>(numerator % denominator) / static_cast<double>(denominator));
  const std::int64_t away = numerator < 0 ? -1 : 1;
  if (rest > 1.0 - kDoubt) return {whole, whole + away};
  if (rest < kDoubt && whole != 0) return {whole - away, whole};
  return {whole};
}

// Of the multiples of 100,000 the nearest one; of two, the one farther from zero.
inline std::int64_t NearestStep(std::int64_t rate) {
  constexpr std::int64_t kStep = 100'000;
  const std::int64_t inner = rate / kStep * kStep;
  const std::int64_t outer = rate < 0 ? inner - kStep : inner + kStep;
  return std::abs(rate - inner) < std::abs(outer - rate) ? inner : outer;
}

inline Rates NearestSteps(const Rates& rates) {
  Rates steps;
  for (const std::int64_t rate : rates) steps.insert(NearestStep(rate));
  return steps;
}

// The lower limit decides first.
inline std::int64_t MovedInto(std::int64_t rate, std::int64_t min, std::int64_t max) {
  if (rate < min) return min;
  return rate > max && max >= min ? max : rate > max ? min : rate;
}

// What is known of one camera's rate, as the sum of all rates of good snaps.
struct RateBook {
  std::int64_t min = 0;
  std::int64_t max = 0;
  std::int64_t sum = 0;
  std::int64_t snaps = 0;
  int failures = 0;

  void Good(std::int64_t rate) {
    sum += rate;
    ++snaps;
    failures = 0;
  }
  // True when this failure forgets all that was learned.
  bool Failed() {
    if (++failures < 4) return false;
    sum = snaps = failures = 0;
    return true;
  }
  // 80 snaps' worth of the limit and every good snap.
  Rates Learned(std::int64_t limit) const { return NearestSteps(CutOff(80 * limit + sum, snaps + 80)); }
  Rates Average() const { return snaps == 0 ? Rates{0} : CutOff(sum, snaps); }
  Rates Limited(std::int64_t request) const {
    Rates rates;
    for (const std::int64_t lo : Learned(min)) {
      for (const std::int64_t hi : Learned(max)) {
        if (5 * hi < 6 * lo) {
          rates.merge(NearestSteps(Average()));
        } else {
          rates.insert(NearestStep(request < lo ? lo : std::min(request, hi)));
        }
      }
    }
    return rates;
  }
  // The rates that may follow `rate` when it changes by so many percent.
  Rates After(std::int64_t rate, int percent) const {
    Rates rates;
    for (const std::int64_t change : CutOff(rate * percent, 100)) {
      for (const std::int64_t limited : Limited(rate + change)) rates.insert(MovedInto(limited, min, max));
    }
    return rates;
  }
};
