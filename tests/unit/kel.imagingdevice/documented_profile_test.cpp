// documented_profile_test.cpp
// What the profile's document shows and lists.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>

#include "../kel.core/ini_file.h"
#include "bcamprofile.h"
#include "bcamprofilekeys.h"
#include "nboard.h"
#include "profile/profile_keys.h"
#include "support/documented_keys.h"

namespace {

std::set<std::string> KeysInUse() {
  std::set<std::string> keys;
  const auto add = [&](const WString& key) {
    if (!key.IsEmpty()) keys.insert(ToBString(key).Str());
  };
  for (int number = 0; number < NBoard::kControlTypes; ++number) {
    add(NBoard::ControlTypeString(number));
    add(NBoard::WBValueString(number));
    add(NBoard::CamAOIValueString(number));
  }
  for (const wchar_t* key :
       {CamProfileKey::kApi, CamProfileKey::kSerialNumber, CamProfileKey::kMaxShutterForFast, CamProfileKey::kIdent,
        CamProfileKey::kMIIdent, CamProfileKey::kInitMethod, CamProfileKey::kCameraIdentifier, CamProfileKey::kIp}) {
    add(key);
  }
  for (const wchar_t* key : ProfileKey::kAll) add(key);
  return keys;
}

TEST(ProfileDocument, ListsEveryKeyAndNoOther) { EXPECT_EQ(DocumentedKeys(KEL_PROFILE_DOCUMENT), KeysInUse()); }

std::string Example() {
  const std::string document = BytesOf(std::filesystem::path(KEL_PROFILE_DOCUMENT));
  const std::string fence = "```ini\n";
  const std::size_t begin = document.find(fence) + fence.size();
  return document.substr(begin, document.find("```", begin) - begin);
}

TEST(ProfileDocument, ShowsAProfileOfKeysThatItLists) {
  const std::set<std::string> documented = DocumentedKeys(KEL_PROFILE_DOCUMENT);
  const std::string example = Example();
  const std::regex line("(^|\n)([^;=\n]+)=");
  int keys = 0;

  for (std::sregex_iterator it(example.begin(), example.end(), line), end; it != end; ++it, ++keys) {
    EXPECT_EQ(documented.count((*it)[2]), 1u) << (*it)[2];
  }
  EXPECT_GT(keys, 10);
}

TEST(ProfileDocument, ShowsAProfileThatIsForThisDriver) {
  const IniFile file(Example());
  const BCamProfile profile(file.Name());
  WString serial_number;
  int width = 0;

  EXPECT_TRUE(profile.IsApi(L"Vimba"));
  EXPECT_TRUE(profile.ReadSerialNumber(serial_number));
  EXPECT_TRUE(profile.ReadInt(NBoard::CamAOIValueString(NBoard::eAoiWidth), width, 0, 1, 10000));
  EXPECT_TRUE(profile.Complaints().empty());
}

}  // namespace
