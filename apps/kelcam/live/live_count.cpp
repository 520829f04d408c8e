// live_count.cpp
// What is counted of one camera of live.
#include "live/live_count.h"

#include "base/interrupt.h"

namespace Kelcam {

void LiveCount::Start(Clock::time_point now) {
  m_runs = true;
  m_start = now;
  m_second_start = now;
}

void LiveCount::Stop(Clock::time_point now) {
  if (!m_runs) return;
  EndAway(now);
  m_total = Total(now);
  m_runs = false;
}

void LiveCount::StartAway(Clock::time_point now) {
  ++m_losses;
  m_away_since = now;
}

void LiveCount::EndAway(Clock::time_point now) {
  if (m_away_since) m_away += now - *m_away_since;
  m_away_since.reset();
}

std::string LiveCount::LossesText() const {
  if (m_losses == 0) return {};
  return ", lost " + Counted(m_losses, "time") + ", away for " + Fixed(m_away.count(), 1) + " s";
}

void LiveCount::AddFrame() {
  ++m_total.frames;
  ++m_second.frames;
}

bool LiveCount::AddFailure(const Fault& fault) {
  ++m_total.failures[fault.code];
  ++m_second.failures[fault.code];
  m_first_of_code.try_emplace(fault.code, fault);
  return m_reported.emplace(fault.code, fault.reason.to_do).second;
}

LiveFigures LiveCount::Total(Clock::time_point now) const {
  LiveFigures total = m_total;
  if (!m_runs) return total;
  total.elapsed = now - m_start;
  total.missing_frame_ids = m_ids.Missing();
  return total;
}

LiveFigures LiveCount::TakeSecond(Clock::time_point now) {
  const std::optional<std::uint64_t> missing = m_ids.Missing();
  LiveFigures second = m_second;
  second.elapsed = now - m_second_start;
  if (missing) second.missing_frame_ids = *missing - m_total.missing_frame_ids.value_or(0);
  second.stream_rate_bytes_per_s = m_total.stream_rate_bytes_per_s;
  m_total.missing_frame_ids = missing;
  m_second = LiveFigures();
  m_second_start = now;
  return second;
}

void LiveCount::AppendErrorsTo(Json& document) const {
  Json errors = Json::array();
  for (const auto& [code, fault] : m_first_of_code) {
    Json error = ToJson(fault);
    error["count"] = m_total.failures.at(code);
    errors.push_back(error);
  }
  document["errors"] = errors;
  document["interrupted"] = Interrupted();
  if (m_loss) document["error"] = ToJson(*m_loss);
}

}  // namespace Kelcam
