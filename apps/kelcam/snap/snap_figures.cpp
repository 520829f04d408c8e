// snap_figures.cpp
// What is counted of one camera's snaps.
#include "snap/snap_figures.h"

namespace Kelcam {

void SnapFigures::Start() {
  m_start = Clock::now();
  m_end = m_start;
}

void SnapFigures::AddSnap(const std::optional<Fault>& fault, std::int64_t rate_bytes_per_s) {
  m_end = Clock::now();
  ++m_snaps;
  if (fault) {
    ++m_failures[fault->code];
  } else {
    ++m_good_snaps;
  }
  if (rate_bytes_per_s <= 0) return;
  if (m_rates == 0) m_first_rate_bytes_per_s = rate_bytes_per_s;
  m_last_rate_bytes_per_s = rate_bytes_per_s;
  m_sum_of_rates_bytes_per_s += static_cast<double>(rate_bytes_per_s);
  ++m_rates;
}

void SnapFigures::AddRunFault(const Fault& fault) {
  if (fault.code != Fault::kNoCode) ++m_failures[fault.code];
}

std::optional<SnapFigures::StreamRates> SnapFigures::Rates() const {
  if (m_rates == 0) return std::nullopt;
  return StreamRates{m_first_rate_bytes_per_s, m_last_rate_bytes_per_s,
                     m_sum_of_rates_bytes_per_s / static_cast<double>(m_rates)};
}

double SnapFigures::FramesPerSecond() const {
  const std::chrono::duration<double> time = m_end - m_start;
  return time.count() > 0.0 ? static_cast<double>(m_good_snaps) / time.count() : 0.0;
}

}  // namespace Kelcam
