// driver_feed.cpp
// The driver's messages, for pages that come later.
#include "view/events/driver_feed.h"

#include <algorithm>

namespace Kelcam {
namespace {

constexpr std::size_t kMostEntries = 500;
// A long run's last message lists all of its frames.
constexpr std::size_t kLongestEntryBytes = 20'000;

}  // namespace

DriverFeed::DriverFeed(MessageLog& log) : m_log(log) { m_log.Add(*this); }

DriverFeed::~DriverFeed() { m_log.Remove(*this); }

void DriverFeed::OnMessage(const std::string& message) {
  const BMutexLock lock(m_mutex);
  m_entries.push_back({++m_count, std::chrono::system_clock::now(), message.substr(0, kLongestEntryBytes)});
  if (m_entries.size() > kMostEntries) m_entries.pop_front();
}

std::uint64_t DriverFeed::Count() const {
  const BMutexLock lock(m_mutex);
  return m_count;
}

std::vector<DriverFeed::Entry> DriverFeed::Since(std::uint64_t count) const {
  const BMutexLock lock(m_mutex);
  const std::uint64_t wanted = std::min<std::uint64_t>(m_count - count, m_entries.size());
  return {m_entries.end() - static_cast<std::ptrdiff_t>(wanted), m_entries.end()};
}

}  // namespace Kelcam
