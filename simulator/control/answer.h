// control/answer.h
// What a fault has a call report in place of the truth.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace Simulator {

// The value stays as the call has written it.
struct AsItIs {};

using AnswerValue = std::variant<AsItIs, std::nullptr_t, std::int64_t, double, std::string>;

struct Answer {
  // The call writes nothing, and reports success.
  bool untouched = false;
  // For the first results by pointer, in the order of the arguments.
  std::vector<AnswerValue> values;
};

}  // namespace Simulator
