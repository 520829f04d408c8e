// scripted_cameras.h
// The calls that the scripted library leaves to a program: openings, and the start of the system, as an input wants
// them.
#pragma once

#include <vector>

#include "VimbaC.h"

struct ScriptedCameras {
  VmbError_t query_code = VmbErrorSuccess;
  // The answers of openings, in turn; after them all succeed.
  std::vector<VmbError_t> open_codes;

  // What happened.
  std::size_t openings = 0;
  // Those that succeeded.
  int opened = 0;
  int started = 0;
};

ScriptedCameras& Cameras();
