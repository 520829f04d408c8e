// frame_cases.h
// The cases of the frame sweep.
#pragma once

#include <cstddef>
#include <vector>

#include "fault.h"

// Everything that a frame's record can say, frames that come late, several times or not at all, and queueings that fail
// until the ring is empty.
std::vector<Case> FrameCases();
