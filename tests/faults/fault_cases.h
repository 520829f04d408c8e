// fault_cases.h
// The cases of the fault sweep.
#pragma once

#include <cstddef>
#include <vector>

#include "call_keys.h"
#include "fault.h"

// For each call of the lives: every error code, the effect with the error, and a library that refuses this call, or
// everything, from there on; every set of refused calls that take a camera back; pairs by a fixed seed.
std::vector<Case> FaultCases(const LivesCalls& lives, std::size_t pairs);
