// module_test.cpp
// The module with a camera that has everything it asks for, over the wire.
#include <optional>
#include <string>

#include "bridge/camera_host.h"
#include "bridge/picture_check.h"
#include "bridge/wire_device.h"

namespace {

using testing::Contains;
using testing::DoubleNear;
using testing::HasSubstr;

constexpr BSize kArea{512, 256};
constexpr BPoint kCorner{64, 32};

struct Module : WireDevice {
  Module() { TakeArea(kCorner.x, kCorner.y, kArea.width, kArea.height); }
  std::vector<std::wstring> InitialLines() { return LinesOf(output.Diagnostics(L"Initialize by camera").at(0)); }
};

TEST_F(Module, OpensACameraByItsIdItsSerialNumberOrItsAddress) {
  ASSERT_TRUE(Open());
  EXPECT_STREQ(Device().Name(), L"Vimba_Aravis Wire Camera_0001");
  profile.Without("Camera_Identifier").Key("Init.Method", "Serial").Key("Serial.Number", WireCamera::kSerial);
  EXPECT_TRUE(Reopen());
  profile.Key("Init.Method", "IP").Key("IP", WireCamera::kAddress);
  EXPECT_TRUE(Reopen());
}

TEST_F(Module, TakesTwentySinglePicturesOneForEachTrigger) {
  ASSERT_TRUE(Open());
  for (int snap = 0; snap < 20; ++snap) {
    BBaseAoi aoi(BBaseAoi::eMono8);
    ASSERT_EQ(SnapOnce(&aoi), BError()) << "at snap " << snap;
    ASSERT_TRUE(ShowsGrey(aoi, kArea, kCorner)) << "at snap " << snap;
  }
}

TEST_F(Module, ASnapWithoutTriggerTimesOutAndTheNextSucceeds) {
  ASSERT_TRUE(Open());
  Device().Trigger()->SetExternal(true);
  Device().StartSnap(true);
  EXPECT_EQ(Device().Snap(nullptr, 100), BError(BError::eTimeout));
  Device().StopSnap();
  Device().Trigger()->SetExternal(false);
  BBaseAoi aoi(BBaseAoi::eMono8);
  EXPECT_EQ(SnapOnce(&aoi), BError());
  EXPECT_TRUE(ShowsGrey(aoi, kArea, kCorner));
}

TEST_F(Module, TheEdgeOfTheTriggerLineIsTheProfiles) {
  for (const char* polarity : {"LOW", "HIGH"}) {
    profile.Key("TRIGGERPOLARITY", polarity);
    ASSERT_TRUE(Open());
    device.reset();
    const StartedVimba vimba;
    const CameraHost host(WireCamera::kId);
    EXPECT_EQ(host.Entry("TriggerActivation"), polarity == std::string("LOW") ? "FallingEdge" : "RisingEdge");
  }
}

TEST_F(Module, AFreeRunGivesOnePictureAfterTheOther) {
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun));
  Device().StartSnap(false);
  std::optional<std::uint8_t> first_pixel;
  for (int snap = 0; snap < 25; ++snap) {
    BBaseAoi aoi(BBaseAoi::eMono8);
    ASSERT_EQ(Device().Snap(&aoi, kDeadlineMs), BError()) << "at snap " << snap;
    ASSERT_TRUE(ShowsGrey(aoi, kArea, kCorner)) << "at snap " << snap;
    EXPECT_NE(first_pixel, aoi.Mono()->Row(0)[0]) << "the picture moves";
    first_pixel = aoi.Mono()->Row(0)[0];
  }
  Device().StopSnap();
}

TEST_F(Module, AContinuousRunTakesAPictureForEachTriggerThatTheHostFires) {
  ASSERT_TRUE(Open());
  Device().StartSnap(false);
  for (int snap = 0; snap < 5; ++snap) {
    Device().Trigger()->Fire();
    ASSERT_EQ(Device().Snap(nullptr, kDeadlineMs), BError()) << "at snap " << snap;
    EXPECT_EQ(Device().Snap(nullptr, 100), BError(BError::eTimeout)) << "nobody has fired";
  }
  Device().StopSnap();
}

TEST_F(Module, AColourCamerasMosaicBecomesItsColour) {
  profile.Key("Bayertype", "RGGB");
  ASSERT_TRUE(Open(WireCamera().Colour()));
  ASSERT_TRUE(Device().IsColor());
  EXPECT_THAT(InitialLines(), Contains(L"PixelFormat = BayerRG8"));
  for (const wchar_t* conversion : {L"", L"[l]"}) {
    BBaseAoi aoi(BBaseAoi::eRgb, conversion);
    ASSERT_EQ(SnapOnce(&aoi), BError());
    EXPECT_TRUE(ShowsColour(aoi, kArea));
  }
}

TEST_F(Module, ColourModeSwitchesTheCamerasFormatAndBack) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "RGB");
  ASSERT_TRUE(Open(WireCamera().Colour().WidestPayload()));
  for (int round = 0; round < 2; ++round) {
    BBaseAoi untouched(BBaseAoi::eRgb);
    ASSERT_TRUE(Device().SetColorMode(true));
    EXPECT_EQ(SnapOnce(&untouched), BError());
    EXPECT_EQ(untouched.ImageSize(), kArea);
    BBaseAoi converted(BBaseAoi::eRgb);
    ASSERT_TRUE(Device().SetColorMode(false));
    EXPECT_EQ(SnapOnce(&converted), BError());
    EXPECT_TRUE(ShowsColour(converted, kArea));
  }
}

// The module has announced its frames by then.
TEST_F(Module, AColourFormatThatMakesThePayloadLargerFailsItsSnapsAndNoOthers) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "RGB");
  ASSERT_TRUE(Open(WireCamera().Colour()));
  ASSERT_TRUE(Device().SetColorMode(true));
  for (int snap = 0; snap < 3; ++snap) EXPECT_EQ(SnapOnce(nullptr), BError(BError::eFrameTooSmall));
  ASSERT_TRUE(Device().SetColorMode(false));
  EXPECT_EQ(SnapOnce(nullptr), BError());
}

TEST_F(Module, GainAndExposureReachTheCamera) {
  ASSERT_TRUE(Open());
  BImagingDeviceControl& gain = *Device().GainControl();
  EXPECT_EQ(gain.MaxValue(), 24);
  EXPECT_TRUE(gain.SetValue(12));
  BImagingDeviceControl& shutter = *Device().ShutterControl();
  EXPECT_TRUE(shutter.SetRealValue(12.5));
  device.reset();
  // Another session reads what the camera has kept.
  ASSERT_TRUE(Reopen());
  EXPECT_EQ(Device().GainControl()->Value(), 12);
  EXPECT_DOUBLE_EQ(Device().ShutterControl()->GetRealValue(), 12.5);
}

TEST_F(Module, EachColourHasAWhiteBalanceOfItsOwn) {
  profile.Key("Bayertype", "RGGB");
  ASSERT_TRUE(Open(WireCamera().Colour()));
  ASSERT_TRUE(Device().HasWhiteBalance());
  int min = 0;
  int max = 0;
  ASSERT_TRUE(Device().WhiteBalanceRange(min, max));
  EXPECT_EQ(min, 80);
  EXPECT_EQ(max, 300);
  EXPECT_TRUE(Device().SetWhiteBalanceRed(140, true));
  EXPECT_TRUE(Device().SetWhiteBalanceBlue(210, true));
  EXPECT_EQ(Device().ColorRedBalance(), 140);
  EXPECT_EQ(Device().ColorBlueBalance(), 210);
}

TEST_F(Module, TemperaturesAreThoseOfTheTwoPlaces) {
  ASSERT_TRUE(Open());
  EXPECT_EQ(Device().TemperatureControl(true)->Value(), 475);
  EXPECT_EQ(Device().TemperatureControl(false)->Value(), 382);
}

TEST_F(Module, TheStreamRateIsKeptWithinItsLimits) {
  ASSERT_TRUE(Open());
  EXPECT_TRUE(Device().SetBandwidth(60'000'000));
  EXPECT_EQ(Device().GetBandwidth(), 60'000'000);
}

TEST_F(Module, TheHighestFrameRateIsTheCameras) {
  ASSERT_TRUE(Open());
  double hz = 0.0;
  ASSERT_TRUE(Device().FramesPerSecond(hz));
  EXPECT_DOUBLE_EQ(hz, 120.0);
}

TEST_F(Module, AWholeSensorsPictureIsRightToTheLastPixel) {
  profile.Without("AOIX").Without("AOIY").Without("AOIWIDTH").Without("AOIHEIGHT");
  ASSERT_TRUE(Open());
  BBaseAoi aoi(BBaseAoi::eMono8);
  ASSERT_EQ(SnapOnce(&aoi), BError());
  EXPECT_TRUE(ShowsGrey(aoi, {WireCamera::kSensorWidth, WireCamera::kSensorHeight}));
}

TEST_F(Module, AReleasedCameraCanBeOpenedAgainAtOnce) {
  ASSERT_TRUE(Open());
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(Reopen());
    EXPECT_EQ(SnapOnce(nullptr), BError());
    EXPECT_TRUE(device->Release());
  }
}

// The camera of Aravis as it is has neither lines nor a free-running source of that name, no white balance and no
// temperature.
struct StockCamera : WireDevice {
  StockCamera() { TakeArea(0, 0, kArea.width, kArea.height); }
};

TEST_F(StockCamera, OpensWithoutATrigger) {
  ASSERT_TRUE(Open(WireCamera::Stock()));
  EXPECT_STREQ(Device().Name(), L"Vimba_Aravis Fake_GV01");
  EXPECT_EQ(Device().Trigger(), nullptr);
  EXPECT_FALSE(Device().HasWhiteBalance());
  EXPECT_FALSE(Device().TemperatureControl(true)->IsAvailable());
}

TEST_F(StockCamera, TakesSinglePictures) {
  ASSERT_TRUE(Open(WireCamera::Stock()));
  for (int snap = 0; snap < 3; ++snap) {
    BBaseAoi aoi(BBaseAoi::eMono8);
    ASSERT_EQ(SnapOnce(&aoi), BError()) << "at snap " << snap;
    EXPECT_EQ(aoi.ImageSize(), kArea);
  }
}

}  // namespace
