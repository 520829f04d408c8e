// entry_points_test.cpp
// The six exports: what they give back, what they leave open, what they log.
#include <gmock/gmock.h>

#include "VimbaC.h"
#include "support/driver_module.h"
#include "support/host_output.h"
#include "support/profile_file.h"
#include "support/simulated_cameras.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::wstring> TextsOf(const DList<WString>& list) {
  std::vector<std::wstring> texts;
  for (const WString& text : list) texts.push_back(text.Str());
  return texts;
}

struct EntryPoints : testing::Test {
  HostOutput output;
  SimulatedCameras cameras{std::vector{SimulatedCamera(1), SimulatedCamera(2)}};
  ProfileFile first;
  ProfileFile second;
  ProfileFile hopeless;

  EntryPoints() {
    first.Key("Camera_Identifier", "DEV_000F31000001");
    second.Key("Camera_Identifier", "DEV_000F31000002");
    hopeless.Key("API", "Other");
  }

  std::size_t Startups() const { return cameras.CallsOf("VmbStartup").size(); }
  std::size_t Shutdowns() const { return cameras.CallsOf("VmbShutdown").size(); }
};

TEST_F(EntryPoints, WithoutAProfileNothingHappens) {
  EXPECT_EQ(TheModule().create(nullptr), nullptr);
  EXPECT_EQ(TheModule().vimba_create(nullptr), nullptr);
  EXPECT_THAT(output.Messages(), IsEmpty());
  EXPECT_THAT(cameras.Calls(), IsEmpty());
}

TEST_F(EntryPoints, ASecondDeviceSharesTheSystemOfTheFirst) {
  OpenDevice a(first.Open());
  OpenDevice b(second.Open());
  ASSERT_TRUE(a && b);
  EXPECT_EQ(Startups(), 1U);
  EXPECT_TRUE(a.Release());
  EXPECT_EQ(Shutdowns(), 0U);
  EXPECT_TRUE(b.Release());
  EXPECT_EQ(Shutdowns(), 1U);
}

TEST_F(EntryPoints, AFailedCreationKeepsTheSystemOfALiveDevice) {
  OpenDevice live(first.Open());
  EXPECT_EQ(TheModule().create(hopeless.Open()), nullptr);
  EXPECT_EQ(Shutdowns(), 0U);
  EXPECT_TRUE(live->IsOpen());
}

TEST_F(EntryPoints, AFailedCreationWithoutALiveDeviceClosesTheSystem) {
  EXPECT_EQ(TheModule().create(hopeless.Open()), nullptr);
  EXPECT_EQ(Startups(), 1U);
  EXPECT_EQ(Shutdowns(), 1U);
}

TEST_F(EntryPoints, ASystemThatCannotStartGivesNoDeviceAndNoLogLines) {
  cameras.FailCall("VmbStartup", "", VmbErrorResources);
  EXPECT_EQ(TheModule().create(first.Open()), nullptr);
  EXPECT_THAT(cameras.Calls(), ElementsAre("VmbStartup()"));
  EXPECT_THAT(output.Diagnostics(L"Vimba Initialization"),
              ElementsAre(L"Vimba Initialization\n   1 : # (#) : Vimba Startup fails : -14\n   2 : # (#) : End\n"));
}

TEST_F(EntryPoints, TheCreationIsLoggedInTwoLines) {
  const BSmartRef<BCamProfile> profile = first.Open();
  OpenDevice device(profile);
  std::vector<std::wstring> lines;
  for (const HostMessage& message : output.Messages()) {
    if (message.call == HostMessage::Call::kLogMessage && !message.important) lines.push_back(message.text);
  }
  EXPECT_THAT(lines, ElementsAre(L"Creating Imaging Device Object",
                                 L"Initialize Object by Ini file " + profile->FileName().Str()));
}

TEST_F(EntryPoints, TheProfileIsHeldByTheDeviceAlone) {
  const BSmartRef<BCamProfile> profile = first.Open();
  {
    OpenDevice device(profile);
    EXPECT_EQ(profile->References(), 2);
  }
  EXPECT_EQ(profile->References(), 1);
  EXPECT_EQ(TheModule().create(hopeless.Open()), nullptr);
  BImagingDevice* device = TheModule().vimba_create(profile);
  EXPECT_EQ(profile->References(), 2);
  EXPECT_TRUE(TheModule().vimba_release(&device));
  EXPECT_EQ(profile->References(), 1);
}

TEST_F(EntryPoints, ReleasingNothingIsRefused) {
  BImagingDevice* none = nullptr;
  EXPECT_FALSE(TheModule().release(nullptr));
  EXPECT_FALSE(TheModule().release(&none));
  EXPECT_FALSE(TheModule().vimba_release(nullptr));
  EXPECT_FALSE(TheModule().vimba_release(&none));
}

TEST_F(EntryPoints, AFailedReleaseDoesNotCountAsOne) {
  OpenDevice a(first.Open());
  OpenDevice b(second.Open());
  EXPECT_FALSE(TheModule().release(nullptr));
  EXPECT_TRUE(a.Release());
  EXPECT_FALSE(a.Release());
  EXPECT_EQ(Shutdowns(), 0U);
  EXPECT_TRUE(b->IsOpen());
}

TEST_F(EntryPoints, ReleasingClearsTheCallersPointer) {
  BImagingDevice* device = TheModule().create(first.Open());
  EXPECT_TRUE(TheModule().release(&device));
  EXPECT_EQ(device, nullptr);
}

TEST_F(EntryPoints, TheListReplacesWhatItHeld) {
  DList<WString> list;
  list.Append(L"something else");
  TheModule().list(list);
  EXPECT_THAT(TextsOf(list), ElementsAre(L"Vimba_Manta-G-507B_50-0503340001", L"Vimba_Manta-G-507B_50-0503340002"));
  TheModule().vimba_list(list);
  EXPECT_EQ(list.Count(), 2U);
}

TEST_F(EntryPoints, TheListIsEmptyWithoutCameras) {
  SimulatedCameras none(std::vector<SimulatedCamera>{});
  DList<WString> list;
  list.Append(L"something else");
  TheModule().list(list);
  EXPECT_THAT(TextsOf(list), IsEmpty());
}

TEST_F(EntryPoints, TheListStaysAsItIsWhenTheSystemCannotStart) {
  cameras.FailCall("VmbStartup", "", VmbErrorInternalFault);
  DList<WString> list;
  list.Append(L"something else");
  TheModule().list(list);
  EXPECT_THAT(TextsOf(list), ElementsAre(L"something else"));
}

TEST_F(EntryPoints, ListingBesideALiveDeviceUsesItsSystem) {
  OpenDevice live(first.Open());
  cameras.ClearCalls();
  output.Clear();
  DList<WString> list;
  TheModule().list(list);
  EXPECT_THAT(cameras.Calls(), ElementsAre("VmbCamerasList(128)"));
  EXPECT_THAT(output.Diagnostics(L"Vimba Initialization"), ElementsAre(L"Vimba Initialization\n   1 : # (#) : End\n"));
  EXPECT_EQ(list.Count(), 2U);
}

TEST_F(EntryPoints, ABadRotationReachesTheHostWithEverythingUndone) {
  first.Key("RotateBy90Degree", "2");
  const BSmartRef<BCamProfile> profile = first.Open();
  try {
    TheModule().create(profile);
    FAIL() << "no error was thrown";
  } catch (const BError& error) {
    EXPECT_EQ(error, BError(BError::eBadRotation, profile->FileName(), L"RotateBy90Degree", L"2"));
  }
  EXPECT_EQ(cameras.CallsOf("VmbCameraClose").size(), 1U);
  EXPECT_EQ(Shutdowns(), 1U);
  EXPECT_EQ(profile->References(), 1);
}

TEST_F(EntryPoints, ABadRotationBesideALiveDeviceLeavesThatOneAlone) {
  OpenDevice live(second.Open());
  first.Key("RotateBy90Degree", "-2");
  EXPECT_THROW(TheModule().create(first.Open()), BError);
  EXPECT_EQ(Shutdowns(), 0U);
  live->StartSnap(true);
  EXPECT_EQ(live->Snap(nullptr, 2000), BError());
  live->StopSnap();
}

}  // namespace
