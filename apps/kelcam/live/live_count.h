// live_count.h
// What is counted of one camera of live.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "base/failure.h"
#include "base/report.h"
#include "live/live_figures.h"
#include "messages/frame_ids.h"

namespace Kelcam {

// Not for several threads: whoever shares it has a lock.
class LiveCount {
 public:
  using Clock = std::chrono::steady_clock;

  // The ids must outlive the object.
  explicit LiveCount(const FrameIds& ids) : m_ids(ids) {}

  // Time is counted from the start to the stop; a stop without a start does nothing.
  void Start(Clock::time_point now);
  void Stop(Clock::time_point now);
  bool Runs() const { return m_runs; }

  void AddFrame();
  // Whether it is the first of its code and next step.
  bool AddFailure(const Fault& fault);
  void SetLoss(const Fault& fault) { m_loss = fault; }
  // The camera is lost, and may come back. It is away until it does, or time stops.
  void StartAway(Clock::time_point now);
  void EndAway(Clock::time_point now);
  bool IsAway() const { return m_away_since.has_value(); }
  LiveFigures::Seconds AwayFor(Clock::time_point now) const { return now - *m_away_since; }
  // How often that was, and for how long in all.
  std::uint64_t Losses() const { return m_losses; }
  LiveFigures::Seconds AwayInAll() const { return m_away; }
  // ", lost 2 times, away for 12.3 s"; nothing where there was no loss.
  std::string LossesText() const;
  void SetStreamRate(std::int64_t rate_bytes_per_s) { m_total.stream_rate_bytes_per_s = rate_bytes_per_s; }

  // Since the start; after the stop, of all of the run.
  LiveFigures Total(Clock::time_point now) const;
  // Since the call before, or the start.
  LiveFigures TakeSecond(Clock::time_point now);
  bool HasFailed() const { return m_total.Failures() > 0; }
  // What the total has in addition to its figures.
  void AppendErrorsTo(Json& document) const;

 private:
  const FrameIds& m_ids;
  bool m_runs = false;
  Clock::time_point m_start;
  LiveFigures m_total;
  LiveFigures m_second;  // the present one
  Clock::time_point m_second_start;
  std::map<int, Fault> m_first_of_code;
  std::set<std::pair<int, std::string>> m_reported;  // code and next step
  std::optional<Fault> m_loss;
  std::optional<Clock::time_point> m_away_since;
  std::uint64_t m_losses = 0;
  LiveFigures::Seconds m_away{0.0};
};

}  // namespace Kelcam
