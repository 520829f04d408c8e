// log_collector.cpp
// Builds the diagnostic message of one operation and hands it to the host when the operation ends.
#include "diagnostics/log_collector.h"

#include <algorithm>
#include <charconv>
#include <iomanip>
#include <iterator>
#include <locale>
#include <string_view>
#include <utility>

#include "imagingdevice.h"

namespace {

constexpr int kDecimals = 4;

// What a line begins with. It is made here and written as one text: a stream takes six times as long for a number with
// decimals, and there are two of them in each line. It needs no memory.
class LineStart {
 public:
  LineStart(std::int64_t number, double time, double step) {
    Append(L"  ");
    AppendNumber(2, number);
    Append(L" : ");
    AppendNumber(12, time, std::chars_format::fixed, kDecimals);
    Append(L" (");
    AppendNumber(8, step, std::chars_format::fixed, kDecimals);
    Append(L") : ");
  }
  std::wstring_view Text() const { return {m_text, m_length}; }

 private:
  template <class Characters>
  void Append(const Characters& characters) {
    std::copy(characters.begin(), characters.end(), m_text + m_length);
    m_length += characters.size();
  }
  void Append(const wchar_t* text) { Append(std::wstring_view(text)); }
  // Right-aligned in so many places, as std::to_chars prints it.
  template <class Number, class... Format>
  void AppendNumber(std::size_t places, Number number, Format... format) {
    char digits[kLongestNumber];
    const std::string_view text(digits, std::to_chars(digits, std::end(digits), number, format...).ptr);
    for (std::size_t used = text.size(); used < places; ++used) m_text[m_length++] = L' ';
    Append(text);
  }

  // A whole number of 64 bits has at most 20 characters, and 64 bits of nanoseconds have 19 in milliseconds.
  static constexpr std::size_t kLongestNumber = 20;
  static constexpr std::size_t kOtherCharacters = 11;
  wchar_t m_text[3 * kLongestNumber + kOtherCharacters];
  std::size_t m_length = 0;
};

}  // namespace

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
  // Doubles that follow in the line are written like its times.
  m_text << LineStart(m_line_counter, time, step).Text() << std::fixed << std::setprecision(kDecimals);
  m_last_time = time;
}
