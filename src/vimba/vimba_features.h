// vimba_features.h
// Features by name, typed: what the driver asks of a camera or of the Vimba system, without pointers in the way.
#pragma once

#include <cstdint>

#include "VimbaC.h"
#include "bstring.h"

// Every call returns the Vimba error code, 0 for success, and leaves its result argument as it was on failure. A float
// that is no number counts as one that could not be read (VmbErrorInvalidValue).
// [any thread]
namespace Vimba {

[[nodiscard]] VmbError_t GetInt(VmbHandle_t handle, const char* feature, std::int64_t& value);
[[nodiscard]] VmbError_t SetInt(VmbHandle_t handle, const char* feature, std::int64_t value);
[[nodiscard]] VmbError_t GetIntRange(VmbHandle_t handle, const char* feature, std::int64_t& min, std::int64_t& max);
[[nodiscard]] VmbError_t GetFloat(VmbHandle_t handle, const char* feature, double& value);
[[nodiscard]] VmbError_t SetFloat(VmbHandle_t handle, const char* feature, double value);
[[nodiscard]] VmbError_t GetFloatRange(VmbHandle_t handle, const char* feature, double& min, double& max);
[[nodiscard]] VmbError_t GetEnum(VmbHandle_t handle, const char* feature, BString& entry);
[[nodiscard]] VmbError_t SetEnum(VmbHandle_t handle, const char* feature, const char* entry);
[[nodiscard]] VmbError_t GetBool(VmbHandle_t handle, const char* feature, bool& value);
[[nodiscard]] VmbError_t RunCommand(VmbHandle_t handle, const char* feature);

// Reads a text as long as the feature declares, up to a mebibyte; VmbErrorResources beyond that.
[[nodiscard]] VmbError_t GetString(VmbHandle_t handle, const char* feature, BString& text);

// Polls a command until it reports done or the query fails, without a time limit; calls `pause` before each query.
template <class Pause>
void WaitUntilDone(VmbHandle_t handle, const char* command, Pause pause) {
  VmbBool_t done = 0;
  do {
    pause();
  } while (VmbFeatureCommandIsDone(handle, command, &done) == VmbErrorSuccess && !done);
}

}  // namespace Vimba
