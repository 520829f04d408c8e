// message_form.cpp
// What a diagnostic message must look like, whoever reports it and whatever else is reported at the same time.
#include "support/message_form.h"

#include <cmath>
#include <cwchar>
#include <optional>
#include <sstream>
#include <vector>

namespace {

// "   1 :       0.0813 (  0.0000) : Start"
struct Stamped {
  long number = 0;
  double time = 0.0;
  double step = 0.0;
  std::wstring text;
};

// The numbers have four decimals each, so that a step differs by a rounding from what its times say.
constexpr double kRounding = 0.00011;

std::optional<Stamped> ParseLine(const std::wstring& line) {
  const wchar_t* at = line.c_str();
  const auto skip = [&](const wchar_t* text) {
    const std::size_t length = std::wcslen(text);
    if (std::wcsncmp(at, text, length) != 0) return false;
    at += length;
    return true;
  };
  const auto number = [&](auto parse) {
    wchar_t* end = nullptr;
    const auto value = parse(at, &end);
    const bool read = end != at;
    at = end;
    return read ? std::optional(value) : std::nullopt;
  };
  const auto to_long = [](const wchar_t* text, wchar_t** end) { return std::wcstol(text, end, 10); };
  const auto to_double = [](const wchar_t* text, wchar_t** end) { return std::wcstod(text, end); };
  if (!skip(L"  ")) return std::nullopt;
  const auto line_number = number(to_long);
  if (!line_number || !skip(L" : ")) return std::nullopt;
  const auto time = number(to_double);
  if (!time || !skip(L" (")) return std::nullopt;
  const auto step = number(to_double);
  if (!step || !skip(L") : ")) return std::nullopt;
  return Stamped{*line_number, *time, *step, at};
}

std::string Narrow(const std::wstring& text) { return {text.begin(), text.end()}; }

std::vector<std::wstring> SplitLines(const std::wstring& message) {
  std::vector<std::wstring> lines;
  std::wistringstream text(message);
  for (std::wstring line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

}  // namespace

std::string DefectOf(const std::wstring& message) {
  if (!message.ends_with(L'\n')) return "it does not end with a line break";
  const std::vector<std::wstring> lines = SplitLines(message);
  if (ParseLine(lines.front())) return "it has no title";
  if (lines.size() < 2) return "it has nothing but a title";
  Stamped before;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::optional<Stamped> line = ParseLine(lines[i]);
    if (!line) return "line " + std::to_string(i) + " has no number and times: " + Narrow(lines[i]);
    if (line->number != static_cast<long>(i)) return "line " + std::to_string(i) + " says " + Narrow(lines[i]);
    const double step = i == 1 ? 0.0 : line->time - before.time;
    if (std::abs(line->step - step) > kRounding) return "the step is wrong: " + Narrow(lines[i]);
    if (line->time < before.time) return "the time runs back: " + Narrow(lines[i]);
    const bool is_end = line->text == L"End";
    if (is_end != (i + 1 == lines.size())) return is_end ? "lines follow its end" : "it has no end";
    before = *line;
  }
  return "";
}

MessageTitle TitleOf(const std::wstring& message) {
  MessageTitle title{.camera = L"", .thread_id = 0, .label = message.substr(0, message.find(L'\n'))};
  static const std::wstring kBeforeId = L") : Thread ID = ";
  const std::size_t open = title.label.find(L'(');
  const std::size_t close = title.label.find(kBeforeId);
  if (title.label.rfind(L"Camera ", 0) != 0 || open == std::wstring::npos || close == std::wstring::npos) return title;
  title.camera = title.label.substr(open + 1, close - open - 1);
  const std::size_t id = close + kBeforeId.size();
  title.thread_id = std::wcstoul(title.label.c_str() + id, nullptr, 10);
  const std::size_t label = title.label.find(L" : ", id);
  title.label = label == std::wstring::npos ? L"" : title.label.substr(label + 3);
  return title;
}
