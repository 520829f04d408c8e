// initext.h
// The text of an ini file, line by line: what its lines hold, and how one of them is changed.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// The empty section name is the root. Names are compared without regard to case.
class IniText {
 public:
  struct Malformed {
    std::size_t line;  // from 1
    std::string reason;
  };
  struct Line {
    enum Kind { kBlank, kComment, kSection, kKey };
    Kind kind = kBlank;
    std::string name;   // of the section or the key
    std::string value;  // of the key
    std::size_t begin = 0;
    std::size_t value_begin = 0;
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
  // Both names and the value must be ones that a line can hold.
  void Set(const std::string& section, const std::string& key, const std::string& value);

 private:
  void SplitLines();
  void ReadLine(Line& line) const;
  void RefuseRepeatedKeys() const;
  std::size_t EndOfSection(const std::string& section) const;
  void InsertKey(const std::string& section, const std::string& entry);
  void InsertLines(std::size_t line_index, const std::vector<std::string>& lines);
  std::string LineEndNear(std::size_t line_index) const;

  std::string m_bytes;
  std::vector<Line> m_lines;
};
