// fault_cases.h
// The cases of the fault sweep.
#pragma once

#include <cstddef>
#include <vector>

#include "call_keys.h"
#include "fault.h"

// For each call of the lives: every error code, and the effect with the error; pairs by a fixed seed; and a library
// that refuses everything from each call on.
std::vector<Case> FaultCases(const LivesCalls& lives, std::size_t pairs);
