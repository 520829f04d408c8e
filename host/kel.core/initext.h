// initext.h
// The text of an ini file, line by line: what its lines hold, and how one of them is changed.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// At a file's start it says that the text is UTF-8, and belongs to no line.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Blanks are spaces and tabs.
std::string WithoutBlanksAround(const std::string& text);

// The empty section name is the root. Names are compared without regard to case. A value in double quotes is what is
// between them; a value that would otherwise not be read back as it is, is written in quotes.
class IniText {
 public:
  // What has more lines is no profile, and would cost its host the time and the memory to read them.
  static constexpr std::size_t kMostLines = 100000;

  struct Malformed {
    std::size_t line;  // from 1
    std::string reason;
  };
  struct Line {
    enum Kind { kBlank, kComment, kSection, kKey };
    Kind kind = kBlank;
    std::string name;   // of the section or the key
    std::string value;  // of the key, without quotes
    std::size_t begin = 0;
    std::size_t value_begin = 0;
    std::size_t value_end = 0;
    std::size_t end = 0;   // of what the line says
    std::size_t next = 0;  // behind its line end
  };

  // Throws Malformed.
  explicit IniText(std::string bytes);

  const std::string& Bytes() const { return m_bytes; }
  // The line of the key, or null; good until the next change.
  const Line* Find(const std::string& section, const std::string& key) const;
  // The line's number, from 1.
  std::size_t NumberOf(const Line& line) const { return static_cast<std::size_t>(&line - m_lines.data()) + 1; }
  // The value of the line as the file has it, with its quotes.
  std::string_view ValueAsWritten(const Line& line) const;
  // Both names and the value must be ones that a line can hold. Throws Malformed, with the text as it was, when it
  // would become too large.
  void Set(const std::string& section, const std::string& key, const std::string& value);

 private:
  // The number of a section, equal for equal names; the root's is kRoot.
  using SectionNumber = std::size_t;
  static constexpr SectionNumber kRoot = 0;

  void SplitLines();
  void ReadLine(Line& line) const;
  void IndexKeys();
  std::size_t EndOfSection(const std::string& section) const;
  std::string WithKey(const std::string& section, const std::string& entry) const;
  std::string WithLines(std::size_t line_index, const std::vector<std::string>& lines) const;
  std::string LineEndNear(std::size_t line_index) const;

  std::string m_bytes;
  std::vector<Line> m_lines;
  std::map<std::string, SectionNumber> m_sections;                             // by folded name
  std::map<std::pair<SectionNumber, std::string>, std::size_t> m_line_of_key;  // by section and folded name
};
