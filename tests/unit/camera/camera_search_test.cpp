// camera_search_test.cpp
// What a look at the attached cameras makes of a library whose numbers change or cannot be.
#include "camera/camera_search.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/host_output.h"
#include "unit/scripted/scripted_library.h"

namespace {

using Calls = std::vector<std::string>;
using Texts = std::vector<std::wstring>;

constexpr VmbUint32_t kMostCameras = 4096;

struct Search : testing::Test {
  HostOutput output;
  Search() { Library().Reset(); }
};

TEST_F(Search, BelievesInAsManyCamerasAsANetworkMayHave) {
  Library().SetClaimedCameras({kMostCameras});
  EXPECT_EQ(FetchCameraRecords().size(), kMostCameras);
  EXPECT_EQ(Library().Calls(), (Calls{"VmbCamerasList(0)", "VmbCamerasList(4096)"}));
  EXPECT_TRUE(output.Messages().empty());
}

TEST_F(Search, FetchesNothingForMoreAndSaysSo) {
  Library().SetClaimedCameras({kMostCameras + 1});
  EXPECT_TRUE(FetchCameraRecords().empty());
  EXPECT_EQ(Library().Calls(), Calls{"VmbCamerasList(0)"});
  EXPECT_EQ(output.WithCaption(L"!"), Texts{L"VmbCamerasList failed : 4097 cameras"});
}

TEST_F(Search, HasAsManyRecordsAsThereWasRoomForAndAsWereFound) {
  Library().SetClaimedCameras({3, 5});
  EXPECT_EQ(FetchCameraRecords().size(), 3U) << "cameras that came in between";
  Library().SetClaimedCameras({3, 1});
  EXPECT_EQ(FetchCameraRecords().size(), 1U) << "cameras that went in between";
}

}  // namespace
