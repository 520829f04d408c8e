// snap_report.h
// What snap reports of its images.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "bmutex.h"
#include "bsize.h"
#include "command_line.h"
#include "failure.h"
#include "report.h"

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

// Prints each result when it is there: on standard error if the picture itself goes to standard output. Its functions
// may be called from several threads.
class SnapReport {
 public:
  SnapReport(const Options& options, std::string kind_name);

  // On a terminal: which image is being taken.
  void ShowProgress(int number);
  void Notice(const std::string& text);
  void Add(ImageResult result);
  // After the last image: how many were taken, out of all. run_failed: the run as a whole.
  void PrintSummary(bool run_failed);

  int Taken() const;
  // Whether one of the images failed.
  bool HasFailed() const;
  // What the document has under "images".
  Json Images() const;

 private:
  void Print(const std::string& line, bool is_error) KEL_REQUIRES(m_mutex);
  std::string Line(const ImageResult& result) const;

  const Options& m_options;
  const std::string m_kind_name;
  mutable BMutex m_mutex;
  ProgressLine m_progress KEL_GUARDED_BY(m_mutex);
  std::string m_progress_text KEL_GUARDED_BY(m_mutex);
  std::string m_last_to_do KEL_GUARDED_BY(m_mutex);
  std::vector<ImageResult> m_results KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam
