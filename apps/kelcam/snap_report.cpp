// snap_report.cpp
// What snap reports of its images.
#include "snap_report.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "image_time.h"

namespace Kelcam {
namespace {

Json ToJson(const ImageResult& result) {
  Json image = {{"number", result.number}};
  if (result.tries > 1) image["tries"] = result.tries;
  if (result.fault) {
    image["error"] = ToJson(*result.fault);
    return image;
  }
  image["file"] = result.file;
  image["width"] = result.size.width;
  image["height"] = result.size.height;
  image["time"] = LocalTimeOf(result.arrived).Extended();
  image["milliseconds"] = result.time.count();
  image["writingMilliseconds"] = result.writing.count();
  return image;
}

bool WantsProgress(const Options& options) { return options.images > 1 && !options.verbose && !options.quiet; }

}  // namespace

SnapReport::SnapReport(const Options& options, std::string kind_name)
    : m_options(options), m_kind_name(std::move(kind_name)), m_progress(WantsProgress(options)) {}

void SnapReport::ShowProgress(int number) {
  const BMutexLock lock(m_mutex);
  m_progress_text = "image " + std::to_string(number) + " of " + std::to_string(m_options.images);
  m_progress.Show(m_progress_text);
}

void SnapReport::Notice(const std::string& text) {
  const BMutexLock lock(m_mutex);
  Print("notice: " + text + "\n", true);
}

void SnapReport::Add(ImageResult result) {
  const BMutexLock lock(m_mutex);
  if (result.fault) {
    const std::string image = m_options.images > 1 ? " (image " + std::to_string(result.number) + ")" : "";
    // A reason with the same next step as that of the failure before is not printed again.
    const Reason& reason = result.fault->reason;
    Print(result.fault->Sentence() + image + "\n" + (reason.to_do == m_last_to_do ? "" : reason.Text()), true);
    m_last_to_do = reason.to_do;
  } else if (!m_options.json && !m_options.quiet) {
    Print(Line(result), IsStandardOutput(m_options));
  }
  m_results.push_back(std::move(result));
}

// In one piece: other threads write, too.
void SnapReport::Print(const std::string& line, bool is_error) {
  m_progress.Wipe();
  (is_error ? std::cerr : std::cout) << line << std::flush;
  if (!m_progress_text.empty()) m_progress.Show(m_progress_text);
}

std::string SnapReport::Line(const ImageResult& result) const {
  return result.file + ": " + std::to_string(result.size.width) + " x " + std::to_string(result.size.height) + ", " +
         m_kind_name + ", " + Fixed(result.time.count(), 0) + " ms, written in " + Fixed(result.writing.count(), 0) +
         " ms\n";
}

void SnapReport::PrintSummary(bool run_failed) {
  const bool wanted = !m_options.quiet && (m_options.images > 1 || run_failed || HasFailed());
  const int taken = Taken();
  const BMutexLock lock(m_mutex);
  m_progress_text.clear();
  m_progress.Wipe();
  if (!wanted) return;
  std::cerr << std::to_string(taken) + " of " + Counted(static_cast<std::uint64_t>(m_options.images), "image") +
                   " taken\n";
}

int SnapReport::Taken() const {
  const BMutexLock lock(m_mutex);
  return static_cast<int>(std::count_if(m_results.begin(), m_results.end(), [](const auto& r) { return !r.fault; }));
}

bool SnapReport::HasFailed() const {
  const BMutexLock lock(m_mutex);
  return std::any_of(m_results.begin(), m_results.end(), [](const auto& r) { return r.fault.has_value(); });
}

Json SnapReport::Images() const {
  const BMutexLock lock(m_mutex);
  Json images = Json::array();
  for (const ImageResult& result : m_results) images.push_back(ToJson(result));
  return images;
}

}  // namespace Kelcam
