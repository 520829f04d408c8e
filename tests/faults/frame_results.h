// frame_results.h
// What a host may see of a frame that comes otherwise than it should.
#pragma once

#include <string_view>

#include "fault.h"
#include "observations.h"
#include "verdict.h"

// Whether `operation=value` may follow from a fault that is none of a call.
bool MayFollowFromFrame(std::string_view text, const Fault& fault);

// Where a case is one fault of one frame whose snap is known, that snap has the one result that the fault leads to.
void CheckSnapOfFrame(const Observations& seen, const Case& test, Findings& findings);
