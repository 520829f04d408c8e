// stream_rate_test.cpp
// The rate of one camera: its range and start, what a snap does to it, and what a camera that refuses leaves.
#include "stream/stream_rate.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "berror.h"
#include "diagnostics/log_collector.h"
#include "support/host_output.h"
#include "support/profile_file.h"
#include "unit/stream/scripted_rates.h"

namespace {

using Texts = std::vector<std::wstring>;

constexpr VmbInt64_t kCameraMin = 10'000'000;
constexpr VmbInt64_t kCameraMax = 125'000'000;
// What no camera has, and yet may claim.
constexpr VmbInt64_t kLowestClaim = std::numeric_limits<VmbInt64_t>::min();
constexpr VmbInt64_t kHighestClaim = std::numeric_limits<VmbInt64_t>::max();

struct Rate : testing::Test {
  // In this order: the library is empty before the camera is in it.
  struct EmptyLibrary {
    EmptyLibrary() { Library().Reset(); }
  } empty_library;
  HostOutput output;
  ProfileFile profile;
  ScriptedRate scripted{1, 50'000'000};

  Rate() { Library().SetRange(kRateFeature, kCameraMin, kCameraMax); }

  // The lines between title and end.
  Texts Initialize() {
    {
      BLogCollector log(L"title");
      scripted.rate.InitializeBandwidthRange(*profile.Open(), log);
    }
    return Lines(L"title");
  }
  Texts AfterSnap(BError::Code error) {
    output.Clear();
    {
      BLogCollector log(L"title");
      scripted.rate.AfterSnap(error, log);
    }
    return Lines(L"title");
  }
  Texts Lines(const std::wstring& title) const {
    Texts lines = LinesOf(output.Diagnostics(title).at(0));
    return {lines.begin() + 1, lines.end() - 1};
  }
};

TEST_F(Rate, StartsTwoThirdsUpInARangeWithAFloor) {
  EXPECT_EQ(Initialize(),
            (Texts{L"InitializeBandwidthRange Vimba_Scripted_1", L"StreamBytesPerSecond range = 45000000 , 125000000",
                   L"StreamBytesPerSecond by profile = 45000000 , 125000000", L"Set StreamBytesPerSecond = 98300000"}));
  EXPECT_EQ(scripted.OnCamera(), 98'300'000);
}

TEST_F(Rate, TheFloorIsOnlyForCamerasThatCanBeFaster) {
  for (const VmbInt64_t max : {kRateFloor, kRateFloor + 1}) {
    Library().SetRange(kRateFeature, kCameraMin, max);
    output.Clear();
    const VmbInt64_t min = max > kRateFloor ? kRateFloor : kCameraMin;
    EXPECT_EQ(Initialize().at(1),
              L"StreamBytesPerSecond range = " + std::to_wstring(min) + L" , " + std::to_wstring(max));
  }
}

TEST_F(Rate, OfACameraThatReportsNoRangeHasTheDriversOwn) {
  Library().Fail("VmbFeatureIntRangeQuery", VmbErrorNotFound);
  EXPECT_EQ(Initialize().at(1), L"StreamBytesPerSecond range = 45000000 , 4294967295");
}

TEST_F(Rate, TheProfileNarrowsTheRangeAndCannotWidenIt) {
  profile.Key("MIN_BYTEPERSECOND", "50000000").Key("BYTEPERSECOND", "80000000");
  EXPECT_EQ(Initialize().at(2), L"StreamBytesPerSecond by profile = 50000000 , 80000000");
  output.Clear();
  Library().SetRange(kRateFeature, 60'000'000, 70'000'000);
  EXPECT_EQ(Initialize().at(2), L"StreamBytesPerSecond by profile = 60000000 , 70000000");
}

TEST_F(Rate, AStartThatTheCameraRefusesEndsItsLineOnce) {
  Library().Fail("VmbFeatureIntSet", VmbErrorOther);
  const Texts lines = Initialize();
  EXPECT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines.back(), L"Set StreamBytesPerSecond = 98300000 failed");
}

TEST_F(Rate, ThatCannotBeReadIsNone) {
  Library().Fail("VmbFeatureIntGet", VmbErrorIO);
  EXPECT_EQ(scripted.rate.GetBandwidth(), 0);
  EXPECT_EQ(scripted.rate.SetBandwidth(60'000'000), VmbErrorIO);
  EXPECT_EQ(scripted.OnCamera(), 50'000'000);
}

TEST_F(Rate, IsSetAsItIsAndShown) {
  EXPECT_EQ(scripted.rate.SetBandwidth(5), VmbErrorSuccess);
  EXPECT_EQ(scripted.OnCamera(), 5);
  EXPECT_EQ(output.WithCaption(nullptr), Texts{L"Camera(Vimba_Scripted_1): SetBandwidth() : 50000000 --> 5"});
}

TEST_F(Rate, ThatIsInForceIsNotSetAgain) {
  EXPECT_EQ(scripted.rate.SetBandwidth(50'000'000), VmbErrorSuccess);
  EXPECT_EQ(Library().Calls(), std::vector<std::string>{"VmbFeatureIntGet(StreamBytesPerSecond)"});
  EXPECT_TRUE(output.Messages().empty());
}

TEST_F(Rate, ThatTheCameraRefusesGivesItsCodeAndShowsNothing) {
  Library().Fail("VmbFeatureIntSet", VmbErrorInvalidValue);
  EXPECT_EQ(scripted.rate.SetBandwidth(5), VmbErrorInvalidValue);
  EXPECT_TRUE(output.Messages().empty());
}

TEST_F(Rate, AGoodSnapRaisesItAndAFailedOneLowersIt) {
  Initialize();
  EXPECT_EQ(AfterSnap(BError::eSuccess),
            Texts{L"Successful snap, failure counter = 0, bandwidth.av = 98300000 #snaps = 1"});
  EXPECT_EQ(scripted.OnCamera(), 100'300'000);
  EXPECT_EQ(AfterSnap(BError::eFrameInvalid), Texts{L"Snap failure 12110 #failure = 1"});
  EXPECT_EQ(scripted.OnCamera(), 90'300'000);
  EXPECT_EQ(Lines(L"ChangeBandwidth( -0.1 )"),
            Texts{L"ChangeBandwidth absolute : 100300000 -> 90300000 (Min=45700000; Max=124700000)"});
}

TEST_F(Rate, AClaimedRangeIsBoundedBeforeItIsComputedWith) {
  Library().SetRange(kRateFeature, kCameraMin, kHighestClaim);
  EXPECT_EQ(Initialize().at(2), L"StreamBytesPerSecond by profile = 45000000 , 1000000000000000");
  output.Clear();
  Library().SetRange(kRateFeature, kLowestClaim, kCameraMin);
  EXPECT_EQ(Initialize().at(2), L"StreamBytesPerSecond by profile = -1000000000000000 , 10000000");
}

TEST_F(Rate, AClaimedRateIsBoundedBeforeItIsComputedWith) {
  Initialize();
  scripted.SetOnCamera(kLowestClaim);
  AfterSnap(BError::eTimeout);
  EXPECT_EQ(Lines(L"ChangeBandwidth( -0.1 )"),
            Texts{L"ChangeBandwidth absolute : -1000000000000000 -> 45000000 (Min=45000000; Max=125000000)"});
  scripted.SetOnCamera(kHighestClaim);
  AfterSnap(BError::eTimeout);
  EXPECT_EQ(Lines(L"ChangeBandwidth( -0.1 )"),
            Texts{L"ChangeBandwidth absolute : 1000000000000000 -> 125000000 (Min=45000000; Max=125000000)"});
}

TEST_F(Rate, AClaimedRateIsBoundedBeforeItIsLearnedFrom) {
  Initialize();
  scripted.SetOnCamera(kHighestClaim);
  EXPECT_EQ(AfterSnap(BError::eSuccess),
            Texts{L"Successful snap, failure counter = 0, bandwidth.av = 1000000000000000 #snaps = 1"});
  EXPECT_EQ(scripted.OnCamera(), kCameraMax);
}

TEST_F(Rate, NeverLeavesItsLimits) {
  Initialize();
  scripted.SetOnCamera(200'000'000);
  AfterSnap(BError::eTimeout);
  EXPECT_EQ(scripted.OnCamera(), kCameraMax);
  scripted.SetOnCamera(1'000'000);
  AfterSnap(BError::eTimeout);
  EXPECT_EQ(scripted.OnCamera(), kRateFloor);
}

}  // namespace
