// live_report.h
// What live prints: a line that changes on a terminal, a line a second elsewhere, and the total.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>

#include "bmutex.h"
#include "command_line.h"
#include "failure.h"
#include "frame_ids.h"
#include "live_figures.h"
#include "report.h"

namespace Kelcam {

// Prints on a thread of its own, so that a second without an image has its line, too.
class LiveReport {
 public:
  LiveReport(const Options& options, const FrameIds& ids);
  ~LiveReport();
  LiveReport(const LiveReport&) = delete;
  LiveReport& operator=(const LiveReport&) = delete;

  // Time is counted from the start to the stop; a stop without a start does nothing. [the command's thread]
  void Start();
  void Stop();
  std::chrono::duration<double> Elapsed() const;

  // [any thread]
  void AddFrame();
  // Prints the error, if it is the first of its code and next step.
  void AddFailure(const Fault& fault);
  // Prints that the camera is gone.
  void AddLoss(const Fault& fault);
  void SetStreamRate(std::int64_t rate_bytes_per_s);
  bool HasFailed() const;
  // Nobody reads the lines any more.
  bool HasLostReader() const { return m_has_lost_reader; }

  // After the stop.
  void PrintTotal(const std::string& camera);

 private:
  using Clock = std::chrono::steady_clock;

  void Run();
  void PrintSecond(Clock::time_point now) KEL_REQUIRES(m_mutex);
  void PrintError(const std::string& text) KEL_REQUIRES(m_mutex);
  LiveFigures TotalUntil(Clock::time_point now) const KEL_REQUIRES(m_mutex);
  Json ErrorsByCode() const KEL_REQUIRES(m_mutex);

  const bool m_json;
  const FrameIds& m_ids;
  Clock::time_point m_start;  // set before the thread begins
  std::atomic<bool> m_has_lost_reader = false;

  mutable BMutex m_mutex;
  BCondition m_stopped;
  bool m_runs KEL_GUARDED_BY(m_mutex) = false;
  ProgressLine m_progress KEL_GUARDED_BY(m_mutex);
  const bool m_has_seconds;
  LiveFigures m_total KEL_GUARDED_BY(m_mutex);
  LiveFigures m_second KEL_GUARDED_BY(m_mutex);  // the present one
  Clock::time_point m_second_start KEL_GUARDED_BY(m_mutex);
  std::map<int, Fault> m_first_of_code KEL_GUARDED_BY(m_mutex);
  std::set<std::pair<int, std::string>> m_printed KEL_GUARDED_BY(m_mutex);  // code and next step
  std::optional<Fault> m_loss KEL_GUARDED_BY(m_mutex);
  std::thread m_thread;
};

}  // namespace Kelcam
