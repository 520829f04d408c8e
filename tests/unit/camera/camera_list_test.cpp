// camera_list_test.cpp
// The lists of attached cameras: as identifiers for the host, and as records for the search.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VimbaC.h"
#include "camera/camera_identifier.h"
#include "camera/camera_search.h"
#include "support/simulated_cameras.h"

namespace {

using Texts = std::vector<std::wstring>;

// Vimba is started for the life of the object.
class StartedVimba {
 public:
  StartedVimba() { EXPECT_EQ(VmbStartup(), 0); }
  ~StartedVimba() { VmbShutdown(); }
  StartedVimba(const StartedVimba&) = delete;
  StartedVimba& operator=(const StartedVimba&) = delete;
};

std::vector<SimulatedCamera> Cameras(int count) {
  std::vector<SimulatedCamera> cameras;
  for (int number = 1; number <= count; ++number) cameras.emplace_back(number);
  return cameras;
}

Texts Identifiers() {
  Texts identifiers;
  for (const WString& identifier : ListIdentifiers()) identifiers.push_back(identifier.Str());
  return identifiers;
}

TEST(IdentifierList, HasEveryCameraInTheLibrarysOrder) {
  SimulatedCameras link({SimulatedCamera(2).Named("Mako", "Mako G-234C"), SimulatedCamera(1)});
  const StartedVimba vimba;
  link.ClearCalls();

  EXPECT_EQ(Identifiers(), (Texts{L"Vimba_Mako_50-0503340002", L"Vimba_Manta-G-507B_50-0503340001"}));

  EXPECT_EQ(link.Calls(), std::vector<std::string>{"VmbCamerasList(128)"});
}

TEST(IdentifierList, IsEmptyWithoutACamera) {
  SimulatedCameras link{std::vector<SimulatedCamera>{}};
  const StartedVimba vimba;

  EXPECT_EQ(Identifiers(), Texts{});
}

TEST(IdentifierList, EndsWithItsHundredAndTwentyEighthRecord) {
  SimulatedCameras link(Cameras(130));
  const StartedVimba vimba;

  const Texts identifiers = Identifiers();

  EXPECT_EQ(identifiers.size(), 128U);
  EXPECT_EQ(identifiers.back(), L"Vimba_Manta-G-507B_50-050334000128");
}

TEST(IdentifierList, IsEmptyWhenTheLibraryDoesNotAnswer) {
  SimulatedCameras link(Cameras(2));
  const StartedVimba vimba;
  link.FailCall("VmbCamerasList", "", VmbErrorInternalFault);

  EXPECT_EQ(Identifiers(), Texts{});
}

TEST(CameraRecordsOfASearch, AreAsManyAsThereAreCameras) {
  SimulatedCameras link(Cameras(3));
  const StartedVimba vimba;
  link.ClearCalls();

  const CameraRecords records = FetchCameraRecords();

  ASSERT_EQ(records.size(), 3U);
  EXPECT_STREQ(records.back().cameraIdString, "DEV_000F31000003");
  EXPECT_EQ(link.Calls(), (std::vector<std::string>{"VmbCamerasList(0)", "VmbCamerasList(3)"}));
}

TEST(CameraRecordsOfASearch, AreNoneWhenTheFetchFails) {
  for (const int occurrence : {1, 2}) {
    SimulatedCameras link(Cameras(2));
    const StartedVimba vimba;
    link.FailCall("VmbCamerasList", "", VmbErrorMoreData, occurrence);
    EXPECT_TRUE(FetchCameraRecords().empty()) << occurrence;
  }
}

}  // namespace
