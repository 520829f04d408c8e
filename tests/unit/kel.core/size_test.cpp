// size_test.cpp
// How large a profile may be, and what a large one costs.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "berror.h"
#include "biniprofile.h"
#include "ini_file.h"

namespace {

constexpr int kMostLines = 100000;

// It takes about a second on a machine with nothing else to do; a scan for each key would take many minutes.
constexpr std::chrono::seconds kAllowance{60};

std::string Keys(int count) {
  std::string bytes;
  for (int number = 0; number < count; ++number) bytes += "Key" + std::to_string(number) + "=value\n";
  return bytes;
}

TEST(ProfileSize, ALargeProfileIsReadAndWrittenInTime) {
  const IniFile file(Keys(kMostLines));
  const auto start = std::chrono::steady_clock::now();
  BIniProfile profile(file.Name());
  WString value;

  for (int number = 0; number < kMostLines; ++number) {
    ASSERT_TRUE(profile.ReadString(WString::Format(L"kEY%d", number), value));
  }
  EXPECT_TRUE(profile.Write(L"Key99999", L"written"));

  EXPECT_LT(std::chrono::steady_clock::now() - start, kAllowance);
  EXPECT_EQ(file.Bytes().substr(file.Bytes().size() - 17), "Key99999=written\n");
}

TEST(ProfileSize, AMillionKeysAreRefusedWithTheReason) {
  const IniFile file(Keys(1000000));
  const auto start = std::chrono::steady_clock::now();

  try {
    const BIniProfile profile(file.Name());
    FAIL() << "it was read";
  } catch (const BError& error) {
    EXPECT_EQ(error,
              BError(BError::eProfileMalformed, file.Name(), L"100001", L"a profile has no more than 100000 lines"));
  }

  EXPECT_LT(std::chrono::steady_clock::now() - start, kAllowance);
}

}  // namespace
