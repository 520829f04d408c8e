// bandwidth_test.cpp
// The stream rate: range by camera and profile, partners, and what snaps do to it.
#include "VimbaC.h"
#include "driver/opened_camera.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr char kRate[] = "StreamBytesPerSecond";

struct Bandwidth : OpenedCamera {
  static SimulatedCamera WithRates(double min, double max, int number = 1) {
    return SimulatedCamera(number).Range(kRate, min, max);
  }
  Texts RangeLines() const {
    Texts lines = LinesOf(output.Diagnostics(L"Initialize by camera").at(0));
    std::erase_if(lines, [](const std::wstring& line) { return line.find(L"StreamBytesPerSecond") == line.npos; });
    return lines;
  }
  void Snap(bool succeeds) {
    if (!succeeds) cameras->FailCall("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorOther, 1);
    Device().StartSnap(true);
    EXPECT_EQ(Device().Snap(nullptr, succeeds ? 5000 : 10).IsError(), !succeeds);
    Device().StopSnap();
    cameras->ClearFaults();
  }
};

TEST_F(Bandwidth, TheRangeHasAFloorAndTheStartLiesTwoThirdsUp) {
  ASSERT_TRUE(Open(WithRates(10'000'000, 125'000'000)));
  EXPECT_THAT(RangeLines(), ElementsAre(L"StreamBytesPerSecond range = 45000000 , 125000000",
                                        L"StreamBytesPerSecond by profile = 45000000 , 125000000",
                                        L"Set StreamBytesPerSecond = 98300000"));
  EXPECT_EQ(Device().GetBandwidth(), 98'300'000);
}

TEST_F(Bandwidth, ASlowCameraKeepsItsOwnMinimum) {
  ASSERT_TRUE(Open(WithRates(1'000'000, 45'000'000)));
  EXPECT_THAT(RangeLines(), Contains(L"StreamBytesPerSecond range = 1000000 , 45000000"));
}

TEST_F(Bandwidth, TheProfileNarrowsTheRange) {
  profile.Key("MIN_BYTEPERSECOND", "50000000").Key("BYTEPERSECOND", "80000000");
  ASSERT_TRUE(Open(WithRates(10'000'000, 125'000'000)));
  EXPECT_THAT(RangeLines(), Contains(L"StreamBytesPerSecond by profile = 50000000 , 80000000"));
  EXPECT_EQ(Device().GetBandwidth(), 70'000'000);
}

TEST_F(Bandwidth, TheProfileCannotWidenTheRange) {
  profile.Key("MIN_BYTEPERSECOND", "5").Key("BYTEPERSECOND", "2000000000");
  ASSERT_TRUE(Open(WithRates(10'000'000, 125'000'000)));
  EXPECT_THAT(RangeLines(), Contains(L"StreamBytesPerSecond by profile = 45000000 , 125000000"));
}

TEST_F(Bandwidth, WhereLimitsCrossTheLowerOneWins) {
  profile.Key("BYTEPERSECOND", "20000000");
  ASSERT_TRUE(Open(WithRates(10'000'000, 125'000'000)));
  EXPECT_EQ(Device().GetBandwidth(), 45'000'000);
  Snap(true);
  EXPECT_EQ(Device().GetBandwidth(), 45'000'000);
  Snap(false);
  EXPECT_EQ(Device().GetBandwidth(), 45'000'000);
}

TEST_F(Bandwidth, AStartRateThatTheCameraRefusesIsLoggedInOneLine) {
  cameras.emplace(WithRates(10'000'000, 125'000'000));
  cameras->FailCall("VmbFeatureIntSet", kRate, VmbErrorOther);
  ASSERT_TRUE(Reopen());
  const Texts lines = LinesOf(output.Diagnostics(L"Initialize by camera").at(0));
  const auto failed = std::find(lines.begin(), lines.end(), L"Set StreamBytesPerSecond = 98300000 failed");
  ASSERT_NE(failed, lines.end());
  EXPECT_THAT(*(failed + 1), testing::StartsWith(L"GVSPPacketSize = "));
}

TEST_F(Bandwidth, AGoodSnapRaisesTheRateByTwoPercent) {
  ASSERT_TRUE(Open(WithRates(10'000'000, 125'000'000)));
  Forget();
  Snap(true);
  EXPECT_EQ(Device().GetBandwidth(), 100'300'000);
  EXPECT_THAT(Message(L"ChangeBandwidth( 0.02 )"),
              ElementsAre(L"ChangeBandwidth( 0.02 )",
                          L"ChangeBandwidth absolute : 98300000 -> 100300000 (Min=45700000; Max=124700000)", L"End"));
  EXPECT_THAT(output.WithCaption(nullptr),
              ElementsAre(L"Camera(Vimba_Manta-G-507B_50-0503340001): SetBandwidth() : 98300000 --> 100300000"));
}

TEST_F(Bandwidth, AFailedSnapLowersTheRateByTenPercent) {
  ASSERT_TRUE(Open(WithRates(10'000'000, 125'000'000)));
  Forget();
  Snap(false);
  EXPECT_EQ(Device().GetBandwidth(), 88'500'000);
  EXPECT_THAT(Message(L"ChangeBandwidth( -0.1 )"),
              ElementsAre(L"ChangeBandwidth( -0.1 )",
                          L"ChangeBandwidth absolute : 98300000 -> 88500000 (Min=45000000; Max=125000000)", L"End"));
  EXPECT_THAT(Message(L"StopSnap!"), Contains(L"Snap failure 12106 #failure = 1"));
}

TEST_F(Bandwidth, TheFourthFailureInARowForgetsWhatWasLearned) {
  ASSERT_TRUE(Open(WithRates(10'000'000, 125'000'000)));
  Snap(true);
  for (int i = 0; i < 3; ++i) Snap(false);
  EXPECT_THAT(LinesOf(output.Diagnostics(L"StopSnap!").back()),
              Not(Contains(L"#failure > 3 --> reset bandwidth control parameters")));
  const std::int64_t before = Device().GetBandwidth();
  Forget();
  Snap(false);
  EXPECT_THAT(Message(L"StopSnap!"),
              ElementsAre(L"StopSnap!", L"Start", L"VmbFeatureCommandRun AcquisitionStop returns 0",
                          L"Received 1 Frames [18446744073709551615]", L"Snap failure 12106 #failure = 4",
                          L"#failure > 3 --> reset bandwidth control parameters", L"End"));
  EXPECT_LT(Device().GetBandwidth(), before);
  EXPECT_THAT(Message(L"ChangeBandwidth( -0.1 )").at(1), testing::EndsWith(L"(Min=45000000; Max=125000000)"));
  Snap(true);
  EXPECT_THAT(LinesOf(output.Diagnostics(L"StopSnap").back()), Contains(testing::EndsWith(L"#snaps = 1")));
}

TEST_F(Bandwidth, AnUnreadableRateEndsTheChangeThere) {
  ASSERT_TRUE(Open());
  Device().StartSnap(true);
  EXPECT_EQ(Device().Snap(nullptr, 5000), BError());
  cameras->FailCall("VmbFeatureIntGet", kRate, VmbErrorOther);
  Forget();
  Device().StopSnap();
  EXPECT_THAT(Message(L"ChangeBandwidth( 0.02 )"), ElementsAre(L"ChangeBandwidth( 0.02 )", L"End"));
  EXPECT_THAT(Message(L"StopSnap"), Contains(L"Successful snap, failure counter = 0, bandwidth.av = 0 #snaps = 1"));
}

TEST_F(Bandwidth, TheRateInForceIsNotSetAgain) {
  ASSERT_TRUE(Open());
  const std::int64_t rate = Device().GetBandwidth();
  Forget();
  EXPECT_TRUE(Device().SetBandwidth(static_cast<std::int32_t>(rate)));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureIntSet"), IsEmpty());
  EXPECT_THAT(output.Messages(), IsEmpty());
}

struct Partners : Bandwidth {
  ProfileFile other_profile;
  std::optional<OpenDevice> other;

  bool OpenBoth() {
    cameras.emplace(std::vector{WithRates(10'000'000, 125'000'000, 1), WithRates(10'000'000, 125'000'000, 2)});
    other_profile.Key("Camera_Identifier", "DEV_000F31000002");
    other.emplace(other_profile.Open());
    return Reopen() && *other;
  }
  ~Partners() override { other.reset(); }
};

TEST_F(Partners, AStartingSnapTakesTheLowestRate) {
  ASSERT_TRUE(OpenBoth());
  ASSERT_TRUE(Device().AddBandwidthPartner(other->Get()));
  ASSERT_TRUE((*other)->SetBandwidth(30'000'000));
  Forget();
  Device().StartSnap(true);
  EXPECT_EQ(Device().GetBandwidth(), 30'000'000);
  EXPECT_THAT(Message(L"StartSnap( one_shot = True )"), Contains(L"SynchBandwidth : 98300000bps -->30000000bps"));
  Device().StopSnap();
}

TEST_F(Partners, AFasterOrUnreadablePartnerChangesNothing) {
  ASSERT_TRUE(OpenBoth());
  ASSERT_TRUE(Device().AddBandwidthPartner(other->Get()));
  ASSERT_TRUE((*other)->SetBandwidth(110'000'000));
  Forget();
  Device().StartSnap(true);
  Device().StopSnap();
  cameras->Fault({{"call", "VmbFeatureIntGet"},
                  {"feature", kRate},
                  {"camera", "DEV_000F31000002"},
                  {"error", VmbErrorOther},
                  {"count", 0}});
  Device().StartSnap(true);
  Device().StopSnap();
  for (const std::wstring& message : output.Diagnostics(L"StartSnap( one_shot = True )")) {
    EXPECT_EQ(message.find(L"SynchBandwidth"), std::wstring::npos);
  }
}

TEST_F(Partners, APartnerIsAddedAndRemovedOnce) {
  ASSERT_TRUE(OpenBoth());
  EXPECT_TRUE(Device().AddBandwidthPartner(other->Get()));
  EXPECT_FALSE(Device().AddBandwidthPartner(other->Get()));
  EXPECT_TRUE(Device().RemoveBandwidthPartner(other->Get()));
  EXPECT_FALSE(Device().RemoveBandwidthPartner(other->Get()));
}

TEST_F(Partners, AReleasedPartnerIsForgotten) {
  ASSERT_TRUE(OpenBoth());
  ASSERT_TRUE(Device().AddBandwidthPartner(other->Get()));
  other.reset();
  Forget();
  Device().StartSnap(true);
  EXPECT_EQ(cameras->CallsOf("VmbFeatureIntGet").front(), "VmbFeatureIntGet(\"StreamBytesPerSecond\")");
  Device().StopSnap();
}

struct PacketSize : OpenedCamera {};

TEST_F(PacketSize, ANegotiated9000IsLoggedAndLowered) {
  ASSERT_TRUE(Open(SimulatedCamera().With("packetSize", {{"negotiated", 9000}})));
  const Texts lines = LinesOf(output.Diagnostics(L"Initialize by camera").at(0));
  EXPECT_THAT(lines, Contains(L"GVSPAdjustPacketSize --> 9000"));
  EXPECT_THAT(lines, Contains(L"GVSPPacketSize = 8228"));
}

TEST_F(PacketSize, ACameraWithoutNegotiationSkipsTheWait) {
  ASSERT_TRUE(Open(SimulatedCamera().Missing("GVSPAdjustPacketSize").Feature("GVSPPacketSize", 1500)));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureCommandIsDone"), IsEmpty());
  EXPECT_THAT(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)), Contains(L"GVSPPacketSize = 1500"));
}

TEST_F(PacketSize, ASizeThatCannotBeReadIsOnlyLogged) {
  ASSERT_TRUE(Open(SimulatedCamera().Missing("GVSPPacketSize")));
  EXPECT_THAT(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)),
              Contains(L"VmbFeatureIntGet GVSPPacketSize failed"));
}

}  // namespace
