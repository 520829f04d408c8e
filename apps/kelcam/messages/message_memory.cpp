// message_memory.cpp
// The last of the driver's messages.
#include "messages/message_memory.h"

#include <algorithm>
#include <sstream>

#include "base/failure.h"

namespace Kelcam {
namespace {

constexpr std::size_t kNoticesKept = 5;
constexpr std::size_t kMessagesKept = 200;
// A long run's last message lists all of its frames.
constexpr std::size_t kLongestKeptBytes = 20'000;

}  // namespace

void MessageMemory::Add(const std::string& message) {
  const BMutexLock lock(m_mutex);
  m_messages.push_back({message.substr(0, kLongestKeptBytes), std::chrono::steady_clock::now()});
  if (m_messages.size() > kMessagesKept) m_messages.pop_front();
  ++m_count;
  m_arrived.NotifyAll();
  m_last_message = message;
  // The same notice comes for each of the driver's tries to open a camera; it is kept once.
  const bool one_line = message.find('\n') == std::string::npos;
  if (!one_line || (!m_notices.empty() && m_notices.back() == message)) return;
  m_notices.push_back(message);
  if (m_notices.size() > kNoticesKept) m_notices.pop_front();
}

std::uint64_t MessageMemory::Count() const {
  const BMutexLock lock(m_mutex);
  return m_count;
}

std::vector<DriverMessage> MessageMemory::MessagesSince(std::uint64_t count) const {
  const BMutexLock lock(m_mutex);
  return Since(count);
}

std::vector<DriverMessage> MessageMemory::Since(std::uint64_t count) const {
  const std::uint64_t wanted = std::min<std::uint64_t>(m_count - count, m_messages.size());
  return {m_messages.end() - static_cast<std::ptrdiff_t>(wanted), m_messages.end()};
}

std::vector<DriverMessage> MessageMemory::AwaitMessage(std::uint64_t count, const std::string& text,
                                                       std::chrono::milliseconds timeout) const {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  BMutexLock lock(m_mutex);
  while (true) {
    std::vector<DriverMessage> messages = Since(count);
    const bool has_come = std::any_of(messages.begin(), messages.end(),
                                      [&](const DriverMessage& message) { return Contains(message.text, text); });
    if (has_come || std::chrono::steady_clock::now() >= deadline) return messages;
    m_arrived.WaitUntil(lock, deadline);
  }
}

std::vector<std::string> MessageMemory::LastNotices() const {
  const BMutexLock lock(m_mutex);
  if (!m_notices.empty()) return {m_notices.begin(), m_notices.end()};
  std::vector<std::string> lines;
  std::istringstream message(m_last_message);
  for (std::string line; std::getline(message, line);) lines.push_back(line);
  return lines;
}

std::string MessageMemory::WithLastNotices(std::string sentence) const {
  const std::vector<std::string> notices = LastNotices();
  sentence += notices.empty() ? "; the driver gave no reason" : "; the driver's last messages were:";
  for (const std::string& notice : notices) sentence += "\n  " + notice;
  return sentence + "\n" + kMoreMessages;
}

}  // namespace Kelcam
