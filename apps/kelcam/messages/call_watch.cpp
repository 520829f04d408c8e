// call_watch.cpp
// Reports calls of the driver that do not return.
#include "messages/call_watch.h"

#include <array>
#include <iostream>
#include <string>

#include "base/interrupt.h"
#include "base/report.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

// When notices are printed: so long after the call has last done something. From then on once a minute.
constexpr std::array kNoticeAfter = {std::chrono::seconds(3), std::chrono::seconds(10), std::chrono::seconds(30)};
constexpr std::chrono::seconds kNoticeEvery{60};
constexpr std::chrono::milliseconds kLookEvery{250};

std::chrono::seconds TimeOfNotice(std::size_t number) {
  return number < kNoticeAfter.size() ? kNoticeAfter.at(number)
                                      : kNoticeEvery * static_cast<int>(number - kNoticeAfter.size() + 1);
}

// While no camera is open the first ends it, see interrupt.h.
const char* HowToEnd(Operation operation) {
  if (operation == Operation::kListing && SomethingToClose::Count() == 0) return "Ctrl-C";
  return Interrupted() ? "Ctrl-C again" : "Ctrl-C twice";
}

}  // namespace

CallWatch::CallWatch(const MessageMemory& messages) : m_messages(messages), m_thread([this] { Run(); }) {}

CallWatch::~CallWatch() {
  {
    const BMutexLock lock(m_mutex);
    m_ends = true;
    m_ended.NotifyOne();
  }
  m_thread.join();
}

void CallWatch::SetLabel(const std::string& label) {
  const BMutexLock lock(m_mutex);
  m_label = label;
}

CallWatch::Call::Call(CallWatch& watch, Operation operation, std::chrono::milliseconds may_wait) : m_watch(watch) {
  const std::uint64_t first_message = watch.m_messages.Count();
  const BMutexLock lock(watch.m_mutex);
  watch.m_call = CallUnderWay{{operation, may_wait, Clock::now()}, first_message, {}, 0};
}

CallWatch::Call::~Call() {
  const BMutexLock lock(m_watch.m_mutex);
  m_watch.m_call.reset();
}

void CallWatch::Run() {
  BMutexLock lock(m_mutex);
  while (!m_ends) {
    m_ended.WaitUntil(lock, Clock::now() + kLookEvery);
    if (m_call) Look(*m_call);
  }
}

// Under the lock, so that no notice is printed of a call that has returned.
void CallWatch::Look(CallUnderWay& under_way) const {
  const std::vector<DriverMessage> messages = m_messages.MessagesSince(under_way.first_message);
  const Clock::time_point silent_since = SilentSince(under_way.call, messages);
  if (silent_since != under_way.silent_since) under_way.notices = 0;
  under_way.silent_since = silent_since;
  const std::chrono::seconds next = TimeOfNotice(under_way.notices);
  if (Clock::now() - silent_since < next) return;
  ++under_way.notices;
  const Awaited awaited = WhatIsAwaited(under_way.call, messages);
  std::string line =
      "notice: " + m_label + "waiting for " + awaited.what + " for " + std::to_string(next.count()) + " s (";
  if (!awaited.remark.empty()) line += awaited.remark + "; ";
  line += HowToEnd(under_way.call.operation);
  std::cerr << (ProgressLines::LeaveOnScreen() ? "\n" : "") + line + " ends the program)\n" << std::flush;
}

}  // namespace Kelcam
