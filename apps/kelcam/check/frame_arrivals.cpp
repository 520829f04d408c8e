// frame_arrivals.cpp
// When frames arrived, as the driver's messages report it.
#include "check/frame_arrivals.h"

#include <cstdlib>
#include <string_view>
#include <utility>

namespace Kelcam {
namespace {

constexpr std::string_view kTitle = "OnFrameExt()";
constexpr std::string_view kContext = "Frame context id = ";
constexpr std::string_view kTimestamp = " Timestamp = ";

}  // namespace

std::optional<FrameArrival> ArrivalIn(const std::string& message, std::chrono::steady_clock::time_point time) {
  const std::string_view text = message;
  if (!text.substr(0, text.find('\n')).ends_with(kTitle) || !Contains(text, kContext)) return std::nullopt;
  FrameArrival arrival{.time = time, .timestamp = {}};
  arrival.is_complete = Contains(text, "FrameStatusComplete");
  arrival.is_refused = Contains(text, "Invalid timestamp ");
  if (const std::size_t at = text.find(kTimestamp); at != std::string_view::npos) {
    arrival.timestamp = std::strtoull(message.c_str() + at + kTimestamp.size(), nullptr, 10);
  }
  return arrival;
}

FrameArrivals::FrameArrivals(MessageLog& log, std::string identifier)
    : m_log(log), m_identifier(std::move(identifier)) {
  m_log.Add(*this);
}

FrameArrivals::~FrameArrivals() { m_log.Remove(*this); }

void FrameArrivals::OnMessage(const std::string& message) {
  if (!IsAbout(message, m_identifier)) return;
  const std::optional<FrameArrival> arrival = ArrivalIn(message, std::chrono::steady_clock::now());
  const BMutexLock lock(m_mutex);
  if (arrival && m_arrivals.size() < kMostKept) m_arrivals.push_back(*arrival);
}

std::vector<FrameArrival> FrameArrivals::All() const {
  const BMutexLock lock(m_mutex);
  return m_arrivals;
}

}  // namespace Kelcam
