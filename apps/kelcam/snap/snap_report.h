// snap_report.h
// What snap reports of its images.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/report.h"
#include "base/screen.h"
#include "bmutex.h"
#include "bsize.h"
#include "commands/camera_event.h"
#include "commands/command_line.h"

namespace Kelcam {

struct ImageResult {
  using Milliseconds = std::chrono::duration<double, std::milli>;

  int number = 0;
  std::string file;
  std::optional<Fault> fault;  // none: the file holds the picture
  BSize size;
  int tries = 1;
  std::chrono::system_clock::time_point arrived;
  Milliseconds time{0.0};     // from start-snap (continuous: from snap) until the image was there
  Milliseconds writing{0.0};  // from pixels to a whole file
};

// Where the lines about one camera appear, and with what they begin; empty: nothing.
struct PlaceOnScreen {
  Screen& screen;
  std::size_t line = 0;  // the one that changes
  std::string label = {};
};

// Prints each result of one camera when it is there: on standard error if the picture itself goes to standard output.
// [any thread]
class SnapReport {
 public:
  SnapReport(const Options& options, std::string kind_name, PlaceOnScreen place);

  // Whether a command that takes pictures shows which one it takes.
  static bool WantsProgress(const Options& options);
  // On a terminal: which image is being taken.
  void ShowProgress(int number);
  void Notice(const std::string& text);
  // The camera went away, or is back.
  void AddEvent(const CameraEvent& event);
  void Add(ImageResult result);
  // What ended the run as a whole.
  void AddRunFault(const Fault& fault);
  // After the last image: how many were taken, out of all. run_failed: the run as a whole.
  void PrintSummary(bool run_failed) const;

  int Taken() const;
  // Whether one of the images failed.
  bool HasFailed() const;
  // What the document has under "images".
  Json Images() const;
  // The same for "events".
  Json Events() const;

 private:
  std::string Line(const ImageResult& result) const;

  const Options& m_options;
  const std::string m_kind_name;
  const PlaceOnScreen m_place;
  mutable BMutex m_mutex;
  std::string m_last_to_do KEL_GUARDED_BY(m_mutex);
  std::vector<ImageResult> m_results KEL_GUARDED_BY(m_mutex);
  std::vector<CameraEvent> m_events KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam
