// cam_profile_test.cpp
// The keys that camera profiles share.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "../kel.core/ini_file.h"
#include "bcamprofile.h"
#include "berror.h"
#include "bsmartref.h"

namespace {

TEST(CamProfile, IsForTheApiThatItNames) {
  const IniFile file("API=vimba\n");
  const BCamProfile profile(file.Name());

  EXPECT_TRUE(profile.IsApi(L"Vimba"));
  EXPECT_FALSE(profile.IsApi(L"PvAPI"));
  EXPECT_FALSE(profile.IsApi(L"Vimb"));
  EXPECT_FALSE(profile.IsApi(L""));
}

TEST(CamProfile, IsForNoApiWithoutTheKey) {
  const IniFile file("");
  const BCamProfile profile(file.Name());

  EXPECT_FALSE(profile.IsApi(L"Vimba"));
  EXPECT_FALSE(profile.IsApi(L""));
}

TEST(CamProfile, ReadsTheSerialNumber) {
  const IniFile file("Serial.Number = 0503329000 \n");
  WString serial_number;

  EXPECT_TRUE(BCamProfile(file.Name()).ReadSerialNumber(serial_number));
  EXPECT_EQ(serial_number.Str(), L"0503329000");
}

TEST(CamProfile, GivesAnEmptySerialNumberWhenThereIsNone) {
  const IniFile file("");
  WString serial_number(L"before");

  EXPECT_FALSE(BCamProfile(file.Name()).ReadSerialNumber(serial_number));
  EXPECT_EQ(serial_number.Str(), L"");
}

TEST(CamProfile, ReadsTheMaxShutterForFast) {
  const IniFile file("MAXSHUTTERFORFAST=250\n");
  int max_shutter = -1;

  EXPECT_TRUE(BCamProfile(file.Name()).ReadMaxShutterForFast(max_shutter));
  EXPECT_EQ(max_shutter, 250);
}

TEST(CamProfile, LeavesTheMaxShutterForFastUntouchedWithoutAUsableOne) {
  for (const char* text : {"", "MAXSHUTTERFORFAST=long\n"}) {
    const IniFile file(text);
    int max_shutter = 20000;

    EXPECT_FALSE(BCamProfile(file.Name()).ReadMaxShutterForFast(max_shutter));
    EXPECT_EQ(max_shutter, 20000);
  }
}

TEST(CamProfile, WritesWhichCameraItWas) {
  const IniFile file("API=Vimba\n");
  BCamProfile profile(file.Name());

  EXPECT_TRUE(profile.WriteIdent(L"Vimba_Manta-G-504-B_0503"));
  EXPECT_TRUE(profile.WriteMIIdent(L"DEV_000F31034C65"));

  EXPECT_EQ(file.Bytes(), "API=Vimba\nIdent=Vimba_Manta-G-504-B_0503\nMIIdent=DEV_000F31034C65\n");
}

TEST(CamProfile, ReadsWhereItStands) {
  const IniFile file("API=Vimba\n[Other]\nAPI=PvAPI\n");
  BCamProfile profile(file.Name());

  profile.GoToSection(L"Other");
  EXPECT_TRUE(profile.IsApi(L"PvAPI"));

  profile.GoToRoot();
  EXPECT_TRUE(profile.IsApi(L"Vimba"));
}

TEST(CamProfile, IsAnObjectOfItsOwnName) {
  const IniFile file("");
  const BSmartRef<BSmartObj> profile(new BCamProfile(file.Name()));

  EXPECT_EQ(profile->ArchiveName().Str(), L"BCamProfile");
}

TEST(CamProfile, ThrowsTheErrorOfItsFile) {
  const IniFile file("API\n");

  EXPECT_THAT([&] { const BCamProfile profile(file.Name()); },
              testing::Throws<BError>(testing::Property(&BError::ErrorCode, BError::eProfileMalformed)));
}

}  // namespace
