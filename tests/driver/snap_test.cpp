// snap_test.cpp
// Start, snap, stop: what is sent to the camera, what is reported, what the host gets.
#include <set>

#include "VimbaC.h"
#include "bbaseaoi.h"
#include "driver/opened_camera.h"
#include "support/picture_file.h"

namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr std::uint32_t kDeadlineMs = 30'000;
// A format that the driver does not convert.
constexpr std::uint32_t kMono10 = 0x01100003;

struct Snap : OpenedCamera {
  BError SnapOnce(BBaseAoi* aoi = nullptr, std::uint32_t timeout_ms = kDeadlineMs) {
    Device().StartSnap(true);
    BError error = Device().Snap(aoi, timeout_ms);
    Device().StopSnap();
    return error;
  }
  // A camera whose every picture is the same: no noise, and nothing in the scene that moves.
  SimulatedCamera Still() {
    std::vector<std::uint8_t> pixels(std::size_t{64} * 48);
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::uint8_t>(i * 37 + i / 64 * 11);
    const std::filesystem::path file = profile.Path().parent_path() / "scene.png";
    WriteGreyPng(file, 64, 48, pixels);
    return SimulatedCamera().With("noise", false).With("scene", {{"picture", file.string()}});
  }
};

std::vector<std::uint8_t> PixelsOf(BBaseAoi& aoi) {
  std::vector<std::uint8_t> pixels;
  for (int y = 0; y < 48; ++y) pixels.insert(pixels.end(), aoi.Mono()->Row(y), aoi.Mono()->Row(y) + 64);
  return pixels;
}

TEST_F(Snap, ASingleFrameIsReportedInThreeMessages) {
  ASSERT_TRUE(Open());
  Forget();
  ASSERT_EQ(SnapOnce(), BError());
  EXPECT_THAT(
      Message(L"StartSnap( one_shot = True )"),
      ElementsAre(L"StartSnap( one_shot = True )", L"Start", L"Trigger is on: 0",
                  L"Set feature AcquisitionMode = SingleFrame -> 0",
                  testing::StartsWith(L"Current camera timestamp = "), L"Command AcquisitionStart -> 0", L"End"));
  EXPECT_THAT(Message(L": Snap"),
              ElementsAre(L"Snap", L"Start", L"Fire SW trigger", L"Frame Id = 0", L"Frame error code = 0", L"End"));
  EXPECT_THAT(
      Message(L"StopSnap"),
      ElementsAre(L"StopSnap", L"Start", L"VmbFeatureCommandRun AcquisitionStop returns 0", L"Received 1 Frames [0]",
                  L"Successful snap, failure counter = 0, bandwidth.av = 97700000 #snaps = 1", L"End"));
}

TEST_F(Snap, AContinuousRunIsNotFired) {
  ASSERT_TRUE(Open());
  Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
  Forget();
  Device().StartSnap(false);
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
  Device().StopSnap();
  EXPECT_THAT(Message(L"StartSnap( one_shot = False )"), Contains(L"Set feature AcquisitionMode = Continuous -> 0"));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureCommandRun"),
              testing::Not(Contains("VmbFeatureCommandRun(\"TriggerSoftware\")")));
}

TEST_F(Snap, ATimeOutIsRecordedAndListed) {
  ASSERT_TRUE(Open());
  cameras->FailCall("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorOther, 1);
  Forget();
  EXPECT_EQ(SnapOnce(nullptr, 20), BError(BError::eTimeout));
  EXPECT_THAT(Message(L": Snap"), ElementsAre(L"Snap", L"Start", L"Fire SW trigger", L"Frame Id = 18446744073709551615",
                                              L"Frame error code = 12106", L"End"));
  const Texts stop = Message(L"StopSnap!");
  EXPECT_EQ(stop.front(), L"StopSnap!");
  EXPECT_THAT(stop, Contains(L"Received 1 Frames [18446744073709551615]"));
  EXPECT_THAT(stop, Contains(L"Snap failure 12106 #failure = 1"));
}

TEST_F(Snap, AStartForgetsTheFailureBefore) {
  ASSERT_TRUE(Open());
  cameras->FailCall("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorOther, 1);
  Device().StartSnap(true);
  EXPECT_EQ(Device().Snap(nullptr, 10), BError(BError::eTimeout));
  EXPECT_EQ(SnapOnce(), BError());
  EXPECT_THAT(output.Diagnostics(L"StopSnap!"), testing::IsEmpty());
  EXPECT_THAT(Message(L"StopSnap"), Contains(L"Received 1 Frames [0]"));
}

TEST_F(Snap, ANullAreaOnlyConsumesTheFrame) {
  ASSERT_TRUE(Open());
  Forget();
  EXPECT_EQ(SnapOnce(nullptr), BError());
  EXPECT_THAT(Message(L": Snap"), testing::Not(Contains(L"Copy frame to aoi")));
}

TEST_F(Snap, AnAreaOfAnotherKindIsLeftAlone) {
  ASSERT_TRUE(Open());
  BBaseAoi aoi(BBaseAoi::eMono16);
  aoi.SetOffset({3, 4});
  Forget();
  EXPECT_EQ(SnapOnce(&aoi), BError());
  EXPECT_EQ(aoi.Offset(), (BPoint{3, 4}));
  EXPECT_THAT(Message(L": Snap"), Contains(L"Copy frame to aoi"));
}

TEST_F(Snap, AMonochromePictureComesAsTheCameraSeesIt) {
  ASSERT_TRUE(Open(Still()));
  BBaseAoi mono(BBaseAoi::eMono8);
  BBaseAoi rgb(BBaseAoi::eRgb);
  ASSERT_EQ(SnapOnce(&mono), BError());
  ASSERT_EQ(SnapOnce(&rgb), BError());
  ASSERT_EQ(mono.ImageSize(), (BSize{64, 48}));
  ASSERT_EQ(rgb.ImageSize(), (BSize{64, 48}));
  for (int y = 0; y < 48; ++y) {
    for (int i = 0; i < 3 * 64; ++i) ASSERT_EQ(rgb.Rgb()->Row(y)[i], mono.Mono()->Row(y)[i / 3]) << i << "," << y;
  }
  EXPECT_NE(mono.Mono()->Row(3)[3], mono.Mono()->Row(3)[4]) << "the scene has structure";
}

TEST_F(Snap, ARotatedPictureIsTurnedByAQuarter) {
  ASSERT_TRUE(Open(Still()));
  BBaseAoi upright(BBaseAoi::eMono8);
  ASSERT_EQ(SnapOnce(&upright), BError());
  for (const int turn : {1, -1}) {
    profile.Key("RotateBy90Degree", std::to_string(turn));
    device.reset();
    ASSERT_TRUE(Reopen());
    BBaseAoi turned(BBaseAoi::eMono8);
    ASSERT_EQ(SnapOnce(&turned), BError());
    ASSERT_EQ(turned.ImageSize(), (BSize{48, 64}));
    for (int y = 0; y < 48; ++y) {
      for (int x = 0; x < 64; ++x) {
        const std::uint8_t pixel = turn == 1 ? turned.Mono()->Row(x)[47 - y] : turned.Mono()->Row(63 - x)[y];
        ASSERT_EQ(pixel, upright.Mono()->Row(y)[x]) << x << "," << y << " turned by " << turn;
      }
    }
  }
}

TEST_F(Snap, AColourCameraFillsBothKindsOfAreaByTheConversionThatTheirTextAsksFor) {
  profile.Key("Bayertype", "RGGB");
  ASSERT_TRUE(Open(Still().Colour()));
  std::set<std::vector<std::uint8_t>> rgb_pictures;
  std::set<std::vector<std::uint8_t>> mono_pictures;
  for (const wchar_t* text : {L"", L"[l]", L"[P]"}) {
    BBaseAoi rgb(BBaseAoi::eRgb, text);
    BBaseAoi mono(BBaseAoi::eMono8, text);
    ASSERT_EQ(SnapOnce(&rgb), BError());
    ASSERT_EQ(SnapOnce(&mono), BError());
    ASSERT_EQ(rgb.ImageSize(), (BSize{64, 48}));
    ASSERT_EQ(mono.ImageSize(), (BSize{64, 48}));
    rgb_pictures.emplace(rgb.Rgb()->Row(0), rgb.Rgb()->Row(0) + std::size_t{3} * 64);
    mono_pictures.emplace(mono.Mono()->Row(0), mono.Mono()->Row(0) + 64);
  }
  EXPECT_EQ(rgb_pictures.size(), 2U) << "a good and a fast conversion";
  EXPECT_EQ(mono_pictures.size(), 3U) << "a good, a fast and a plain one";
}

TEST_F(Snap, ColourFormatsNeedAPayloadThatIsLargeEnough) {
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV");
  BBaseAoi rgb(BBaseAoi::eRgb);
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  ASSERT_TRUE(Device().SetColorMode(true));
  EXPECT_EQ(SnapOnce(&rgb), BError(BError::eFrameTooSmall));
  device.reset();
  ASSERT_TRUE(Open(SimulatedCamera().Colour().WidestPayload()));
  ASSERT_TRUE(Device().SetColorMode(true));
  EXPECT_EQ(SnapOnce(&rgb), BError());
  EXPECT_EQ(rgb.ImageSize(), (BSize{64, 48}));
}

TEST_F(Snap, AFrameThatClaimsAWiderFormatThanItHoldsLeavesTheAreasPixelsAlone) {
  profile.Key("Bayertype", "RGGB");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  Device().StartSnap(false);
  BBaseAoi rgb(BBaseAoi::eRgb);
  rgb.Reset({64, 48});
  rgb.Rgb()->Row(5)[7] = 123;
  cameras->Deliver({{"pixelFormat", VmbPixelFormatYuv422}});
  EXPECT_EQ(Device().Snap(&rgb, kDeadlineMs), BError());
  EXPECT_EQ(rgb.Rgb()->Row(5)[7], 123);
  Device().StopSnap();
}

TEST_F(Snap, AMonochromeCamerasFrameIsCopiedWhateverFormatItClaims) {
  ASSERT_TRUE(Open());
  Device().StartSnap(false);
  BBaseAoi mono(BBaseAoi::eMono8);
  mono.Reset({64, 48});
  const std::vector<std::uint8_t> before = PixelsOf(mono);
  cameras->Deliver({{"pixelFormat", kMono10}});
  EXPECT_EQ(Device().Snap(&mono, kDeadlineMs), BError());
  EXPECT_NE(PixelsOf(mono), before);
  Device().StopSnap();
}

TEST_F(Snap, AColourCamerasFrameOfAnUnlistedFormatLeavesTheAreasPixelsAlone) {
  profile.Key("Bayertype", "RGGB");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  Device().StartSnap(false);
  BBaseAoi mono(BBaseAoi::eMono8);
  mono.Reset({64, 48});
  mono.Mono()->Row(5)[7] = 123;
  cameras->Deliver({{"pixelFormat", kMono10}});
  EXPECT_EQ(Device().Snap(&mono, kDeadlineMs), BError());
  EXPECT_EQ(mono.Mono()->Row(5)[7], 123);
  Device().StopSnap();
}

TEST_F(Snap, AnExternalTriggerIsSwitchedToTheLineAndBack) {
  ASSERT_TRUE(Open());
  Device().Trigger()->SetExternal(true);
  Forget();
  Device().StartSnap(true);
  EXPECT_THAT(Message(L"StartSnap( one_shot = True )"), Contains(L"Trigger is on: 1"));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureEnumSet"), Contains("VmbFeatureEnumSet(\"TriggerSource\", \"Line2\")"));
  cameras->ClearCalls();
  EXPECT_EQ(Device().Snap(nullptr, 20), BError(BError::eTimeout));
  EXPECT_EQ(cameras->Calls().back(), "VmbFeatureEnumSet(\"TriggerSource\", \"Software\")");
  EXPECT_THAT(Message(L": Snap"), testing::Not(Contains(L"Fire SW trigger")));
  Device().StopSnap();
}

TEST_F(Snap, AContinuousExternalRunGoesBackToSoftwareWhenItStops) {
  ASSERT_TRUE(Open());
  Device().Trigger()->SetExternal(true);
  Device().StartSnap(false);
  Forget();
  EXPECT_EQ(Device().Snap(nullptr, 20), BError(BError::eTimeout));
  EXPECT_TRUE(cameras->Calls().empty());
  Device().StopSnap();
  EXPECT_EQ(cameras->Calls().at(2), "VmbFeatureEnumSet(\"TriggerSource\", \"Software\")");
  EXPECT_THAT(Message(L"StopSnap!"), Contains(L"Trigger: ActivateMode( eTriggerSoftware"));
}

struct FailingSnapCall {
  const char* call;
  const char* feature;
  const wchar_t* text;
  const wchar_t* message;
  const wchar_t* line;
};

struct FailingStart : Snap, testing::WithParamInterface<FailingSnapCall> {};

TEST_P(FailingStart, ThrowsAndCanBeTriedAgain) {
  ASSERT_TRUE(Open());
  Forget();
  cameras->FailCall(GetParam().call, GetParam().feature, VmbErrorOther, 1);
  try {
    Device().StartSnap(true);
    FAIL() << "no error was thrown";
  } catch (const BError& error) {
    EXPECT_EQ(error, BError(BError::eAcquisitionFailed, GetParam().text));
  }
  EXPECT_THAT(Message(GetParam().message), Contains(GetParam().line));
  EXPECT_EQ(SnapOnce(), BError());
}

INSTANTIATE_TEST_SUITE_P(EveryStep, FailingStart,
                         testing::Values(FailingSnapCall{"VmbFeatureEnumSet", "AcquisitionMode",
                                                         L"AcquisitionMode failed", L"StartSnap( one_shot = True )",
                                                         L"Set feature AcquisitionMode = SingleFrame -> -13"},
                                         FailingSnapCall{"VmbFeatureCommandRun", "AcquisitionStart",
                                                         L"AcquisitionStart failed", L"StartSnap( one_shot = True )",
                                                         L"Command AcquisitionStart -> -13"}));

TEST_F(Snap, AFailedStopThrowsAndCanBeTriedAgain) {
  ASSERT_TRUE(Open());
  Device().StartSnap(true);
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
  Forget();
  cameras->FailCall("VmbFeatureCommandRun", "AcquisitionStop", VmbErrorOther, 1);
  try {
    Device().StopSnap();
    FAIL() << "no error was thrown";
  } catch (const BError& error) {
    EXPECT_EQ(error, BError(BError::eAcquisitionFailed, L"AcquisitionStop failed"));
  }
  EXPECT_THAT(Message(L"StopSnap"),
              ElementsAre(L"StopSnap", L"Start", L"VmbFeatureCommandRun AcquisitionStop returns -13", L"End"));
  Device().StopSnap();
}

TEST_F(Snap, StatusesThatNobodyKnowsCountAsFailures) {
  ASSERT_TRUE(Open());
  Device().StartSnap(false);
  cameras->Deliver({{"status", 42}});
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eFrameInvalid));
  Device().StopSnap();
}

TEST_F(Snap, AnUnpluggedCameraCannotBeStartedAndIsReleasedCleanly) {
  ASSERT_TRUE(Open());
  cameras->Unplug();
  try {
    Device().StartSnap(true);
    FAIL() << "no error was thrown";
  } catch (const BError& error) {
    EXPECT_EQ(error, BError(BError::eAcquisitionFailed, L"AcquisitionMode failed"));
  }
  EXPECT_TRUE(device->Release());
  EXPECT_THAT(cameras->CallsOf("VmbCameraClose"), ElementsAre("VmbCameraClose()"));
}

}  // namespace
