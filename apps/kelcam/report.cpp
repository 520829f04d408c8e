// report.cpp
// What the commands' reports have in common.
#include "report.h"

#include <algorithm>
#include <atomic>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "platform.h"

namespace Kelcam {
namespace {

std::atomic<bool> is_line_on_screen = false;

constexpr int kIndent = 2;
constexpr int kOneLine = -1;

// A camera's texts may hold bytes that are no UTF-8; the document stays valid.
std::string Dumped(const Json& document, int indent) {
  return document.dump(indent, ' ', false, Json::error_handler_t::replace);
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

std::string Counted(std::uint64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

ProgressLine::ProgressLine(bool wanted) : m_shown(wanted && StandardErrorIsTerminal()) {}

ProgressLine::~ProgressLine() { Wipe(); }

void ProgressLine::Show(const std::string& text) {
  if (!m_shown) return;
  Wipe();
  // A terminal may begin a new line after one that fills it. The texts are in ASCII.
  m_width = std::min(text.size(), TerminalWidth() - 1);
  std::cerr << text.substr(0, m_width) << std::flush;
  is_line_on_screen = m_width > 0;
}

void ProgressLine::Wipe() {
  if (m_width) std::cerr << "\r" << std::string(m_width, ' ') << "\r" << std::flush;
  m_width = 0;
  is_line_on_screen = false;
}

bool ProgressLine::IsOnScreen() { return is_line_on_screen; }

}  // namespace Kelcam
