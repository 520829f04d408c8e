// initext.cpp
// The text of an ini file, line by line, so that lines keep their places and a faulty one is found out.
#include "initext.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "wholefile.h"
#include "wstring.h"

namespace {

constexpr char kQuote = '"';

// Alike for names that are the same.
std::string Folded(std::string name) {
  for (char& letter : name) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return name;
}

bool SameName(const std::string& a, const std::string& b) { return Folded(a) == Folded(b); }

bool IsUtf8(const std::string& text) {
  const bool ascii = std::all_of(text.begin(), text.end(), [](unsigned char byte) { return byte < 0x80U; });
  return ascii || ToBString(ToWString(BString(text))).Str() == text;
}

bool IsQuoted(std::string_view written) {
  return written.size() >= 2 && written.front() == kQuote && written.back() == kQuote;
}

// A value as a line holds it. A reader drops blanks around it, and a pair of quotes.
std::string Written(const std::string& value, bool in_quotes) {
  const auto is_blank = [](char letter) { return letter == ' ' || letter == '\t'; };
  const bool blank_at_an_end = !value.empty() && (is_blank(value.front()) || is_blank(value.back()));
  return in_quotes || blank_at_an_end || IsQuoted(value) ? kQuote + value + kQuote : value;
}

std::string WhyMalformed(const std::string& content, std::size_t first) {
  if (content[first] == '[') return "the section has no name or no closing ]";
  if (content[first] == '=') return "there is no key before the =";
  return "this is neither a comment, nor a section, nor key=value";
}

}  // namespace

std::string WithoutBlanksAround(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

IniText::IniText(std::string bytes) : m_bytes(std::move(bytes)) {
  SplitLines();
  for (Line& line : m_lines) ReadLine(line);
  IndexKeys();
}

void IniText::SplitLines() {
  std::size_t at = m_bytes.rfind(kByteOrderMark, 0) == 0 ? kByteOrderMark.size() : 0;
  while (at < m_bytes.size()) {
    if (m_lines.size() == kMostLines) {
      throw Malformed{kMostLines + 1, "a profile has no more than " + std::to_string(kMostLines) + " lines"};
    }
    Line line;
    line.begin = at;
    line.end = std::min(m_bytes.find_first_of("\r\n", at), m_bytes.size());
    line.next = std::min(line.end + 1, m_bytes.size());
    if (m_bytes.compare(line.end, 2, "\r\n") == 0) ++line.next;
    at = line.next;
    m_lines.push_back(std::move(line));
  }
}

void IniText::ReadLine(Line& line) const {
  const std::string content = m_bytes.substr(line.begin, line.end - line.begin);
  if (content.find('\0') != std::string::npos) throw Malformed{NumberOf(line), "there is a zero byte"};
  if (!IsUtf8(content)) throw Malformed{NumberOf(line), "this is not UTF-8 text"};
  const std::size_t first = content.find_first_not_of(" \t");
  if (first == std::string::npos) return;
  if (content[first] == ';' || content[first] == '#') {
    line.kind = Line::kComment;
    return;
  }
  line.kind = content[first] == '[' ? Line::kSection : Line::kKey;
  const std::size_t begin = line.kind == Line::kSection ? first + 1 : first;
  const std::size_t end = content.find(line.kind == Line::kSection ? ']' : '=', begin);
  if (end != std::string::npos) line.name = WithoutBlanksAround(content.substr(begin, end - begin));
  if (line.name.empty()) throw Malformed{NumberOf(line), WhyMalformed(content, first)};
  if (line.kind != Line::kKey) return;
  line.value = WithoutBlanksAround(content.substr(end + 1));
  line.value_begin = std::min(content.find_first_not_of(" \t", content.find('=') + 1), content.size()) + line.begin;
  line.value_end = line.value_begin + line.value.size();
  if (IsQuoted(line.value)) line.value = line.value.substr(1, line.value.size() - 2);
}

void IniText::IndexKeys() {
  SectionNumber section = kRoot;
  m_sections.emplace(std::string(), kRoot);
  for (std::size_t i = 0; i < m_lines.size(); ++i) {
    const Line& line = m_lines[i];
    if (line.kind == Line::kSection) section = m_sections.emplace(Folded(line.name), m_sections.size()).first->second;
    if (line.kind != Line::kKey) continue;
    const auto [first, is_new] = m_line_of_key.emplace(std::pair(section, Folded(line.name)), i);
    if (is_new) continue;
    throw Malformed{i + 1, line.name + " already stands in line " + std::to_string(first->second + 1)};
  }
}

const IniText::Line* IniText::Find(const std::string& section, const std::string& key) const {
  const auto number = m_sections.find(Folded(section));
  if (number == m_sections.end()) return nullptr;
  const auto line = m_line_of_key.find({number->second, Folded(key)});
  return line == m_line_of_key.end() ? nullptr : &m_lines[line->second];
}

std::string_view IniText::ValueAsWritten(const Line& line) const {
  return std::string_view(m_bytes).substr(line.value_begin, line.value_end - line.value_begin);
}

void IniText::Set(const std::string& section, const std::string& key, const std::string& value) {
  std::string changed;
  if (const Line* line = Find(section, key)) {
    const std::string written = Written(value, IsQuoted(ValueAsWritten(*line)));
    changed = m_bytes.substr(0, line->value_begin) + written + m_bytes.substr(line->value_end);
  } else {
    changed = WithKey(section, key + '=' + Written(value, false));
  }
  if (changed.size() > kLargestWholeFile) {
    throw Malformed{m_lines.size(), "a profile has no more than " + std::to_string(kLargestWholeFile) + " bytes"};
  }
  *this = IniText(std::move(changed));
}

std::string IniText::WithKey(const std::string& section, const std::string& entry) const {
  if (m_sections.count(Folded(section)) != 0) return WithLines(EndOfSection(section), {entry});
  if (m_lines.empty()) return WithLines(0, {'[' + section + ']', entry});
  return WithLines(m_lines.size(), {"", '[' + section + ']', entry});
}

// The index of the line before which a key at the section's end goes. Comments right above the next section belong to
// that one, and empty lines stay what separates the two.
std::size_t IniText::EndOfSection(const std::string& section) const {
  std::size_t first = 0;
  std::size_t end = m_lines.size();
  bool inside = section.empty();
  for (std::size_t i = 0; i < m_lines.size(); ++i) {
    if (m_lines[i].kind != Line::kSection) continue;
    if (inside) end = i;
    inside = SameName(m_lines[i].name, section);
    if (inside) {
      first = i + 1;
      end = m_lines.size();
    }
  }
  if (end < m_lines.size()) {
    while (end > first && m_lines[end - 1].kind == Line::kComment) --end;
  }
  while (end > first && m_lines[end - 1].kind == Line::kBlank) --end;
  return end;
}

std::string IniText::WithLines(std::size_t line_index, const std::vector<std::string>& lines) const {
  const std::string line_end = LineEndNear(line_index);
  std::string added;
  const bool after_open_end = line_index > 0 && m_lines[line_index - 1].end == m_lines[line_index - 1].next;
  if (after_open_end) added += line_end;
  for (const std::string& line : lines) added += line + line_end;
  std::string changed = m_bytes;
  return changed.insert(line_index < m_lines.size() ? m_lines[line_index].begin : m_bytes.size(), added);
}

std::string IniText::LineEndNear(std::size_t line_index) const {
  for (std::size_t i = std::min(line_index + 1, m_lines.size()); i-- > 0;) {
    if (m_lines[i].next > m_lines[i].end) return m_bytes.substr(m_lines[i].end, m_lines[i].next - m_lines[i].end);
  }
  return "\n";
}
