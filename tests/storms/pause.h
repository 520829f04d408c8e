// pause.h
// A continuous run whose host pauses: what waits, what is lost, and what comes when the host goes on.
#pragma once

#include <cstdint>

#include "storms/findings.h"

// Prints the figures. Returns the number of snaps.
std::uint64_t PauseAContinuousRun(Findings& findings);
