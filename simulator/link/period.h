// link/period.h
// A time that comes once or again and again.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "scene/times.h"

namespace Simulator {

inline constexpr Seconds kNever{std::numeric_limits<double>::infinity()};

// Begins at `from`, lasts for `length`, and begins anew after each `every`; zero: it comes once. The length may be
// kNever.
struct Period {
  Seconds from{0.0};
  Seconds length = kNever;
  Seconds every{0.0};

  bool Holds(Seconds moment) const {
    const double round = RoundOf(moment);
    for (const double one : {round - 1.0, round, round + 1.0}) {
      if (Comes(one) && Begin(one) <= moment && moment < Begin(one) + length) return true;
    }
    return false;
  }
  // The first moment after this one at which it begins or ends, or kNever.
  Seconds NextChange(Seconds moment) const {
    const double round = RoundOf(moment);
    Seconds next = kNever;
    for (const double one : {round - 1.0, round, round + 1.0, round + 2.0}) {
      if (!Comes(one)) continue;
      for (const Seconds change : {Begin(one), Begin(one) + length}) {
        if (change > moment) next = std::min(next, change);
      }
    }
    return next;
  }

 private:
  bool Comes(double round) const { return round == 0.0 || (round > 0.0 && every > Seconds::zero()); }
  Seconds Begin(double round) const { return from + round * every; }
  // Counted from 0. Rounding may put a moment next to a change into the round before or after its own.
  double RoundOf(Seconds moment) const {
    return every > Seconds::zero() ? std::max(0.0, std::floor((moment - from) / every)) : 0.0;
  }
};

}  // namespace Simulator
