// verdict.h
// Whether what a life left behind, and what its host saw, is as it may be.
#pragma once

#include <string>
#include <vector>

#include "call_lines.h"
#include "fault.h"
#include "observations.h"

using Findings = std::vector<std::string>;

// Openings closed once, frames revoked, start-ups shut down, no call on a handle that is none.
void CheckCalls(const Case& test, const std::vector<CallLine>& calls, Findings& findings);

// What was seen before the first fault is what the life without faults saw; what was seen from then on is that, or what
// the table of results allows for a call that failed so.
void CheckObservations(const Observations& without_faults, const Observations& seen, const Case& test,
                       const std::vector<CallLine>& calls, Findings& findings);
