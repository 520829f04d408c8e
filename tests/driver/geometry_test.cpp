// geometry_test.cpp
// Pixel formats, binning and area of interest by the profile, and the colour-mode switch.
#include "VimbaC.h"
#include "bpoint.h"
#include "driver/opened_camera.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

struct Geometry : OpenedCamera {
  std::vector<std::string> FormatsSet() const {
    std::vector<std::string> calls = cameras->CallsOf("VmbFeatureEnumSet");
    std::erase_if(calls, [](const std::string& call) { return call.find("\"PixelFormat\"") == std::string::npos; });
    return calls;
  }
  BSize Size() {
    bool rotated = false;
    return Device().ImageSize(rotated);
  }
};

constexpr char kSetBayer[] = "VmbFeatureEnumSet(\"PixelFormat\", \"BayerRG8\")";
constexpr char kSetYuv[] = "VmbFeatureEnumSet(\"PixelFormat\", \"YUV422Packed\")";

TEST_F(Geometry, AMonochromeCameraIsSetToMono8WhateverTheColourKeysSay) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV").Key("YUVSTRETCH", "1");
  ASSERT_TRUE(Open());
  EXPECT_FALSE(Device().IsColor());
  EXPECT_THAT(FormatsSet(), ElementsAre("VmbFeatureEnumSet(\"PixelFormat\", \"Mono8\")"));
}

TEST_F(Geometry, AColourCameraEndsAtItsRawFormat) {
  profile.Key("Bayertype", "rggb").Key("COLORCODEcolor", "rgb");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  EXPECT_TRUE(Device().IsColor());
  EXPECT_THAT(FormatsSet(), ElementsAre(kSetBayer, "VmbFeatureEnumSet(\"PixelFormat\", \"RGB8Packed\")", kSetBayer));
  EXPECT_THAT(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)), Contains(L"PixelFormat = BayerRG8"));
}

TEST_F(Geometry, ACameraThatDoesNotReportItsSensorTypeIsMonochrome) {
  ASSERT_TRUE(Open(SimulatedCamera().Colour().Missing("SensorType")));
  EXPECT_FALSE(Device().IsColor());
}

TEST_F(Geometry, AFormatThatCannotBeReadBackIsOnlyLogged) {
  cameras.emplace(SimulatedCamera());
  cameras->FailCall("VmbFeatureEnumGet", "PixelFormat", VmbErrorOther);
  ASSERT_TRUE(Reopen());
  EXPECT_THAT(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)),
              Contains(L"VmbFeatureEnumGet PixelFormat failed"));
}

struct BayerRow {
  const char* profile;
  const char* sensor;
  const char* format;
};

struct BayerOrders : OpenedCamera, testing::WithParamInterface<BayerRow> {};

TEST_P(BayerOrders, NameTheRawFormat) {
  if (*GetParam().profile) profile.Key("Bayertype", GetParam().profile);
  ASSERT_TRUE(Open(SimulatedCamera().Colour(GetParam().sensor)));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureEnumSet"),
              Contains(std::string("VmbFeatureEnumSet(\"PixelFormat\", \"") + GetParam().format + "\")"));
}

INSTANTIATE_TEST_SUITE_P(EveryOrder, BayerOrders,
                         testing::Values(BayerRow{"BGGR", "BGGR", "BayerBG8"}, BayerRow{"RGGB", "RGGB", "BayerRG8"},
                                         BayerRow{"gbrg", "GBRG", "BayerGB8"}, BayerRow{"GRBG", "GRBG", "BayerGR8"},
                                         BayerRow{"nonsense", "GRBG", "BayerGR8"}, BayerRow{"", "GRBG", "BayerGR8"}));

TEST_F(Geometry, BinningHalvesThePicture) {
  profile.Key("BINNING", "2");
  ASSERT_TRUE(Open());
  EXPECT_EQ(Size(), (BSize{32, 24}));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureIntSet"), Contains("VmbFeatureIntSet(\"BinningVertical\", 2)"));
}

TEST_F(Geometry, ACameraWithoutBinningPassesWithBothNotices) {
  profile.Key("BINNING", "2");
  ASSERT_TRUE(Open(SimulatedCamera().Missing("BinningHorizontal").Missing("BinningVertical")));
  EXPECT_THAT(Failures(), ElementsAre(L"BinningX failed", L"BinningY failed"));
}

TEST_F(Geometry, ABinningThatIsNoNumberIsRefusedByTheCamera) {
  profile.Key("BINNING", "twice");
  EXPECT_FALSE(Open());
  EXPECT_THAT(Failures(), ElementsAre(L"BinningX failed"));
}

struct Aoi {
  const char* x;
  const char* y;
  const char* width;
  const char* height;
  BSize size;
  BPoint offset;
};

struct AreaOfInterest : OpenedCamera, testing::WithParamInterface<Aoi> {};

TEST_P(AreaOfInterest, IsFittedToTheChip) {
  const Aoi& aoi = GetParam();
  profile.Key("AOIX", aoi.x).Key("AOIY", aoi.y).Key("AOIWIDTH", aoi.width).Key("AOIHEIGHT", aoi.height);
  ASSERT_TRUE(Open());
  bool rotated = false;
  EXPECT_EQ(Device().ImageSize(rotated), aoi.size);
  const std::vector<std::string> sets = cameras->CallsOf("VmbFeatureIntSet");
  EXPECT_THAT(sets, Contains("VmbFeatureIntSet(\"OffsetX\", " + std::to_string(aoi.offset.x) + ")"));
  EXPECT_EQ(sets.back(), "VmbFeatureIntSet(\"OffsetY\", " + std::to_string(aoi.offset.y) + ")");
}

INSTANTIATE_TEST_SUITE_P(
    Values, AreaOfInterest,
    testing::Values(Aoi{"8", "4", "32", "16", {32, 16}, {8, 4}}, Aoi{"0", "0", "0", "-5", {64, 48}, {0, 0}},
                    Aoi{"0", "0", "64", "48", {64, 48}, {0, 0}}, Aoi{"8", "8", "1000", "1000", {64, 48}, {0, 0}},
                    Aoi{"60", "40", "32", "16", {32, 16}, {32, 32}}, Aoi{"-3", "-3", "32", "16", {32, 16}, {0, 0}}));

TEST_F(Geometry, ASideThatTheCameraDoesNotReportIsRefusedBeforeAnythingIsSet) {
  for (const char* side : {"Width", "Height"}) {
    cameras.emplace(SimulatedCamera());
    cameras->FailCall("VmbFeatureIntRangeQuery", side, VmbErrorOther);
    EXPECT_FALSE(Reopen());
    EXPECT_EQ(Failures(), Texts{L"ChipRect failed"});
    EXPECT_THAT(cameras->CallsOf("VmbFeatureIntSet"), Not(Contains("VmbFeatureIntSet(\"OffsetX\", 0)")));
    output.Clear();
  }
}

TEST_F(Geometry, SwitchingColourOnTwiceSetsTheFormatOnce) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  Forget();
  EXPECT_TRUE(Device().SetColorMode(true));
  EXPECT_TRUE(Device().SetColorMode(true));
  EXPECT_THAT(FormatsSet(), ElementsAre(kSetYuv));
  EXPECT_TRUE(Device().SetColorMode(false));
  EXPECT_THAT(FormatsSet(), ElementsAre(kSetYuv, kSetBayer));
}

TEST_F(Geometry, TheSwitchRestoresTheBalanceOfTheMode) {
  profile.Key("Bayertype", "RGGB").Key("WBCOLORBLUE", "120").Key("WBCOLORRED", "130");
  profile.Key("WBMONOBLUE", "110").Key("WBMONORED", "100");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  Forget();
  EXPECT_TRUE(Device().SetColorMode(false));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureFloatSet"), ElementsAre("VmbFeatureFloatSet(\"BalanceRatioAbs\", 1.1)",
                                                                  "VmbFeatureFloatSet(\"BalanceRatioAbs\", 1)"));
  EXPECT_EQ(Device().ColorBlueBalance(), 120);
  EXPECT_EQ(Device().ColorRedBalance(), 130);
  cameras->ClearCalls();
  EXPECT_TRUE(Device().SetColorMode(true));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureFloatSet"), ElementsAre("VmbFeatureFloatSet(\"BalanceRatioAbs\", 1.2)",
                                                                  "VmbFeatureFloatSet(\"BalanceRatioAbs\", 1.3)"));
}

TEST_F(Geometry, AFailedSwitchIsShownAlikeInBothDirections) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  Forget();
  cameras->FailCall("VmbFeatureEnumSet", "PixelFormat", VmbErrorInvalidAccess, 1);
  EXPECT_FALSE(Device().SetColorMode(true));
  EXPECT_THAT(Failures(), ElementsAre(L"ColorCodeColor failed"));
  EXPECT_TRUE(Device().SetColorMode(true));
  cameras->FailCall("VmbFeatureEnumSet", "PixelFormat", VmbErrorInvalidAccess, 1);
  EXPECT_FALSE(Device().SetColorMode(false));
  EXPECT_THAT(Failures(), ElementsAre(L"ColorCodeColor failed", L"ColorCodeColor failed"));
}

TEST_F(Geometry, TheSwitchDoesNothingOnAMonochromeCamera) {
  ASSERT_TRUE(Open());
  Forget();
  EXPECT_TRUE(Device().SetColorMode(true));
  EXPECT_THAT(cameras->Calls(), IsEmpty());
}

TEST_F(Geometry, TheSwitchWorksAfterAContinuousStartThatFailed) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  cameras->FailCall("VmbFeatureCommandRun", "AcquisitionStart", VmbErrorOther, 1);
  EXPECT_THROW(Device().StartSnap(false), BError);
  Forget();
  EXPECT_TRUE(Device().SetColorMode(true));
  EXPECT_THAT(FormatsSet(), ElementsAre(kSetYuv));
}

TEST_F(Geometry, TheSwitchDoesNothingWhileAContinuousAcquisitionRuns) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  Device().StartSnap(false);
  Forget();
  EXPECT_TRUE(Device().SetColorMode(true));
  EXPECT_THAT(cameras->Calls(), IsEmpty());
  Device().StopSnap();
  EXPECT_TRUE(Device().SetColorMode(true));
  EXPECT_THAT(FormatsSet(), ElementsAre(kSetYuv));
}

}  // namespace
