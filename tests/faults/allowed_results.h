// allowed_results.h
// What a failure of each call may cause: the results that a host may see in place of those without faults.
#pragma once

#include <vector>

#include "fault.h"
#include "observations.h"

bool IsAllowed(const Observation& seen, const std::vector<Fault>& faults);

// Whether the operation in which this call has failed ends as it has to then.
bool IsDemandMet(const Observation& seen, const CallKey& failed);
