// snap_report.cpp
// What snap reports of its images.
#include "snap/snap_report.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "picture/image_time.h"

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

}  // namespace

SnapReport::SnapReport(const Options& options, std::string kind_name, PlaceOnScreen place)
    : m_options(options), m_kind_name(std::move(kind_name)), m_place(std::move(place)) {}

bool SnapReport::WantsProgress(const Options& options) {
  return options.images > 1 && !options.verbose && !options.quiet;
}

void SnapReport::ShowProgress(int number) {
  m_place.screen.Show(m_place.line,
                      m_place.label + "image " + std::to_string(number) + " of " + std::to_string(m_options.images));
}

void SnapReport::Notice(const std::string& text) {
  m_place.screen.Print(std::cerr, "notice: " + m_place.label + text + "\n");
}

void SnapReport::AddEvent(const CameraEvent& event) {
  m_place.screen.Print(std::cerr, "notice: " + event.Line() + "\n");
  const BMutexLock lock(m_mutex);
  m_events.push_back(event);
}

void SnapReport::Add(ImageResult result) {
  const BMutexLock lock(m_mutex);
  if (result.fault) {
    const std::string image = m_options.images > 1 ? " (image " + std::to_string(result.number) + ")" : "";
    // A reason with the same next step as that of the failure before is not printed again.
    const Reason& reason = result.fault->reason;
    m_place.screen.Print(std::cerr, result.fault->Sentence(m_place.label) + image + "\n" +
                                        (reason.to_do == m_last_to_do ? "" : reason.Text()));
    m_last_to_do = reason.to_do;
  } else if (!m_options.json && !m_options.quiet) {
    m_place.screen.Print(IsStandardOutput(m_options) ? std::cerr : std::cout, Line(result));
  }
  m_results.push_back(std::move(result));
}

void SnapReport::AddRunFault(const Fault& fault) {
  m_place.screen.Print(std::cerr, fault.Sentence(m_place.label) + "\n" + fault.reason.Text());
}

std::string SnapReport::Line(const ImageResult& result) const {
  return result.file + ": " + std::to_string(result.size.width) + " x " + std::to_string(result.size.height) + ", " +
         m_kind_name + ", " + Fixed(result.time.count(), 0) + " ms, written in " + Fixed(result.writing.count(), 0) +
         " ms\n";
}

void SnapReport::PrintSummary(bool run_failed) const {
  const bool wanted = !m_options.quiet && (m_options.images > 1 || run_failed || HasFailed());
  m_place.screen.Clear();
  if (!wanted) return;
  std::cerr << std::to_string(Taken()) + " of " + Counted(static_cast<std::uint64_t>(m_options.images), "image") +
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

Json SnapReport::Events() const {
  const BMutexLock lock(m_mutex);
  Json events = Json::array();
  for (const CameraEvent& event : m_events) events.push_back(ToJson(event));
  return events;
}

}  // namespace Kelcam
