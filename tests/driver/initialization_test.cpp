// initialization_test.cpp
// Opening and configuring by the profile: what is logged, what is written back, where it stops.
#include "driver/opened_camera.h"

#include "VimbaC.h"
#include "bbaseaoi.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct Initialization : OpenedCamera {};

TEST_F(Initialization, TheLogReportsEveryStep) {
  ASSERT_TRUE(Open(SimulatedCamera().Range("StreamBytesPerSecond", 1'000'000, 124'000'000)));
  const Texts lines = LinesOf(output.Diagnostics(L"Initialize by camera").at(0));
  EXPECT_THAT(lines, ElementsAre(L"Camera   () : Thread ID = # : Initialize by camera", L"API = Vimba",
                                 L"Serial.Number: ", testing::StartsWith(L"VimbaC "), L"PixelFormat = Mono8",
                                 L"InitializeBandwidthRange Vimba_Manta-G-507B_50-0503340001",
                                 L"StreamBytesPerSecond range = 45000000 , 124000000",
                                 L"StreamBytesPerSecond by profile = 45000000 , 124000000",
                                 L"Set StreamBytesPerSecond = 97700000", L"GVSPPacketSize = 8228",
                                 L"Camera initialized: Vimba_Manta-G-507B_50-0503340001",
                                 L"Feature AcquisitionMode = Continuous", L"FrameQueueFill", L"End"));
  EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(Initialization, TheProfileGetsTheCamerasIdentifiers) {
  profile.Key("Init.Method", "IP").Key("IP", SimulatedCamera::kIp).Without("Camera_Identifier");
  ASSERT_TRUE(Open());
  const std::string text = profile.Text();
  EXPECT_THAT(text, HasSubstr("Ident=Vimba_Manta-G-507B_50-0503340001\n"));
  EXPECT_THAT(text, HasSubstr("Camera_Identifier=DEV_000F31000001\n"));
  EXPECT_THAT(text, HasSubstr("MIIdent=DEV_000F31000001\n"));
}

TEST_F(Initialization, AnotherApiTagOpensNothing) {
  profile.Key("API", "Other");
  EXPECT_FALSE(Open());
  EXPECT_THAT(cameras->CallsOf("VmbCameraOpen"), IsEmpty());
  EXPECT_THAT(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)),
              ElementsAre(L"Camera   () : Thread ID = # : Initialize by camera", L"End"));
}

TEST_F(Initialization, TheFormerApiTagServesAsWell) {
  profile.Key("API", "pvapi");
  EXPECT_TRUE(Open());
}

TEST_F(Initialization, TheSerialNumberIsLoggedAndShown) {
  profile.Key("Serial.Number", "4711");
  ASSERT_TRUE(Open());
  EXPECT_THAT(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)), Contains(L"Serial.Number: 4711"));
  EXPECT_THAT(output.WithCaption(nullptr), Contains(L"Initialize 4711"));
}

TEST_F(Initialization, ALibraryWithoutVersionLeavesThatLineEmpty) {
  cameras.emplace(SimulatedCamera());
  cameras->FailCall("VmbVersionQuery", "", VmbErrorInternalFault);
  ASSERT_TRUE(Reopen());
  EXPECT_EQ(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)).at(3), L"");
}

struct FailingStep {
  const char* name;
  const char* call;
  const char* feature;
  const char* value;      // of the set call, or null
  const wchar_t* notice;  // with the caption "!", or null
  const wchar_t* line;    // in the log, or null
};

struct FailingInitialization : OpenedCamera, testing::WithParamInterface<FailingStep> {};

TEST_P(FailingInitialization, EndsThereAndClosesTheCamera) {
  const FailingStep& step = GetParam();
  cameras.emplace(SimulatedCamera().Colour());
  profile.Key("Bayertype", "RGGB").Key("COLORCODEcolor", "YUV");
  nlohmann::json fault{{"call", step.call}, {"error", VmbErrorOther}, {"count", 0}};
  if (*step.feature) fault["feature"] = step.feature;
  if (step.value) fault["value"] = step.value;
  cameras->Fault(fault);
  EXPECT_FALSE(Reopen());
  EXPECT_EQ(Failures(), step.notice ? Texts{step.notice} : Texts{});
  if (step.line) {
    EXPECT_THAT(LinesOf(output.Diagnostics(L"Initialize by camera").at(0)), Contains(step.line));
  }
  EXPECT_THAT(cameras->CallsOf("VmbCameraClose"), ElementsAre("VmbCameraClose()"));
  EXPECT_THAT(cameras->CallsOf("VmbShutdown"), ElementsAre("VmbShutdown()"));
}

constexpr FailingStep kFailingSteps[] = {
    {"MonoFormat", "VmbFeatureEnumSet", "PixelFormat", "BayerRG8", L"ColorCodeMono failed", nullptr},
    {"ColourFormat", "VmbFeatureEnumSet", "PixelFormat", "YUV422Packed", L"ColorCodeColor failed", nullptr},
    {"BinningHorizontal", "VmbFeatureIntSet", "BinningHorizontal", nullptr, L"BinningX failed", nullptr},
    {"BinningVertical", "VmbFeatureIntSet", "BinningVertical", nullptr, L"BinningY failed", nullptr},
    {"Width", "VmbFeatureIntSet", "Width", nullptr, L"ChipRect failed", nullptr},
    {"Height", "VmbFeatureIntSet", "Height", nullptr, L"ChipRect failed", nullptr},
    {"OffsetX", "VmbFeatureIntSet", "OffsetX", nullptr, L"ChipRect failed", nullptr},
    {"OffsetY", "VmbFeatureIntSet", "OffsetY", nullptr, L"ChipRect failed", nullptr},
    {"PayloadSize", "VmbFeatureIntGet", "PayloadSize", nullptr, L"PayloadSize failed", nullptr},
    // Announcing is not checked: what could not be announced cannot be queued.
    {"Announcing", "VmbFrameAnnounce", "", nullptr, nullptr, L"QueueFrame failed"},
    {"CaptureStart", "VmbCaptureStart", "", nullptr, nullptr, L"VmbCaptureStart failed. Return value = -13"},
    {"AcquisitionMode", "VmbFeatureEnumSet", "AcquisitionMode", nullptr, L"AcquisitionMode failed", nullptr},
    {"TriggerSelector", "VmbFeatureEnumSet", "TriggerSelector", nullptr, L"SWTriggerMode failed", nullptr},
    {"FrameQueue", "VmbCaptureFrameQueue", "", nullptr, nullptr, L"QueueFrame failed"},
};

INSTANTIATE_TEST_SUITE_P(EveryStep, FailingInitialization, testing::ValuesIn(kFailingSteps),
                         [](const auto& step) { return step.param.name; });

TEST_F(Initialization, WithoutAPayloadSizeNoFrameIsAnnounced) {
  cameras.emplace(SimulatedCamera().Missing("PayloadSize"));
  EXPECT_FALSE(Reopen());
  EXPECT_THAT(Failures(), ElementsAre(L"PayloadSize failed"));
  EXPECT_THAT(cameras->CallsOf("VmbFrameAnnounce"), IsEmpty());
}

TEST_F(Initialization, ACameraThatRefusesTheLineInputWorksWithoutAnExternalTrigger) {
  cameras.emplace(SimulatedCamera());
  cameras->Fault({{"call", "VmbFeatureEnumSet"},
                  {"feature", "TriggerSource"},
                  {"value", "Line2"},
                  {"error", VmbErrorInvalidValue},
                  {"count", 0}});
  ASSERT_TRUE(Reopen());
  EXPECT_EQ(Device().Trigger(), nullptr);
  Device().StartSnap(true);
  EXPECT_EQ(Device().Snap(nullptr, 2000), BError());
  Device().StopSnap();
}

struct Turns {
  const char* value;
  bool rotated;
};

struct Rotation : OpenedCamera, testing::WithParamInterface<Turns> {};

// Four is added once to what is below -1; the size stays that of the camera.
TEST_P(Rotation, IsAQuarterTurnOrNone) {
  profile.Key("RotateBy90Degree", GetParam().value);
  ASSERT_TRUE(Open());
  bool rotated = !GetParam().rotated;
  EXPECT_EQ(Device().ImageSize(rotated), (BSize{64, 48}));
  EXPECT_EQ(rotated, GetParam().rotated);
}

INSTANTIATE_TEST_SUITE_P(Values, Rotation,
                         testing::Values(Turns{"-1", true}, Turns{"0", false}, Turns{"1", true}, Turns{"-3", true},
                                         Turns{"-4", false}, Turns{"-5", true}));

TEST_F(Initialization, EveryOtherRotationIsRefused) {
  for (const char* value : {"2", "-2", "3", "4", "-6", "-2147483645", "2147483645"}) {
    profile.Key("RotateBy90Degree", value);
    try {
      Open();
      FAIL() << value << " was taken";
    } catch (const BError& error) {
      EXPECT_EQ(error,
                BError(BError::eBadRotation, WString(profile.Path().wstring()), L"RotateBy90Degree", ToWString(value)));
    }
    EXPECT_THAT(cameras->CallsOf("VmbCameraClose"), ElementsAre("VmbCameraClose()"));
  }
}

TEST_F(Initialization, WithoutTheKeyNothingIsRotated) {
  ASSERT_TRUE(Open());
  bool rotated = true;
  Device().ImageSize(rotated);
  EXPECT_FALSE(rotated);
}

TEST_F(Initialization, AnUnreadableRotationIsNoRotation) {
  profile.Key("RotateBy90Degree", "ninety");
  ASSERT_TRUE(Open());
  bool rotated = true;
  Device().ImageSize(rotated);
  EXPECT_FALSE(rotated);
}

struct Polarity {
  const char* value;
  const char* edge;
};

struct TriggerPolarity : OpenedCamera, testing::WithParamInterface<Polarity> {};

TEST_P(TriggerPolarity, SelectsTheEdge) {
  if (GetParam().value) profile.Key("TRIGGERPOLARITY", GetParam().value);
  ASSERT_TRUE(Open());
  EXPECT_EQ(cameras->Calls().back(),
            std::string("VmbFeatureEnumSet(\"TriggerActivation\", \"") + GetParam().edge + "\")");
}

INSTANTIATE_TEST_SUITE_P(Values, TriggerPolarity,
                         testing::Values(Polarity{nullptr, "RisingEdge"}, Polarity{"HIGH", "RisingEdge"},
                                         Polarity{"low", "FallingEdge"}, Polarity{"LOW", "FallingEdge"},
                                         Polarity{"\"LOW\"", "FallingEdge"}, Polarity{"\"low \"", "RisingEdge"},
                                         Polarity{"\" LOW\"", "RisingEdge"}, Polarity{"lower", "RisingEdge"}));

TEST_F(Initialization, ReleasingWritesTheColourBalanceBackWhereItChanged) {
  profile.Key("Bayertype", "RGGB").Key("WBCOLORBLUE", "100");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  Device().SetWhiteBalanceBlue(100, true);
  Device().SetWhiteBalanceRed(140, true);
  device.reset();
  EXPECT_THAT(profile.Text(), HasSubstr("WBCOLORBLUE=100\n"));
  EXPECT_THAT(profile.Text(), HasSubstr("WBCOLORRED=140\n"));
  EXPECT_THAT(profile.Text(), Not(HasSubstr("WBMONO")));
}

TEST_F(Initialization, ABalanceThatTheProfileHoldsAlreadyIsNotWrittenAgain) {
  profile.Key("Bayertype", "RGGB").Key("WBCOLORBLUE", "+120").Key("WBCOLORRED", "+130");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  Device().SetWhiteBalanceRed(131, true);
  device.reset();
  EXPECT_THAT(profile.Text(), HasSubstr("WBCOLORBLUE=+120\n"));
  EXPECT_THAT(profile.Text(), HasSubstr("WBCOLORRED=131\n"));
}

TEST_F(Initialization, TheBalanceIsWrittenAtTheRootWhereverTheHostHasTakenTheProfile) {
  profile.Key("Bayertype", "RGGB");
  cameras.emplace(SimulatedCamera().Colour());
  const BSmartRef<BCamProfile> shared = profile.Open();
  device.emplace(shared);
  ASSERT_TRUE(*device);
  Device().SetWhiteBalanceRed(140, true);
  shared->GoToSection(L"Elsewhere");
  device.reset();
  EXPECT_THAT(profile.Text(), HasSubstr("WBCOLORBLUE=100\nWBCOLORRED=140\n"));
  EXPECT_THAT(profile.Text(), Not(HasSubstr("[Elsewhere]")));
}

TEST_F(Initialization, AMonochromeCameraWritesNoBalance) {
  ASSERT_TRUE(Open());
  device.reset();
  EXPECT_THAT(profile.Text(), Not(HasSubstr("WBCOLOR")));
}

TEST_F(Initialization, FrameIdsCountFromZeroAndGoOnBehindTheRing) {
  ASSERT_TRUE(Open());
  const int ring_frames = cameras->State()["announced"].get<int>();
  for (int id = 0; id <= ring_frames; ++id) {
    output.Clear();
    Device().StartSnap(true);
    ASSERT_EQ(Device().Snap(nullptr, 2000), BError());
    Device().StopSnap();
    EXPECT_THAT(Message(L": Snap"), Contains(L"Frame Id = " + std::to_wstring(id)));
  }
}

}  // namespace
