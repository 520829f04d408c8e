// call_lines.cpp
// The simulator's record of calls, taken apart.
#include "call_lines.h"

#include <sstream>
#include <string_view>

#include "support/simulator_text.h"
#include "vimba_simulator.h"

namespace {

constexpr std::string_view kUnreturned = " = ...";

std::string Unquoted(const std::string& text) {
  return text.size() >= 2 && text.front() == '"' ? text.substr(1, text.size() - 2) : text;
}

// The first two arguments say which camera and which feature it is; the lists of cameras and the version have neither.
void ReadArguments(const std::string& arguments, CallLine& line) {
  if (arguments.empty() || line.Is("VmbCamerasList") || line.Is("VmbVersionQuery")) return;
  const std::size_t comma = arguments.find(", ");
  line.camera = Unquoted(arguments.substr(0, comma));
  if (comma == std::string::npos || line.call.rfind("VmbFeature", 0) != 0) return;
  const std::size_t begin = comma + 2;
  const std::size_t end = arguments.find(", ", begin);
  line.feature = Unquoted(arguments.substr(begin, end - begin));
  if (end != std::string::npos) line.value = arguments.substr(end + 2);
}

CallLine Parsed(const std::string& text) {
  CallLine line;
  const std::size_t open = text.find('(');
  const std::size_t close = text.rfind(')');
  line.call = text.substr(0, open);
  ReadArguments(text.substr(open + 1, close - open - 1), line);
  const std::string rest = text.substr(close + 1);
  line.returned = rest != kUnreturned;
  if (line.returned && !rest.empty()) line.result = std::stoi(rest.substr(rest.rfind(' ')));
  return line;
}

}  // namespace

std::vector<CallLine> RecordedCalls() {
  std::vector<CallLine> lines;
  std::istringstream text(SimulatorText(VimbaSimCalls));
  for (std::string line; std::getline(text, line);) lines.push_back(Parsed(line));
  return lines;
}
