// snap_figures.h
// What is counted of one camera's snaps.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>

#include "base/failure.h"

namespace Kelcam {

// Every try counts, so an image may be several snaps. [one thread]
class SnapFigures {
 public:
  // Of the snaps at which the camera reported it. Bytes per second.
  struct StreamRates {
    std::int64_t first_bytes_per_s;
    std::int64_t last_bytes_per_s;
    double mean_bytes_per_s;
  };

  void Start();
  // rate_bytes_per_s: that of the stream during the snap; 0: the camera does not report it.
  void AddSnap(const std::optional<Fault>& fault, std::int64_t rate_bytes_per_s);
  // What ended the run as a whole. The loss of a camera is none of its own: the snaps before it have failed.
  void AddRunFault(const Fault& fault);

  std::uint64_t Snaps() const { return m_snaps; }
  const std::map<int, std::uint64_t>& FailuresByCode() const { return m_failures; }
  std::optional<StreamRates> Rates() const;
  // Good snaps in the time from the start to the end of the last snap.
  double FramesPerSecond() const;

 private:
  using Clock = std::chrono::steady_clock;

  Clock::time_point m_start, m_end;
  std::uint64_t m_snaps = 0;
  std::uint64_t m_good_snaps = 0;
  std::map<int, std::uint64_t> m_failures;
  std::int64_t m_first_rate_bytes_per_s = 0;
  std::int64_t m_last_rate_bytes_per_s = 0;
  double m_sum_of_rates_bytes_per_s = 0.0;
  std::uint64_t m_rates = 0;
};

}  // namespace Kelcam
