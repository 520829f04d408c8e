// initext.cpp
// Each line is read by the ini library alone, so that lines keep their places and a faulty one is found out.
#include "initext.h"

#include <algorithm>
#include <map>
#include <new>
#include <optional>
#include <utility>

// The library's text is UTF-8 in and out, and its functions are compiled here, as its package leaves them to be.
#define SI_NO_CONVERSION
#define SI_IMPLEMENTATION
#include <SimpleIni.h>

#include "wstring.h"

namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

// Alike for names that are the same.
std::string Folded(std::string name) {
  for (char& letter : name) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return name;
}

bool SameName(const std::string& a, const std::string& b) { return Folded(a) == Folded(b); }

bool IsUtf8(const std::string& text) { return ToBString(ToWString(BString(text))).Str() == text; }

std::string WhyMalformed(const std::string& content, std::size_t first) {
  if (content[first] == '[') return "the section has no name or no closing ]";
  if (content[first] == '=') return "there is no key before the =";
  return "this is neither a comment, nor a section, nor key=value";
}

std::optional<std::string> OnlyName(const CSimpleIniA::TNamesDepend& names) {
  if (names.size() != 1 || !*names.front().pItem) return std::nullopt;
  return names.front().pItem;
}

}  // namespace

IniText::IniText(std::string bytes) : m_bytes(std::move(bytes)) {
  SplitLines();
  for (Line& line : m_lines) ReadLine(line);
  RefuseRepeatedKeys();
}

void IniText::SplitLines() {
  std::size_t at = m_bytes.rfind(kByteOrderMark, 0) == 0 ? sizeof kByteOrderMark - 1 : 0;
  while (at < m_bytes.size()) {
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
  CSimpleIniA ini;
  // It asks for memory without throwing, and a line that it could not hold would look malformed.
  if (ini.LoadData(content) == SI_NOMEM) throw std::bad_alloc();
  CSimpleIniA::TNamesDepend names;
  if (content[first] == '[') {
    ini.GetAllSections(names);
    line.kind = Line::kSection;
  } else {
    ini.GetAllKeys("", names);
    line.kind = Line::kKey;
  }
  const std::optional<std::string> name = OnlyName(names);
  if (!name) throw Malformed{NumberOf(line), WhyMalformed(content, first)};
  line.name = *name;
  if (line.kind != Line::kKey) return;
  line.value = ini.GetValue("", name->c_str(), "");
  line.value_begin = std::min(content.find_first_not_of(" \t", content.find('=') + 1), content.size()) + line.begin;
}

void IniText::RefuseRepeatedKeys() const {
  std::map<std::pair<std::string, std::string>, const Line*> seen;
  std::string section;
  for (const Line& line : m_lines) {
    if (line.kind == Line::kSection) section = Folded(line.name);
    if (line.kind != Line::kKey) continue;
    const auto [first, is_new] = seen.try_emplace({section, Folded(line.name)}, &line);
    if (is_new) continue;
    throw Malformed{NumberOf(line), line.name + " already stands in line " + std::to_string(NumberOf(*first->second))};
  }
}

const IniText::Line* IniText::Find(const std::string& section, const std::string& key) const {
  bool inside = section.empty();
  for (const Line& line : m_lines) {
    if (line.kind == Line::kSection) inside = SameName(line.name, section);
    if (inside && line.kind == Line::kKey && SameName(line.name, key)) return &line;
  }
  return nullptr;
}

void IniText::Set(const std::string& section, const std::string& key, const std::string& value) {
  if (const Line* line = Find(section, key)) {
    m_bytes.replace(line->value_begin, line->value.size(), value);
  } else {
    InsertKey(section, key + '=' + value);
  }
  *this = IniText(std::move(m_bytes));
}

void IniText::InsertKey(const std::string& section, const std::string& entry) {
  const auto is_header = [&](const Line& line) { return line.kind == Line::kSection && SameName(line.name, section); };
  if (section.empty() || std::any_of(m_lines.begin(), m_lines.end(), is_header)) {
    InsertLines(EndOfSection(section), {entry});
  } else if (m_lines.empty()) {
    InsertLines(0, {'[' + section + ']', entry});
  } else {
    InsertLines(m_lines.size(), {"", '[' + section + ']', entry});
  }
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

void IniText::InsertLines(std::size_t line_index, const std::vector<std::string>& lines) {
  const std::string line_end = LineEndNear(line_index);
  std::string added;
  const bool after_open_end = line_index > 0 && m_lines[line_index - 1].end == m_lines[line_index - 1].next;
  if (after_open_end) added += line_end;
  for (const std::string& line : lines) added += line + line_end;
  m_bytes.insert(line_index < m_lines.size() ? m_lines[line_index].begin : m_bytes.size(), added);
}

std::string IniText::LineEndNear(std::size_t line_index) const {
  for (std::size_t i = std::min(line_index + 1, m_lines.size()); i-- > 0;) {
    if (m_lines[i].next > m_lines[i].end) return m_bytes.substr(m_lines[i].end, m_lines[i].next - m_lines[i].end);
  }
  return "\n";
}
