// live_report.h
// What live prints: lines that change on a terminal, a line a second elsewhere, and the total; each of every camera.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <thread>

#include "base/failure.h"
#include "base/report.h"
#include "bmutex.h"
#include "commands/camera_event.h"
#include "commands/command_line.h"
#include "live/live_count.h"
#include "messages/frame_ids.h"

namespace Kelcam {

// Prints on a thread of its own, so that a second without an image has its line, too.
class LiveReport {
 public:
  explicit LiveReport(const Options& options);
  ~LiveReport();
  LiveReport(const LiveReport&) = delete;
  LiveReport& operator=(const LiveReport&) = delete;

  // A camera's place in the report.
  using Camera = std::size_t;
  // name: its identifier. label: with what its lines begin; empty: nothing. The ids must outlive the report.
  // [any thread]
  Camera AddCamera(const std::string& name, const std::string& label, const FrameIds& ids);

  // Time is counted from a camera's start to its stop, and printed from the first start on; a stop without a start does
  // nothing. [any thread]
  void Start(Camera camera);
  void Stop(Camera camera);
  std::chrono::duration<double> Elapsed() const;

  // [any thread]
  void AddFrame(Camera camera);
  // Prints the error, if it is the first of its code and next step.
  void AddFailure(Camera camera, const Fault& fault);
  // Prints that the camera is gone, for good.
  void AddLoss(Camera camera, const Fault& fault);
  // Prints that the camera went away, or is back. Between the two it is away.
  void AddEvent(Camera camera, const CameraEvent& event);
  void AddNotice(Camera camera, const std::string& text);
  void SetStreamRate(Camera camera, std::int64_t rate_bytes_per_s);
  bool HasFailed(Camera camera) const;
  // Nobody reads the lines any more.
  bool HasLostReader() const { return m_has_lost_reader; }

  // The last time that anything but totals is printed. [one thread]
  void End();
  // After that.
  void PrintTotal(Camera camera);

 private:
  using Clock = LiveCount::Clock;

  struct Row {
    std::string name;
    std::string label;
    LiveCount count;
  };

  void Run();
  void PrintSeconds(Clock::time_point now) KEL_REQUIRES(m_mutex);
  void PrintSecond(Row& row, Clock::time_point now) KEL_REQUIRES(m_mutex);
  void ShowProgress(Clock::time_point now) KEL_REQUIRES(m_mutex);
  void PrintError(const std::string& text) KEL_REQUIRES(m_mutex);

  const bool m_json;
  const bool m_has_seconds;
  std::atomic<bool> m_has_lost_reader = false;

  mutable BMutex m_mutex;
  BCondition m_ended;
  std::optional<Clock::time_point> m_start KEL_GUARDED_BY(m_mutex);
  bool m_ends KEL_GUARDED_BY(m_mutex) = false;
  ProgressLines m_progress KEL_GUARDED_BY(m_mutex);
  std::deque<Row> m_rows KEL_GUARDED_BY(m_mutex);
  std::thread m_thread KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam
