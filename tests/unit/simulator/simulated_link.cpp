// simulated_link.cpp
// Simulated cameras in use.
#include "simulated_link.h"

#include "support/simulator_text.h"

void WaitIdle() {
  constexpr std::chrono::milliseconds kTimeout = kDeadline;
  EXPECT_EQ(VimbaSimWaitIdle(static_cast<std::uint32_t>(kTimeout.count())), 0);
}

std::string RecordedCalls() { return SimulatorText(VimbaSimCalls); }
