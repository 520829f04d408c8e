// ini_fuzz.cpp
// An ini file of any bytes is read and written: what is written is read back, and all else survives.
#include <algorithm>
#include <string>
#include <vector>

#include "berror.h"
#include "biniprofile.h"
#include "bsmartref.h"
#include "fuzz/file_of_bytes.h"
#include "fuzz/fuzz_input.h"

namespace {

using Fuzz::Expect;
using Lines = std::vector<std::string>;

// A new key may need an empty line and its section's header, too.
constexpr std::ptrdiff_t kMostAddedLines = 3;

BSmartRef<BIniProfile> Open(const WString& file) {
  try {
    return new BIniProfile(file);
  } catch (const BError& error) {
    Expect(error.ErrorCode() == BError::eProfileMalformed, "a readable file that is refused is malformed");
    Expect(!error.Text(1).IsEmpty() && !error.Text(2).IsEmpty(), "a malformed file has a line and a reason");
    return nullptr;
  }
}

Lines LinesOf(const std::string& bytes) {
  Lines lines(1);
  for (const char byte : bytes) {
    if (byte == '\n' || byte == '\r') {
      lines.emplace_back();
    } else {
      lines.back() += byte;
    }
  }
  return lines;
}

// All lines but one are still there, in their order, and few are new.
void ExpectOthersSurvive(const Lines& before, const Lines& after) {
  std::size_t found = 0;
  std::size_t missing = 0;
  for (const std::string& line : before) {
    const auto at = std::find(after.begin() + static_cast<std::ptrdiff_t>(found), after.end(), line);
    if (at == after.end()) {
      ++missing;
    } else {
      found = static_cast<std::size_t>(at - after.begin()) + 1;
    }
  }
  Expect(missing <= 1, "a write changes one line");
  const auto added = static_cast<std::ptrdiff_t>(after.size()) - static_cast<std::ptrdiff_t>(before.size());
  // Each may end in two bytes.
  Expect(added >= 0 && added <= 2 * kMostAddedLines, "a write adds few lines");
}

void ReadEachWay(const BIniProfile& profile, const WString& key) {
  WString text;
  int whole = 0;
  double number = 0.0;
  bool flag = false;
  const bool is_there = profile.ReadString(key, text);
  const bool is_whole = profile.ReadInt(key, whole, 7, -100, 100);
  Expect(is_whole ? whole >= -100 && whole <= 100 : whole == 7, "a whole number is in its range, or the default");
  const bool is_number = profile.ReadDouble(key, number, 0.5);
  Expect(!is_whole || is_number, "a whole number is a number");
  Expect(profile.ReadBool(key, flag, true) || flag, "what is no yes or no is the default");
  Expect(is_there || (!is_whole && !is_number), "a key that is not there has no value");
}

void ExpectValue(const BIniProfile& profile, const WString& key, const WString& value) {
  WString text;
  Expect(profile.ReadString(key, text), "a key that was written is there");
  Expect(text == value, "a value is read as it was written");
}

void ReadAndWrite(BIniProfile& profile, const WString& section, const WString& key, const WString& value,
                  const Fuzz::FileOfBytes& file) {
  const std::string before = file.Bytes();
  const std::size_t complaints = profile.Complaints().size();
  profile.GoToSection(section);
  if (!profile.Write(key, value)) {
    Expect(file.Bytes() == before, "a refused write leaves the file");
    Expect(profile.Complaints().size() <= complaints + 1, "a refused write is one complaint");
    return;
  }
  ExpectValue(profile, key, value);
  ExpectOthersSurvive(LinesOf(before), LinesOf(file.Bytes()));
  const BSmartRef<BIniProfile> again = Open(file.Name());
  Expect(again.Get() != nullptr, "a file that was written can be read");
  again->GoToSection(section);
  ExpectValue(*again, key, value);
  const std::string written = file.Bytes();
  Expect(again->Write(key, value) && file.Bytes() == written, "writing a value again changes nothing");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::FileOfBytes kFile;
  Fuzz::Input input(data, size);
  const std::string section = input.Text();
  const std::string key = input.Text();
  const std::string value = input.Text();
  kFile.Write(input.Rest());
  const BSmartRef<BIniProfile> profile = Open(kFile.Name());
  if (!profile) return 0;
  const WString wide_key = ToWString(key.c_str());
  ReadEachWay(*profile, wide_key);
  ReadAndWrite(*profile, ToWString(section.c_str()), wide_key, ToWString(BString(value)), kFile);
  ReadAndWrite(*profile, WString(), L"AOIX", L"12", kFile);
  ReadEachWay(*profile, L"AOIX");
  return 0;
}
