// call_awaited.h
// What a call of the driver waits for, as far as the driver's messages show it.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "messages/driver_messages.h"

namespace Kelcam {

// What the program asks of the driver.
enum class Operation { kListing, kOpening, kControls, kStart, kFire, kSnap, kSingleSnap, kStop, kClosing };

struct AwaitedCall {
  Operation operation = Operation::kListing;
  std::chrono::milliseconds may_wait{0};  // if nothing is wrong: for an image, for instance
  std::chrono::steady_clock::time_point start;
};

// Since when the call does nothing that is known; may lie in the future, while it may wait. messages: those since its
// start.
std::chrono::steady_clock::time_point SilentSince(const AwaitedCall& call, const std::vector<DriverMessage>& messages);

// "TriggerSoftware", or where that is not known a wider description; and what else is known, or may be.
struct Awaited {
  std::string what;
  std::string remark;  // empty: none
};

Awaited WhatIsAwaited(const AwaitedCall& call, const std::vector<DriverMessage>& messages);

}  // namespace Kelcam
