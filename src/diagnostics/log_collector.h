// log_collector.h
// Builds the diagnostic message of one operation and hands it to the host when the operation ends.
#pragma once

#include <cstdint>
#include <ios>
#include <sstream>
#include <string>

#include "bstopwatch.h"
#include "wstring.h"

// A message is a title line, then lines that each begin with their number, the time in milliseconds and the step since
// the line before, and last a line "End". It lives on the stack of the operation that reports, and so is shown on
// success, on failure and when an exception unwinds alike. Not shared between threads.
class BLogCollector {
 public:
  // Times count from here.
  explicit BLogCollector(const WString& title);
  // Times count on the given watch, whose state is copied; a line "Start" follows the title.
  BLogCollector(const WString& title, const BStopWatch& stop_watch);
  ~BLogCollector();
  BLogCollector(const BLogCollector&) = delete;
  BLogCollector& operator=(const BLogCollector&) = delete;

  // What is inserted at the start of a line is preceded by number and times. A line ends with an inserted L'\n'.
  BLogCollector& operator<<(std::int32_t value);
  BLogCollector& operator<<(std::int64_t value);
  BLogCollector& operator<<(std::uint64_t value);
  BLogCollector& operator<<(double value);
  BLogCollector& operator<<(bool value);
  BLogCollector& operator<<(wchar_t character);
  BLogCollector& operator<<(const wchar_t* text);
  BLogCollector& operator<<(std::wstring text);
  BLogCollector& operator<<(const char* text);
  BLogCollector& operator<<(const void* pointer);
  BLogCollector& operator<<(std::ios_base& (*manipulator)(std::ios_base&));

 private:
  void WriteTitle(const WString& title);
  void StampNewLine();

  BStopWatch m_stop_watch;
  std::wstring m_caption;
  std::wstringstream m_text;
  double m_last_time = 0.0;
  std::int64_t m_line_counter = 0;
};
