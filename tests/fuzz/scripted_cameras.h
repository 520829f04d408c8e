// scripted_cameras.h
// The calls about cameras and the system that the scripted library leaves to a program: every answer as an input wants
// it.
#pragma once

#include <vector>

#include "VimbaC.h"

struct ScriptedCameras {
  // What a list or a query copies out, as far as there is room.
  std::vector<VmbCameraInfo_t> records;
  // How many cameras a list claims.
  VmbUint32_t claimed = 0;
  VmbError_t list_code = VmbErrorSuccess;
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
