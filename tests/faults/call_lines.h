// call_lines.h
// The simulator's record of calls, taken apart.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

struct CallLine {
  std::string call;
  // As a fault's pattern names them; empty where the call has none.
  std::string camera;
  std::string feature;
  // The last argument of a call that writes a feature.
  std::string value;
  // None for a call that returns nothing.
  std::optional<int> result;
  bool returned = false;

  bool Is(const char* name) const { return call == name; }
  bool Succeeded() const { return result == 0; }
};

std::vector<CallLine> RecordedCalls();
