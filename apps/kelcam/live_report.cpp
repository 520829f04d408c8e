// live_report.cpp
// What live prints: a line that changes on a terminal, a line a second elsewhere, and the total.
#include "live_report.h"

#include <algorithm>
#include <iostream>

#include "image_time.h"
#include "interrupt.h"
#include "platform.h"

namespace Kelcam {
namespace {

using Seconds = LiveFigures::Seconds;

constexpr std::chrono::milliseconds kProgressInterval{250};
constexpr std::chrono::seconds kSecond{1};

constexpr const char* kEvent = "event";

}  // namespace

// On a terminal the line that changes shows everything.
LiveReport::LiveReport(const Options& options, const FrameIds& ids)
    : m_json(options.json),
      m_ids(ids),
      m_progress(!options.verbose && !options.quiet),
      m_has_seconds(!options.quiet && (options.json || !StandardOutputIsTerminal() || !StandardErrorIsTerminal())) {}

LiveReport::~LiveReport() { Stop(); }

void LiveReport::Start() {
  m_start = Clock::now();
  {
    const BMutexLock lock(m_mutex);
    m_runs = true;
    m_second_start = m_start;
  }
  m_thread = std::thread([this] { Run(); });
}

void LiveReport::Stop() {
  if (!m_thread.joinable()) return;
  {
    const BMutexLock lock(m_mutex);
    m_total = TotalUntil(Clock::now());
    m_runs = false;
    m_stopped.NotifyOne();
  }
  m_thread.join();
  const BMutexLock lock(m_mutex);
  m_progress.Wipe();
}

Seconds LiveReport::Elapsed() const { return Clock::now() - m_start; }

void LiveReport::Run() {
  BMutexLock lock(m_mutex);
  Clock::time_point next_progress = m_start + kProgressInterval;
  Clock::time_point next_second = m_start + kSecond;
  while (m_runs) {
    m_stopped.WaitUntil(lock, std::min(next_progress, next_second));
    const Clock::time_point now = Clock::now();
    if (!m_runs) return;
    if (now >= next_second) {
      if (m_has_seconds) PrintSecond(now);
      // A second that nobody had time for is part of the one that is printed.
      next_second += (now - next_second) / kSecond * kSecond + kSecond;
    }
    if (now >= next_progress) {
      m_progress.Show(TotalUntil(now).Line());
      next_progress = now + kProgressInterval;
    }
  }
}

LiveFigures LiveReport::TotalUntil(Clock::time_point now) const {
  LiveFigures total = m_total;
  total.elapsed = now - m_start;
  total.missing_frame_ids = m_ids.Missing();
  return total;
}

void LiveReport::PrintSecond(Clock::time_point now) {
  const std::optional<std::uint64_t> missing = m_ids.Missing();
  const Seconds elapsed = now - m_start;
  m_second.elapsed = now - m_second_start;
  if (missing) m_second.missing_frame_ids = *missing - m_total.missing_frame_ids.value_or(0);
  m_second.stream_rate_bytes_per_s = m_total.stream_rate_bytes_per_s;
  m_progress.Wipe();
  if (m_json) {
    Json document = {{kEvent, "second"},
                     {"time", LocalTimeOf(std::chrono::system_clock::now()).Extended()},
                     {"elapsedSeconds", elapsed.count()}};
    m_second.AppendTo(document);
    PrintLine(document);
  } else {
    const std::string frames = Counted(m_second.frames, "frame");
    std::cout << Fixed(elapsed.count(), 0) + " s: " + frames + ", " + m_second.Rates() + "\n" << std::flush;
  }
  if (!std::cout) m_has_lost_reader = true;
  m_total.missing_frame_ids = missing;
  m_second = LiveFigures();
  m_second_start = now;
}

void LiveReport::AddFrame() {
  const BMutexLock lock(m_mutex);
  ++m_total.frames;
  ++m_second.frames;
}

void LiveReport::AddFailure(const Fault& fault) {
  const BMutexLock lock(m_mutex);
  ++m_total.failures[fault.code];
  ++m_second.failures[fault.code];
  m_first_of_code.try_emplace(fault.code, fault);
  const bool is_new = m_printed.emplace(fault.code, fault.reason.to_do).second;
  if (is_new) PrintError(fault.Sentence() + "\n" + fault.reason.Text());
}

void LiveReport::AddLoss(const Fault& fault) {
  const BMutexLock lock(m_mutex);
  m_loss = fault;
  PrintError(fault.Sentence() + "\n");
}

void LiveReport::PrintError(const std::string& text) {
  m_progress.Wipe();
  std::cerr << text << std::flush;
}

void LiveReport::SetStreamRate(std::int64_t rate_bytes_per_s) {
  const BMutexLock lock(m_mutex);
  m_total.stream_rate_bytes_per_s = rate_bytes_per_s;
}

bool LiveReport::HasFailed() const {
  const BMutexLock lock(m_mutex);
  return m_total.Failures() > 0;
}

Json LiveReport::ErrorsByCode() const {
  Json errors = Json::array();
  for (const auto& [code, fault] : m_first_of_code) {
    Json error = ToJson(fault);
    error["count"] = m_total.failures.at(code);
    errors.push_back(error);
  }
  return errors;
}

void LiveReport::PrintTotal(const std::string& camera) {
  const BMutexLock lock(m_mutex);
  if (!m_json) {
    std::cout << m_total.Line() + "\n";
    return;
  }
  Json document = {{kEvent, "total"}, {"camera", camera}};
  m_total.AppendTo(document);
  document["errors"] = ErrorsByCode();
  document["interrupted"] = Interrupted();
  if (m_loss) document["error"] = ToJson(*m_loss);
  PrintLine(document);
}

}  // namespace Kelcam
