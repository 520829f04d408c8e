// log_collector.cpp
// Builds the diagnostic message of one operation and hands it to the host when the operation ends.
#include "diagnostics/log_collector.h"

#include <iomanip>
#include <locale>
#include <string_view>
#include <utility>

#include "imagingdevice.h"

BLogCollector::BLogCollector(const WString& title) : m_stop_watch(true) { WriteTitle(title); }

BLogCollector::BLogCollector(const WString& title, const BStopWatch& stop_watch) : m_stop_watch(stop_watch) {
  WriteTitle(title);
  *this << L"Start" << L'\n';
}

BLogCollector::~BLogCollector() {
  // A message that no memory is left for is lost; the operation that it reports is not.
  try {
    *this << L"End" << L'\n';
    // Taken out of the stream, not copied: a long run's message has many megabytes.
    const std::wstring text = std::move(m_text).str();
    ImagingDevice::ShowInfo(text.c_str(), m_caption.c_str());
  } catch (...) {  // NOLINT(bugprone-empty-catch)
  }
}

BLogCollector& BLogCollector::operator<<(std::int32_t value) {
  StampNewLine();
  m_text << value;
  return *this;
}

BLogCollector& BLogCollector::operator<<(std::int64_t value) {
  StampNewLine();
  m_text << value;
  return *this;
}

BLogCollector& BLogCollector::operator<<(std::uint64_t value) {
  StampNewLine();
  m_text << value;
  return *this;
}

BLogCollector& BLogCollector::operator<<(double value) {
  StampNewLine();
  m_text << value;
  return *this;
}

BLogCollector& BLogCollector::operator<<(bool value) {
  StampNewLine();
  m_text << value;
  return *this;
}

BLogCollector& BLogCollector::operator<<(wchar_t character) {
  StampNewLine();
  m_text << character;
  return *this;
}

BLogCollector& BLogCollector::operator<<(const wchar_t* text) {
  StampNewLine();
  m_text << (text ? text : L"");
  return *this;
}

BLogCollector& BLogCollector::operator<<(std::wstring text) {  // NOLINT(performance-unnecessary-value-param)
  StampNewLine();
  m_text << text;
  return *this;
}

BLogCollector& BLogCollector::operator<<(const char* text) {
  StampNewLine();
  m_text << (text ? text : "");
  return *this;
}

BLogCollector& BLogCollector::operator<<(const void* pointer) {
  StampNewLine();
  m_text << pointer;
  return *this;
}

BLogCollector& BLogCollector::operator<<(std::ios_base& (*manipulator)(std::ios_base&)) {
  StampNewLine();
  m_text << manipulator;
  return *this;
}

// The host's locale may group digits or write a decimal comma; a message reads alike in all of them.
void BLogCollector::WriteTitle(const WString& title) {
  m_text.imbue(std::locale::classic());
  m_text << title.Str() << L'\n';
}

// Looks at the text where it lies: copying it for each insertion would make a message cost the square of its length.
void BLogCollector::StampNewLine() {
  const std::wstring_view written = m_text.rdbuf()->view();
  if (!written.empty() && written.back() != L'\n') return;
  ++m_line_counter;
  const double time = m_stop_watch.PeriodD();
  const double step = m_line_counter == 1 ? 0.0 : time - m_last_time;
  m_text << L"  " << std::setw(2) << m_line_counter << L" : " << std::setw(12) << std::fixed << std::setprecision(4)
         << time << L" (" << std::setw(8) << std::fixed << std::setprecision(4) << step << L") : ";
  m_last_time = time;
}
