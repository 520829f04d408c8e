// simulated_link.cpp
// Simulated cameras in use.
#include "simulated_link.h"

void WaitIdle() {
  constexpr std::chrono::milliseconds kTimeout = kDeadline;
  EXPECT_EQ(VimbaSimWaitIdle(static_cast<std::uint32_t>(kTimeout.count())), 0);
}

std::string RecordedCalls() {
  std::string text;
  // The record may grow between two looks.
  for (std::size_t needed = VimbaSimCalls(nullptr, 0); needed > text.size();
       needed = VimbaSimCalls(text.data(), text.size())) {
    text.resize(needed);
  }
  text.resize(text.find('\0'));
  return text;
}
