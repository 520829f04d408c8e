// nboard_test.cpp
// Numbers and key texts.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "nboard.h"

namespace {

using Keys = std::vector<std::wstring>;

constexpr int kWhiteBalanceValues = 4;
constexpr int kAoiValues = 4;

Keys KeysOf(WString (*text)(int), int count) {
  Keys keys;
  keys.reserve(static_cast<std::size_t>(count));
  for (int number = 0; number < count; ++number) keys.push_back(text(number).Str());
  return keys;
}

TEST(KeyTexts, NameTheControls) {
  EXPECT_EQ(KeysOf(NBoard::ControlTypeString, NBoard::kControlTypes),
            (Keys{L"GAIN", L"WHITEBALANCERED", L"", L"WHITEBALANCEBLUE", L"SHUTTER", L"BRIGHTNESS", L"", L"",
                  L"TEMPERATURESENSOR", L"TEMPERATUREMAIN"}));
}

TEST(KeyTexts, NameTheWhiteBalanceValues) {
  EXPECT_EQ(KeysOf(NBoard::WBValueString, kWhiteBalanceValues),
            (Keys{L"WBCOLORBLUE", L"WBCOLORRED", L"WBMONOBLUE", L"WBMONORED"}));
}

TEST(KeyTexts, NameTheAreaOfInterest) {
  EXPECT_EQ(KeysOf(NBoard::CamAOIValueString, kAoiValues), (Keys{L"AOIX", L"AOIY", L"AOIWIDTH", L"AOIHEIGHT"}));
}

TEST(KeyTexts, AreEmptyForOtherNumbers) {
  for (const int number :
       {std::numeric_limits<int>::min(), -1, NBoard::kControlTypes, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(NBoard::ControlTypeString(number).Str(), L"");
    EXPECT_EQ(NBoard::WBValueString(number).Str(), L"");
    EXPECT_EQ(NBoard::CamAOIValueString(number).Str(), L"");
  }
  EXPECT_EQ(NBoard::WBValueString(kWhiteBalanceValues).Str(), L"");
  EXPECT_EQ(NBoard::CamAOIValueString(kAoiValues).Str(), L"");
}

TEST(ControlTypes, HaveTheNumbersThatHostsAndDriversAgreeOn) {
  EXPECT_EQ((std::vector<int>{NBoard::eGain, NBoard::eWhiteBalanceRed, NBoard::eWhiteBalanceGreen,
                              NBoard::eWhiteBalanceBlue, NBoard::eShutter, NBoard::eBrightness, NBoard::eOffset,
                              NBoard::eGamma, NBoard::eTemperatureSensor, NBoard::eTemperatureMain}),
            (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(static_cast<int>(NBoard::Exception::eWrongImageKind), 1);
}

}  // namespace
