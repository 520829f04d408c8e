// every_call.h
// Every call that works on a handle or the system, with arguments that are right but for the handle.
#pragma once

#include <functional>
#include <vector>

#include "VimbaC.h"

struct Call {
  const char* name;
  std::function<VmbError_t(VmbHandle_t)> call;
};

// Of a feature, on a camera or the system.
extern const std::vector<Call> kFeatureCalls;
// On a camera.
extern const std::vector<Call> kCameraCalls;
// Without a handle, but for VmbVersionQuery, VmbStartup and VmbShutdown.
extern const std::vector<Call> kSystemCalls;

// Every call of the list answers so.
void ExpectOfAll(const std::vector<Call>& calls, VmbHandle_t handle, VmbError_t expected);
