// api/out_parameter.h
// The pointers through which a call reports.
#pragma once

#include <cstddef>
#include <span>
#include <variant>

#include "VimbaC.h"
#include "control/answer.h"

namespace Simulator {

// The last two are what a caller gives room for: a text, camera records.
using OutParameter = std::variant<VmbInt64_t*, VmbUint32_t*, double*, VmbBool_t*, const char**, VmbHandle_t*,
                                  VmbVersionInfo_t*, VmbCameraInfo_t*, std::span<char>, std::span<VmbCameraInfo_t>>;

std::span<std::byte> BytesOf(const OutParameter& parameter);

// Writes the value where the parameter can hold it, and nothing where it cannot. A number is cut to the parameter's
// size; null and texts go to texts, of which all in a camera record become the one; a text fills the whole of a buffer,
// again and again and without a terminating zero.
void Write(const OutParameter& parameter, const AnswerValue& value);

}  // namespace Simulator
