// profile_check.cpp
// What is wrong with a profile, without its camera.
#include "profile_text/profile_check.h"

#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

#include "base/nearest_name.h"
#include "base/utf8.h"
#include "bcamprofile.h"
#include "bsmartref.h"
#include "profile_text/profile_keys.h"

namespace Kelcam {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr const char* kApiKey = "API";

struct KeyLine {
  std::size_t line;
  std::string section;  // empty: the root
  std::string key;
  std::string value;
};

std::string Trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  return begin == std::string::npos ? std::string() : text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

std::string WithoutQuotes(const std::string& value) {
  const bool is_quoted = value.size() > 1 && value.front() == '"' && value.back() == '"';
  return is_quoted ? value.substr(1, value.size() - 2) : value;
}

std::string BytesOf(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(Path(file), std::ios::binary).rdbuf();
  std::string bytes = text.str();
  if (bytes.starts_with(kByteOrderMark)) bytes.erase(0, kByteOrderMark.size());
  return bytes;
}

// With a line feed for each kind of line end.
std::string WithPlainLineEnds(const std::string& bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool is_pair = bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n';
    if (!is_pair) text += bytes[i] == '\r' ? '\n' : bytes[i];
  }
  return text;
}

// The file has the form of a profile: the host has read it.
std::vector<KeyLine> KeyLinesOf(const std::string& file) {
  std::vector<KeyLine> keys;
  std::istringstream text(WithPlainLineEnds(BytesOf(file)));
  std::string section;
  std::size_t number = 0;
  for (std::string raw; std::getline(text, raw);) {
    ++number;
    const std::string line = Trimmed(raw);
    if (line.empty() || line.front() == ';' || line.front() == '#') continue;
    if (line.front() == '[') {
      section = Trimmed(line.substr(1, line.find(']') - 1));
      continue;
    }
    const std::size_t equals = line.find('=');
    keys.push_back({number, section, Trimmed(line.substr(0, equals)),
                    WithoutQuotes(equals == std::string::npos ? "" : Trimmed(line.substr(equals + 1)))});
  }
  return keys;
}

void Judge(const KeyLine& line, std::vector<ProfileFinding>& findings) {
  const ProfileKeyRow* key = FindProfileKey(line.key);
  if (!line.section.empty()) {
    // What is below a section is the host's; only a driver's key has lost its way there.
    if (!key) return;
    findings.push_back({ProfileFinding::kBelowSection,
                        line.line,
                        line.key,
                        "is below the section [" + line.section + "], where no driver reads it",
                        {}});
  } else if (!key) {
    const std::vector<std::string> names = ProfileKeyNames();
    findings.push_back({ProfileFinding::kUnknownKey, line.line, line.key,
                        "is a key that no driver reads" + DidYouMean(line.key, names), NearestName(line.key, names)});
  } else if (const std::string why = WhyNotValue(*key, line.value); !why.empty()) {
    findings.push_back({ProfileFinding::kValue, line.line, line.key, "= " + line.value + " " + why, {}});
  }
}

// A lower limit above the upper one.
void JudgeLimits(const std::vector<KeyLine>& lines, std::vector<ProfileFinding>& findings) {
  constexpr std::pair<const char*, const char*> kLimits[] = {
      {"MINGAIN", "MAXGAIN"}, {"MINSHUTTER", "MAXSHUTTER"}, {"MIN_BYTEPERSECOND", "BYTEPERSECOND"}};
  std::map<const ProfileKeyRow*, const KeyLine*> root;
  for (const KeyLine& line : lines) {
    const ProfileKeyRow* key = line.section.empty() ? FindProfileKey(line.key) : nullptr;
    if (key && WhyNotValue(*key, line.value).empty()) root[key] = &line;
  }
  for (const auto& [lower, upper] : kLimits) {
    const auto low = root.find(FindProfileKey(lower));
    const auto high = root.find(FindProfileKey(upper));
    if (low == root.end() || high == root.end()) continue;
    if (std::stoll(low->second->value) <= std::stoll(high->second->value)) continue;
    findings.push_back({ProfileFinding::kValue,
                        low->second->line,
                        low->second->key,
                        "= " + low->second->value + " is above " + upper + " = " + high->second->value,
                        {}});
  }
}

}  // namespace

std::string ProfileFinding::Sentence(const std::string& file) const {
  return file + (line > 0 ? ", line " + std::to_string(line) : std::string()) + ": " + key + " " + text;
}

std::vector<ProfileFinding> FindingsIn(const std::string& file) {
  const BSmartRef<BCamProfile> profile(new BCamProfile(Wide(file)));
  const std::vector<KeyLine> lines = KeyLinesOf(file);
  std::vector<ProfileFinding> findings;
  WString api;
  if (!profile->ReadString(Wide(kApiKey), api)) {
    findings.push_back(
        {ProfileFinding::kMissing, 0, kApiKey, "is missing before the first section; write API = Vimba", {}});
  }
  for (const KeyLine& line : lines) Judge(line, findings);
  JudgeLimits(lines, findings);
  return findings;
}

void PrintUnusedKeys(const std::string& file) {
  for (const ProfileFinding& finding : FindingsIn(file)) {
    const bool is_unused = finding.kind == ProfileFinding::kUnknownKey || finding.kind == ProfileFinding::kBelowSection;
    if (is_unused) std::cerr << "notice: " << finding.Sentence(file) << "\n";
  }
}

}  // namespace Kelcam
