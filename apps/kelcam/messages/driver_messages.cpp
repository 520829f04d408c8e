// driver_messages.cpp
// The driver's messages, taken apart into what they say.
#include "messages/driver_messages.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "messages/vimba_codes.h"

namespace Kelcam {
namespace {

constexpr std::string_view kSeparator = " : ";
constexpr std::string_view kThread = " : Thread ID = ";
// A title may begin with this, a letter and the camera's identifier: "Camera 7 (IDENTIFIER) : Thread ID = ".
constexpr std::string_view kCamera = "Camera ";
constexpr std::size_t kLongestLetter = 4;
constexpr std::string_view kFirstLine = "Start";
constexpr std::string_view kLastLine = "End";

// A numbered line is "NUMBER : TIME (STEP) : TEXT"; a title may be "CAMERA : Thread ID = NUMBER : TEXT".
std::string_view WithoutPrefix(std::string_view line) {
  const std::size_t thread = line.find(kThread);
  if (thread != std::string_view::npos) {
    const std::size_t text = line.find(kSeparator, thread + kThread.size());
    return text == std::string_view::npos ? line : line.substr(text + kSeparator.size());
  }
  const std::size_t number = line.find_first_not_of(' ');
  const std::size_t after_number = line.find_first_not_of("0123456789", number);
  if (number == after_number || after_number == std::string_view::npos) return line;
  if (line.substr(after_number, kSeparator.size()) != kSeparator) return line;
  const std::size_t text = line.find(") : ", after_number);
  return text == std::string_view::npos ? line : line.substr(text + 1 + kSeparator.size());
}

// The code with which the line ends, if its end is "= CODE", ": CODE", "-> CODE" or "returns CODE".
std::string_view MeaningOfCodeAtEnd(std::string_view line) {
  constexpr std::string_view kBeforeCodes[] = {"= ", ": ", "-> ", "returns "};
  const std::size_t sign = line.rfind('-');
  if (sign == std::string_view::npos) return {};
  int code = 0;
  const char* const end = line.data() + line.size();
  const auto [rest, error] = std::from_chars(line.data() + sign, end, code);
  const std::string_view before = line.substr(0, sign);
  const bool is_code = error == std::errc() && rest == end &&
                       std::any_of(std::begin(kBeforeCodes), std::end(kBeforeCodes),
                                   [&](std::string_view word) { return before.ends_with(word); });
  return is_code ? MeaningOfVimbaCode(code) : std::string_view();
}

}  // namespace

Lines LinesOf(const std::vector<DriverMessage>& messages) {
  Lines lines;
  for (const DriverMessage& message : messages) {
    std::istringstream text(message.text);
    for (std::string line; std::getline(text, line);) {
      const std::string_view said = WithoutPrefix(line);
      if (!said.empty() && said != kFirstLine && said != kLastLine) lines.emplace_back(said);
    }
  }
  return lines;
}

bool IsAbout(std::string_view message, std::string_view identifier) {
  const bool names_camera = message.starts_with(kCamera) && Contains(message, kThread);
  if (identifier.empty() || !names_camera) return true;
  std::string name = " (";
  name.append(identifier).append(")").append(kThread);
  return message.find(name) <= kCamera.size() + kLongestLetter;
}

bool Contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

bool AnyContains(const Lines& lines, std::string_view part) { return CountContaining(lines, part) > 0; }

std::size_t CountContaining(const Lines& lines, std::string_view part) {
  return static_cast<std::size_t>(
      std::count_if(lines.begin(), lines.end(), [&](const std::string& line) { return Contains(line, part); }));
}

Lines Condensed(const Lines& lines) {
  Lines condensed;
  for (auto first = lines.begin(); first != lines.end();) {
    const auto last = std::find_if(first, lines.end(), [&](const std::string& line) { return line != *first; });
    std::string line = *first;
    if (const std::string_view meaning = MeaningOfCodeAtEnd(line); !meaning.empty()) {
      line.append(" (").append(meaning).append(")");
    }
    if (last - first > 1) line.append(" (").append(std::to_string(last - first)).append(" times)");
    condensed.push_back(line);
    first = last;
  }
  return condensed;
}

}  // namespace Kelcam
