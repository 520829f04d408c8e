// biniprofile.cpp
// What the texts of an ini file mean as values, and when the file is saved.
#include "biniprofile.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "berror.h"
#include "initext.h"
#include "wholefile.h"

namespace {

struct Word {
  const wchar_t* text;
  bool value;
};

constexpr Word kBooleanWords[] = {{L"1", true},  {L"true", true},   {L"yes", true}, {L"on", true},
                                  {L"0", false}, {L"false", false}, {L"no", false}, {L"off", false}};

WString NameWithoutFolderAndEnding(const WString& file_name) {
  // Through UTF-8: a path made from wide text goes through the C locale, which need not know the characters.
  const std::string utf8 = ToBString(file_name).Str();
  const std::u8string stem = std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).stem().u8string();
  return ToWString(std::string(stem.begin(), stem.end()).c_str());
}

WString Number(std::size_t number) { return WString::Format(L"%u", number); }

IniText IniTextOf(const WString& file_name, std::string bytes) {
  try {
    return IniText(std::move(bytes));
  } catch (const IniText::Malformed& malformed) {
    throw BError(BError::eProfileMalformed, file_name, Number(malformed.line), ToWString(malformed.reason));
  }
}

IniText ReadIniFile(const WString& file_name) {
  std::string bytes;
  if (const std::error_code error = ReadWholeFile(file_name, bytes)) {
    throw BError(BError::eProfileNotReadable, file_name, ToWString(error.message()));
  }
  return IniTextOf(file_name, std::move(bytes));
}

// The number that the whole text is; a sign of either kind may lead.
template <class Value>
std::optional<Value> NumberIn(const std::string& text) {
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  Value value{};
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data() + (plus ? 1 : 0), end, value);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return value;
}

std::optional<bool> BooleanIn(const WString& text) {
  for (const Word& word : kBooleanWords) {
    if (text.IEquals(word.text)) return word.value;
  }
  return std::nullopt;
}

// Why a line of an ini file cannot hold this; null if it can.
const wchar_t* WhyNotHoldable(const std::string& section, const std::string& key, const std::string& value) {
  constexpr std::string_view kLineBreaks("\r\n\0", 3);
  const auto breaks = [&](const std::string& text) { return text.find_first_of(kLineBreaks) != std::string::npos; };
  if (breaks(value)) return L"a value has no line breaks or zeros";
  // A key with a mark would lose it in the first line.
  const bool bad_start = key.empty() || std::string_view("[;#").find(key[0]) != std::string_view::npos ||
                         key.rfind(kByteOrderMark, 0) == 0;
  if (bad_start || breaks(key) || key.find('=') != std::string::npos || WithoutBlanksAround(key) != key) {
    return L"the key is none that a file can hold";
  }
  if (breaks(section) || section.find(']') != std::string::npos || WithoutBlanksAround(section) != section) {
    return L"the section's name is none that a file can hold";
  }
  return nullptr;
}

}  // namespace

struct BIniProfile::Content {
  struct Change {
    std::string section;
    std::string key;
    std::string value;
  };

  explicit Content(const WString& file)
      : file_name(file), name(NameWithoutFolderAndEnding(file)), text(ReadIniFile(file)) {}

  const IniText::Line* Find(const WString& key) const { return text.Find(section, ToBString(key).Str()); }

  void Complain(const WString& complaint) {
    if (std::find(complaints.begin(), complaints.end(), complaint) == complaints.end()) complaints.push_back(complaint);
  }

  void ComplainOfValue(const IniText::Line& line, const WString& wanted) {
    Complain(WString::Format(L"%s, line %u: %s = %s is not used, it is not %s", file_name, text.NumberOf(line),
                             ToWString(line.name), ToWString(std::string(text.ValueAsWritten(line))), wanted));
  }

  // The change holds from now on, saved or not. Gives the reason when there is no room for it.
  WString Remember(const Change& change) try {
    text.Set(change.section, change.key, change.value);
    const auto same_key = [&](const Change& other) {
      return other.section == change.section && other.key == change.key;
    };
    unsaved.erase(std::remove_if(unsaved.begin(), unsaved.end(), same_key), unsaved.end());
    unsaved.push_back(change);
    return {};
  } catch (const IniText::Malformed& malformed) {
    return ToWString(malformed.reason);
  }

  // The changes go into what the file holds now, since others may have written it after it was read. Gives the reason
  // when that fails.
  WString Save() try {
    std::optional<IniText> saved;
    const std::error_code error = ChangeWholeFile(file_name, [&](std::string bytes) {
      saved = IniTextOf(file_name, std::move(bytes));
      for (const Change& change : unsaved) saved->Set(change.section, change.key, change.value);
      return saved->Bytes();
    });
    if (error) return ToWString(error.message());
    text = std::move(*saved);
    unsaved.clear();
    return {};
  } catch (const BError& error) {
    return error.Message();
  } catch (const IniText::Malformed& malformed) {
    return ToWString(malformed.reason);
  }

  WString file_name;
  WString name;
  IniText text;
  std::string section;
  std::vector<Change> unsaved;
  std::vector<WString> complaints;
};

BIniProfile::BIniProfile(const WString& file_name) : m_content(std::make_unique<Content>(file_name)) {}
BIniProfile::~BIniProfile() = default;

bool BIniProfile::ReadString(const WString& key, WString& value, const WString& default_value) const {
  const IniText::Line* line = m_content->Find(key);
  value = line ? ToWString(line->value) : default_value;
  return line != nullptr;
}

bool BIniProfile::ReadInt(const WString& key, int& value, int default_value, int min, int max) const {
  value = default_value;
  const IniText::Line* line = m_content->Find(key);
  if (!line) return false;
  const std::optional<int> number = NumberIn<int>(line->value);
  if (!number || *number < min || *number > max) {
    m_content->ComplainOfValue(*line, WString::Format(L"a whole number from %d to %d", min, max));
    return false;
  }
  value = *number;
  return true;
}

bool BIniProfile::ReadDouble(const WString& key, double& value, double default_value) const {
  value = default_value;
  const IniText::Line* line = m_content->Find(key);
  if (!line) return false;
  const std::optional<double> number = NumberIn<double>(line->value);
  if (!number || !std::isfinite(*number)) {
    m_content->ComplainOfValue(*line, L"a number with a decimal point");
    return false;
  }
  value = *number;
  return true;
}

bool BIniProfile::ReadBool(const WString& key, bool& value, bool default_value) const {
  value = default_value;
  const IniText::Line* line = m_content->Find(key);
  if (!line) return false;
  const std::optional<bool> boolean = BooleanIn(ToWString(line->value));
  if (!boolean) {
    m_content->ComplainOfValue(*line, L"one of 1, true, yes, on, 0, false, no, off");
    return false;
  }
  value = *boolean;
  return true;
}

bool BIniProfile::Write(const WString& key, const WString& value) {
  const Content::Change change{m_content->section, ToBString(key).Str(), ToBString(value).Str()};
  WString reason = WhyNotHoldable(change.section, change.key, change.value);
  if (reason.IsEmpty()) reason = m_content->Remember(change);
  if (reason.IsEmpty()) reason = m_content->Save();
  if (reason.IsEmpty()) return true;
  m_content->Complain(WString::Format(L"%s: %s = %s is not saved: %s", m_content->file_name, key, value, reason));
  return false;
}

void BIniProfile::GoToRoot() { m_content->section.clear(); }
void BIniProfile::GoToSection(const WString& section) { m_content->section = ToBString(section).Str(); }
const WString& BIniProfile::FileName() const { return m_content->file_name; }
const WString& BIniProfile::Name() const { return m_content->name; }
const std::vector<WString>& BIniProfile::Complaints() const { return m_content->complaints; }
WString BIniProfile::ArchiveName() const { return L"BIniProfile"; }
WString BIniProfile::Properties() const { return WString::Format(L"profile %s", m_content->file_name); }
