// scripted_cameras.h
// The calls to open cameras and to start the system that the scripted library leaves to a program: every answer as an input wants
// it.
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
