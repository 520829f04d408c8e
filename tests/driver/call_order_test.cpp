// call_order_test.cpp
// The whole lists of library calls: opening, a snap, closing, and the factory's failures.
#include <gmock/gmock.h>

#include "VimbaC.h"
#include "support/driver_module.h"
#include "support/host_output.h"
#include "support/profile_file.h"
#include "support/simulated_cameras.h"

namespace {

using Calls = std::vector<std::string>;
using testing::ElementsAreArray;

Calls operator+(Calls head, const Calls& tail) {
  head.insert(head.end(), tail.begin(), tail.end());
  return head;
}

const Calls kSystemStart{
    "VmbStartup()",
    "VmbFeatureBoolGet(system, \"GeVTLIsPresent\")",
    "VmbFeatureCommandRun(system, \"GeVDiscoveryAllOnce\")",
    "VmbFeatureEnumGet(system, \"GeVDiscoveryStatus\")",
    "VmbFeatureEnumAsInt(system, \"GeVDiscoveryStatus\", \"Off\")",
    "VmbFeatureCommandRun(system, \"GeVDiscoveryAllAuto\")",
    "VmbFeatureEnumGet(system, \"GeVDiscoveryStatus\")",
    "VmbFeatureInvalidationRegister(system, \"DiscoveryCameraEvent\")",
};

const Calls kOpening{
    "VmbVersionQuery()",
    "VmbCameraOpen(\"DEV_000F31000001\", 1)",
    "VmbCameraInfoQuery(\"DEV_000F31000001\")",
    "VmbFeatureIntSet(\"GevHeartbeatTimeout\", 5000)",
};

const Calls kMonoFormat{
    "VmbFeatureEnumGet(\"SensorType\")",
    "VmbFeatureEnumSet(\"PixelFormat\", \"Mono8\")",
    "VmbFeatureEnumGet(\"PixelFormat\")",
};

const Calls kColourFormat{
    "VmbFeatureEnumGet(\"SensorType\")",
    "VmbFeatureEnumSet(\"PixelFormat\", \"BayerRG8\")",
    "VmbFeatureEnumSet(\"PixelFormat\", \"YUV422Packed\")",
    "VmbFeatureEnumSet(\"PixelFormat\", \"BayerRG8\")",
    "VmbFeatureEnumGet(\"PixelFormat\")",
};

const Calls kGeometry{
    "VmbFeatureIntSet(\"BinningHorizontal\", 1)",
    "VmbFeatureIntSet(\"BinningVertical\", 1)",
    "VmbFeatureIntRangeQuery(\"StreamBytesPerSecond\")",
    "VmbFeatureIntSet(\"StreamBytesPerSecond\", 97700000)",
    "VmbFeatureCommandRun(\"GVSPAdjustPacketSize\")",
    "VmbFeatureCommandIsDone(\"GVSPAdjustPacketSize\")",
    "VmbFeatureIntGet(\"GVSPPacketSize\")",
    "VmbFeatureIntGet(\"GVSPPacketSize\")",
    "VmbFeatureIntRangeQuery(\"Width\")",
    "VmbFeatureIntRangeQuery(\"Height\")",
    "VmbFeatureIntSet(\"OffsetX\", 0)",
    "VmbFeatureIntSet(\"OffsetY\", 0)",
    "VmbFeatureIntSet(\"Width\", 64)",
    "VmbFeatureIntSet(\"Height\", 48)",
    "VmbFeatureIntSet(\"OffsetX\", 0)",
    "VmbFeatureIntSet(\"OffsetY\", 0)",
    "VmbFeatureIntGet(\"PayloadSize\")",
};

Calls OneCallAFrame(const std::string& function) {
  Calls calls;
  for (int frame = 0; frame < 10; ++frame) calls.push_back(function + "(frame " + std::to_string(frame) + ")");
  return calls;
}

const Calls kTriggerOn{
    "VmbFeatureEnumSet(\"TriggerMode\", \"On\")",
    "VmbFeatureEnumSet(\"TriggerSelector\", \"FrameStart\")",
};
const Calls kSoftwareTrigger = kTriggerOn + Calls{"VmbFeatureEnumSet(\"TriggerSource\", \"Software\")"};

const Calls kCapture = kTriggerOn + Calls{"VmbFeatureEnumSet(\"TriggerSource\", \"Line2\")"} + kSoftwareTrigger +
                       Calls{
                           "VmbFeatureEnumSet(\"ExposureAuto\", \"Off\")",
                           "VmbCaptureStart()",
                           "VmbFeatureEnumSet(\"AcquisitionMode\", \"Continuous\")",
                       } +
                       kSoftwareTrigger + OneCallAFrame("VmbCaptureFrameQueue");

const Calls kGainAndExposure{
    "VmbFeatureEnumSet(\"GainAuto\", \"Off\")",
    "VmbFeatureFloatRangeQuery(\"Gain\")",
    "VmbFeatureFloatGet(\"Gain\")",
    "VmbFeatureEnumSet(\"ExposureMode\", \"Timed\")",
    "VmbFeatureFloatRangeQuery(\"ExposureTimeAbs\")",
    "VmbFeatureFloatGet(\"ExposureTimeAbs\")",
};

Calls BalanceControl(const std::string& colour) {
  return {
      "VmbFeatureEnumSet(\"BalanceWhiteAuto\", \"Off\")",
      "VmbFeatureEnumSet(\"BalanceRatioSelector\", \"" + colour + "\")",
      "VmbFeatureFloatRangeQuery(\"BalanceRatioAbs\")",
      "VmbFeatureFloatGet(\"BalanceRatioAbs\")",
  };
}

const Calls kTemperatures{
    "VmbFeatureEnumSet(\"DeviceTemperatureSelector\", \"Sensor\")",
    "VmbFeatureFloatGet(\"DeviceTemperature\")",
    "VmbFeatureEnumSet(\"DeviceTemperatureSelector\", \"Main\")",
    "VmbFeatureFloatGet(\"DeviceTemperature\")",
};

const Calls kPolarity{"VmbFeatureEnumSet(\"TriggerActivation\", \"RisingEdge\")"};

const Calls kClosing{
    "VmbFeatureCommandRun(\"AcquisitionStop\")",
    "VmbFeatureCommandRun(\"AcquisitionStop\")",
    "VmbCaptureEnd()",
    "VmbCaptureQueueFlush()",
    "VmbFrameRevokeAll()",
    "VmbCameraClose()",
};

struct CallOrder : testing::Test {
  HostOutput output;
  ProfileFile profile;

  CallOrder() { profile.Key("Camera_Identifier", SimulatedCamera::kId); }
};

TEST_F(CallOrder, OpeningAMonochromeCameraMakesTheseCalls) {
  SimulatedCameras cameras{SimulatedCamera().With("packetSize", {{"adjust_ms", 0}})};
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_THAT(cameras.Calls(),
              ElementsAreArray(kSystemStart + kOpening + kMonoFormat + kGeometry + OneCallAFrame("VmbFrameAnnounce") +
                               kCapture + kGainAndExposure + kTemperatures + kPolarity));
}

TEST_F(CallOrder, OpeningAColourCameraProvesTheColourFormatAndReadsBothBalances) {
  SimulatedCameras cameras{SimulatedCamera().Colour("RGGB").With("packetSize", {{"adjust_ms", 0}})};
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV");
  OpenDevice device(profile.Open());
  ASSERT_TRUE(device);
  EXPECT_THAT(cameras.Calls(),
              ElementsAreArray(kSystemStart + kOpening + kColourFormat + kGeometry + OneCallAFrame("VmbFrameAnnounce") +
                               kCapture + kGainAndExposure + BalanceControl("Red") + BalanceControl("Blue") +
                               kTemperatures + kPolarity));
}

TEST_F(CallOrder, ReleasingTheOnlyDeviceClosesTheCameraAndThenTheSystem) {
  SimulatedCameras cameras{SimulatedCamera()};
  OpenDevice device(profile.Open());
  cameras.ClearCalls();
  ASSERT_TRUE(device.Release());
  EXPECT_THAT(cameras.Calls(), ElementsAreArray(kClosing + Calls{"VmbShutdown()"}));
}

TEST_F(CallOrder, AnObjectWhoseCameraNeverOpenedOnlyStopsAnAcquisitionOnANullHandle) {
  SimulatedCameras cameras{SimulatedCamera()};
  profile.Key("API", "Other");
  OpenDevice device(profile.Open());
  EXPECT_FALSE(device);
  EXPECT_THAT(cameras.Calls(), ElementsAreArray(kSystemStart + Calls{"VmbFeatureCommandRun(null, \"AcquisitionStop\")",
                                                                     "VmbShutdown()"}));
}

TEST_F(CallOrder, ASingleFrameSnapMakesTheseCalls) {
  SimulatedCameras cameras{SimulatedCamera()};
  OpenDevice device(profile.Open());
  cameras.ClearCalls();
  device->StartSnap(true);
  ASSERT_EQ(device->Snap(nullptr, 2000), BError());
  device->StopSnap();
  Calls calls = cameras.Calls();
  // The worker hands the frame back at its own pace.
  EXPECT_EQ(std::erase(calls, "VmbCaptureFrameQueue(frame 0)"), 1U);
  EXPECT_THAT(calls, ElementsAreArray({
                         "VmbFeatureIntGet(\"StreamBytesPerSecond\")",
                         "VmbFeatureEnumSet(\"AcquisitionMode\", \"SingleFrame\")",
                         "VmbFeatureCommandRun(\"GevTimestampControlLatch\")",
                         "VmbFeatureIntGet(\"GevTimestampValue\")",
                         "VmbFeatureCommandRun(\"AcquisitionStart\")",
                         "VmbFeatureCommandRun(\"TriggerSoftware\")",
                         "VmbFeatureCommandIsDone(\"TriggerSoftware\")",
                         "VmbFeatureCommandRun(\"AcquisitionStop\")",
                         "VmbFeatureIntGet(\"StreamBytesPerSecond\")",
                         "VmbFeatureIntGet(\"StreamBytesPerSecond\")",
                         "VmbFeatureIntGet(\"StreamBytesPerSecond\")",
                         "VmbFeatureIntSet(\"StreamBytesPerSecond\", 99700000)",
                     }));
}

TEST_F(CallOrder, WithoutTheTransportLayerTheSystemIsShutDownAgain) {
  SimulatedCameras cameras(std::vector{SimulatedCamera()}, {{"geVTLIsPresent", false}});
  OpenDevice device(profile.Open());
  EXPECT_FALSE(device);
  EXPECT_THAT(cameras.Calls(),
              ElementsAreArray({"VmbStartup()", "VmbFeatureBoolGet(system, \"GeVTLIsPresent\")", "VmbShutdown()"}));
}

TEST_F(CallOrder, ListingWithoutALiveDeviceStartsAndShutsDownTheSystem) {
  SimulatedCameras cameras{SimulatedCamera()};
  DList<WString> list;
  TheModule().list(list);
  EXPECT_THAT(cameras.Calls(), ElementsAreArray(kSystemStart + Calls{"VmbCamerasList(128)", "VmbShutdown()"}));
}

}  // namespace
