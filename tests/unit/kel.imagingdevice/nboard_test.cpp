// nboard_test.cpp
// Numbers and key texts.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "nboard.h"

namespace {

using Keys = std::vector<std::wstring>;

Keys KeysOf(WString (*text)(int), int count) {
  Keys keys;
  keys.reserve(static_cast<std::size_t>(count));
  for (int number = 0; number < count; ++number) keys.push_back(text(number).Str());
  return keys;
}

TEST(KeyTexts, NameTheControls) {
  EXPECT_EQ((Keys{L"GAIN", L"WHITEBALANCERED", L"", L"WHITEBALANCEBLUE", L"SHUTTER", L"BRIGHTNESS", L"", L"",
                  L"TEMPERATURESENSOR", L"TEMPERATUREMAIN"}),
            KeysOf(NBoard::ControlTypeString, NBoard::kControlTypes));
}

TEST(KeyTexts, NameTheWhiteBalanceValues) {
  EXPECT_EQ((Keys{L"WBCOLORBLUE", L"WBCOLORRED", L"WBMONOBLUE", L"WBMONORED"}), KeysOf(NBoard::WBValueString, 4));
}

TEST(KeyTexts, NameTheAreaOfInterest) {
  EXPECT_EQ((Keys{L"AOIX", L"AOIY", L"AOIWIDTH", L"AOIHEIGHT"}), KeysOf(NBoard::CamAOIValueString, 4));
}

TEST(KeyTexts, AreEmptyForOtherNumbers) {
  for (const int number : {std::numeric_limits<int>::min(), -1, 10, 11, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(L"", NBoard::ControlTypeString(number).Str());
    EXPECT_EQ(L"", NBoard::WBValueString(number).Str());
    EXPECT_EQ(L"", NBoard::CamAOIValueString(number).Str());
  }
  EXPECT_EQ(L"", NBoard::WBValueString(4).Str());
  EXPECT_EQ(L"", NBoard::CamAOIValueString(4).Str());
}

TEST(ControlTypes, HaveTheNumbersThatHostsAndDriversAgreeOn) {
  EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}),
            (std::vector<int>{NBoard::eGain, NBoard::eWhiteBalanceRed, NBoard::eWhiteBalanceGreen,
                              NBoard::eWhiteBalanceBlue, NBoard::eShutter, NBoard::eBrightness, NBoard::eOffset,
                              NBoard::eGamma, NBoard::eTemperatureSensor, NBoard::eTemperatureMain}));
  EXPECT_EQ(1, static_cast<int>(NBoard::Exception::eWrongImageKind));
}

}  // namespace
