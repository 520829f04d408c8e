// live_report.cpp
// What live prints: lines that change on a terminal, a line a second elsewhere, and the total; each of every camera.
#include "live/live_report.h"

#include <algorithm>
#include <iostream>
#include <utility>
#include <vector>

#include "base/platform.h"
#include "picture/image_time.h"

namespace Kelcam {
namespace {

using Seconds = LiveFigures::Seconds;

constexpr std::chrono::milliseconds kProgressInterval{250};
constexpr std::chrono::seconds kSecond{1};

constexpr const char* kEvent = "event";
constexpr const char* kAwaySeconds = "awaySeconds";

std::string AwayText(const LiveCount& count, LiveCount::Clock::time_point now) {
  return count.IsAway() ? ", away for " + Fixed(count.AwayFor(now).count(), 1) + " s" : std::string();
}

}  // namespace

// On a terminal the lines that change show everything.
LiveReport::LiveReport(const Options& options)
    : m_json(options.json),
      m_has_seconds(!options.quiet && (options.json || !StandardOutputIsTerminal() || !StandardErrorIsTerminal())),
      m_progress(!options.verbose && !options.quiet) {}

LiveReport::~LiveReport() { End(); }

LiveReport::Camera LiveReport::AddCamera(const std::string& name, const std::string& label, const FrameIds& ids) {
  const BMutexLock lock(m_mutex);
  m_rows.push_back({name, label, LiveCount(ids)});
  return m_rows.size() - 1;
}

void LiveReport::Start(Camera camera) {
  const Clock::time_point now = Clock::now();
  const BMutexLock lock(m_mutex);
  m_rows.at(camera).count.Start(now);
  if (m_start) return;
  m_start = now;
  m_thread = std::thread([this] { Run(); });
}

void LiveReport::Stop(Camera camera) {
  const BMutexLock lock(m_mutex);
  m_rows.at(camera).count.Stop(Clock::now());
}

Seconds LiveReport::Elapsed() const {
  const BMutexLock lock(m_mutex);
  return m_start ? Clock::now() - *m_start : Seconds::zero();
}

void LiveReport::End() {
  std::thread thread;
  {
    const BMutexLock lock(m_mutex);
    m_ends = true;
    m_ended.NotifyAll();
    thread = std::move(m_thread);
  }
  if (thread.joinable()) thread.join();
  const BMutexLock lock(m_mutex);
  m_progress.Wipe();
}

void LiveReport::Run() {
  BMutexLock lock(m_mutex);
  Clock::time_point next_progress = *m_start + kProgressInterval;
  Clock::time_point next_second = *m_start + kSecond;
  while (!m_ends) {
    m_ended.WaitUntil(lock, std::min(next_progress, next_second));
    const Clock::time_point now = Clock::now();
    if (m_ends) return;
    if (now >= next_second) {
      if (m_has_seconds) PrintSeconds(now);
      // A second that nobody had time for is part of the one that is printed.
      next_second += (now - next_second) / kSecond * kSecond + kSecond;
    }
    if (now >= next_progress) {
      ShowProgress(now);
      next_progress = now + kProgressInterval;
    }
  }
}

void LiveReport::ShowProgress(Clock::time_point now) {
  std::vector<std::string> lines;
  for (const Row& row : m_rows) lines.push_back(row.label + row.count.Total(now).Line() + AwayText(row.count, now));
  m_progress.Show(lines);
}

// A camera that has stopped has its total alone.
void LiveReport::PrintSeconds(Clock::time_point now) {
  m_progress.Wipe();
  for (Row& row : m_rows) {
    if (row.count.Runs()) PrintSecond(row, now);
  }
  if (!std::cout) m_has_lost_reader = true;
}

void LiveReport::PrintSecond(Row& row, Clock::time_point now) {
  const LiveFigures second = row.count.TakeSecond(now);
  const Seconds elapsed = now - *m_start;
  if (m_json) {
    Json document = {{kEvent, "second"}};
    if (!row.label.empty()) document["camera"] = row.name;
    document["time"] = LocalTimeOf(std::chrono::system_clock::now()).Extended();
    document["elapsedSeconds"] = elapsed.count();
    second.AppendTo(document);
    if (row.count.IsAway()) document[kAwaySeconds] = row.count.AwayFor(now).count();
    PrintLine(document);
    return;
  }
  const std::string frames = Counted(second.frames, "frame");
  std::cout << Fixed(elapsed.count(), 0) + " s: " + row.label + frames + ", " + second.Rates() +
                   AwayText(row.count, now) + "\n"
            << std::flush;
}

void LiveReport::AddFrame(Camera camera) {
  const BMutexLock lock(m_mutex);
  m_rows.at(camera).count.AddFrame();
}

void LiveReport::AddFailure(Camera camera, const Fault& fault) {
  const BMutexLock lock(m_mutex);
  Row& row = m_rows.at(camera);
  if (row.count.AddFailure(fault)) PrintError(fault.Sentence(row.label) + "\n" + fault.reason.Text());
}

void LiveReport::AddLoss(Camera camera, const Fault& fault) {
  const BMutexLock lock(m_mutex);
  Row& row = m_rows.at(camera);
  row.count.SetLoss(fault);
  PrintError(fault.Sentence(row.label) + "\n");
}

void LiveReport::AddEvent(Camera camera, const CameraEvent& event) {
  const BMutexLock lock(m_mutex);
  Row& row = m_rows.at(camera);
  event.loss ? row.count.StartAway(Clock::now()) : row.count.EndAway(Clock::now());
  PrintError("notice: " + event.Line() + "\n");
  if (m_json && m_has_seconds) PrintLine(ToJson(event));
}

void LiveReport::AddNotice(Camera camera, const std::string& text) {
  const BMutexLock lock(m_mutex);
  PrintError("notice: " + m_rows.at(camera).label + text + "\n");
}

void LiveReport::PrintError(const std::string& text) {
  m_progress.Wipe();
  std::cerr << text << std::flush;
}

void LiveReport::SetStreamRate(Camera camera, std::int64_t rate_bytes_per_s) {
  const BMutexLock lock(m_mutex);
  m_rows.at(camera).count.SetStreamRate(rate_bytes_per_s);
}

bool LiveReport::HasFailed(Camera camera) const {
  const BMutexLock lock(m_mutex);
  return m_rows.at(camera).count.HasFailed();
}

void LiveReport::PrintTotal(Camera camera) {
  const BMutexLock lock(m_mutex);
  const Row& row = m_rows.at(camera);
  const LiveFigures total = row.count.Total(Clock::now());
  if (!m_json) {
    std::cout << row.label + total.Line() + row.count.LossesText() + "\n";
    return;
  }
  Json document = {{kEvent, "total"}, {"camera", row.name}};
  total.AppendTo(document);
  document["losses"] = row.count.Losses();
  document[kAwaySeconds] = row.count.AwayInAll().count();
  row.count.AppendErrorsTo(document);
  PrintLine(document);
}

}  // namespace Kelcam
