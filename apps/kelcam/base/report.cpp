// report.cpp
// What the commands' reports have in common.
#include "base/report.h"

#include <algorithm>
#include <atomic>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "base/platform.h"

namespace Kelcam {
namespace {

std::atomic<bool> is_line_on_screen = false;

// Moves the cursor to the line above.
constexpr const char* kUp = "\x1b[A";

constexpr int kIndent = 2;
constexpr int kOneLine = -1;

// A camera's texts may hold bytes that are no UTF-8; the document stays valid.
std::string Dumped(const Json& document, int indent) {
  return document.dump(indent, ' ', false, Json::error_handler_t::replace);
}

std::vector<std::string> OneLine(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& text : texts) line.append(line.empty() ? "" : " | ").append(text);
  return {line};
}

}  // namespace

Json ToJson(const Fault& fault) {
  Json document = {{"code", fault.code}, {"text", fault.text}};
  if (!fault.reason.messages.empty()) document["messages"] = fault.reason.messages;
  if (!fault.reason.why.empty()) document["why"] = fault.reason.why;
  if (!fault.reason.to_do.empty()) document["toDo"] = fault.reason.to_do;
  return document;
}

void PrintDocument(const Json& document) { std::cout << Dumped(document, kIndent) << "\n"; }

void PrintLine(const Json& document) { std::cout << Dumped(document, kOneLine) << "\n" << std::flush; }

std::string Fixed(double value, int decimals) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(decimals) << value;
  return text.str();
}

std::string Printable(std::string text) {
  const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
  std::replace_if(text.begin(), text.end(), is_control, '?');
  return text;
}

std::string Counted(std::uint64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string CountsByCode(const std::map<int, std::uint64_t>& failures) {
  std::string text;
  for (const auto& [code, count] : failures) {
    text += text.empty() ? " (" : ", ";
    text += (code == Fault::kNoCode ? std::string("no code") : std::to_string(code)) + ": " + std::to_string(count);
  }
  return text.empty() ? text : text + ")";
}

ProgressLines::ProgressLines(bool wanted) : m_shown(wanted && StandardErrorIsTerminal()) {}

ProgressLines::~ProgressLines() { Wipe(); }

void ProgressLines::Show(const std::vector<std::string>& texts) {
  if (!m_shown) return;
  Wipe();
  // A terminal that cannot move the cursor up has room for one.
  const std::vector<std::string> lines = texts.size() > 1 && !TerminalMovesUp() ? OneLine(texts) : texts;
  std::string all;
  for (const std::string& line : lines) {
    // A terminal may begin a new line after one that fills it. Most texts are in ASCII.
    m_widths.push_back(std::min(line.size(), TerminalWidth() - 1));
    if (m_widths.size() > 1) all += '\n';
    all.append(line, 0, m_widths.back());
  }
  std::cerr << all << std::flush;
  is_line_on_screen = !all.empty();
}

void ProgressLines::Wipe() {
  const bool has_gone_up = m_widths.size() > 1 && !is_line_on_screen;
  std::string wiping;
  for (std::size_t i = has_gone_up ? 0 : m_widths.size(); i > 0; --i) {
    if (m_widths[i - 1]) wiping.append("\r").append(m_widths[i - 1], ' ').append("\r");
    if (i > 1) wiping += kUp;
  }
  if (!wiping.empty()) std::cerr << wiping << std::flush;
  m_widths.clear();
  is_line_on_screen = false;
}

bool ProgressLines::LeaveOnScreen() { return is_line_on_screen.exchange(false); }

}  // namespace Kelcam
