// forgiven_failures_test.cpp
// Calls whose result does not matter: a camera that refuses them is opened and serves all the same.
#include "VimbaC.h"
#include "driver/opened_camera.h"

namespace {

struct Refusal {
  const char* name;
  const char* call;
  const char* feature;
  const char* value;  // of the call that is refused, or null for all
};

struct ForgivenFailures : OpenedCamera, testing::WithParamInterface<Refusal> {};

TEST_P(ForgivenFailures, LeaveACameraThatServes) {
  const Refusal& refusal = GetParam();
  cameras.emplace(SimulatedCamera());
  nlohmann::json fault{{"call", refusal.call}, {"feature", refusal.feature}, {"error", VmbErrorOther}, {"count", 0}};
  if (refusal.value) fault["value"] = refusal.value;
  cameras->Fault(fault);
  ASSERT_TRUE(Reopen());
  EXPECT_EQ(Failures(), Texts{});
  EXPECT_NE(Device().Trigger(), nullptr);
  Device().StartSnap(true);
  EXPECT_EQ(Device().Snap(nullptr, 5000), BError());
  Device().StopSnap();
}

constexpr Refusal kRefusals[] = {
    {"Heartbeat", "VmbFeatureIntSet", "GevHeartbeatTimeout", nullptr},
    {"RateRange", "VmbFeatureIntRangeQuery", "StreamBytesPerSecond", nullptr},
    {"Rate", "VmbFeatureIntSet", "StreamBytesPerSecond", nullptr},
    {"PacketSize", "VmbFeatureIntGet", "GVSPPacketSize", nullptr},
    {"PacketNegotiation", "VmbFeatureCommandRun", "GVSPAdjustPacketSize", nullptr},
    {"AutomaticExposure", "VmbFeatureEnumSet", "ExposureAuto", nullptr},
    {"AutomaticGain", "VmbFeatureEnumSet", "GainAuto", nullptr},
    {"ExposureMode", "VmbFeatureEnumSet", "ExposureMode", nullptr},
    {"GainRange", "VmbFeatureFloatRangeQuery", "Gain", nullptr},
    {"ExposureRange", "VmbFeatureFloatRangeQuery", "ExposureTimeAbs", nullptr},
    {"Temperature", "VmbFeatureEnumSet", "DeviceTemperatureSelector", nullptr},
    {"TriggerEdge", "VmbFeatureEnumSet", "TriggerActivation", nullptr},
};

INSTANTIATE_TEST_SUITE_P(EveryOne, ForgivenFailures, testing::ValuesIn(kRefusals),
                         [](const auto& refusal) { return refusal.param.name; });

struct ForgivenColourFailures : OpenedCamera {};

TEST_F(ForgivenColourFailures, TheWayBackToTheRawFormat) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV");
  cameras.emplace(SimulatedCamera().Colour());
  cameras->FailCall("VmbFeatureEnumSet", "PixelFormat", VmbErrorOther, 3);
  ASSERT_TRUE(Reopen());
  EXPECT_EQ(Failures(), Texts{});
  EXPECT_THAT(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)),
              testing::Contains(L"PixelFormat = YUV422Packed"));
}

TEST_F(ForgivenColourFailures, WithoutARateRangeTheDriversOwnIsTaken) {
  cameras.emplace(SimulatedCamera());
  cameras->FailCall("VmbFeatureIntRangeQuery", "StreamBytesPerSecond", VmbErrorOther);
  ASSERT_TRUE(Reopen());
  const Texts lines = LinesOf(output.Diagnostics(L"Initialize by camera").at(0));
  EXPECT_THAT(lines, testing::Contains(L"StreamBytesPerSecond range = 45000000 , 4294967295"));
  EXPECT_THAT(lines, testing::Contains(L"Set StreamBytesPerSecond = 2878300000 failed"));
}

}  // namespace
