// fault_test.cpp
// Faults on calls and on frames.
#include <gmock/gmock.h>

#include <cstdint>

#include "simulated_link.h"

namespace {

using testing::ElementsAre;

struct Faults : testing::Test {
  StartedCameras world{SimulatedCamera().Colour("RGGB")};
  OpenedHandle camera;

  std::vector<VmbError_t> SetFormats(const std::vector<const char*>& formats) const {
    std::vector<VmbError_t> answers;
    answers.reserve(formats.size());
    for (const char* format : formats) answers.push_back(VmbFeatureEnumSet(camera, "PixelFormat", format));
    return answers;
  }
};

TEST_F(Faults, HitOneCallAndItTakesNoEffect) {
  world.cameras.Fault({{"call", "VmbFeatureEnumSet"}, {"feature", "PixelFormat"}, {"error", VmbErrorResources}});

  EXPECT_THAT(SetFormats({"Mono8"}), ElementsAre(VmbErrorResources));

  EXPECT_EQ(EnumOf(camera, "PixelFormat"), "BayerRG8");
  EXPECT_THAT(SetFormats({"Mono8"}), ElementsAre(VmbErrorSuccess));
}

TEST_F(Faults, WithTheirEffectAnswerTheErrorOfACallThatWorked) {
  world.cameras.Fault({{"call", "VmbFeatureEnumSet"}, {"error", VmbErrorResources}, {"effect", true}});

  EXPECT_THAT(SetFormats({"Mono8"}), ElementsAre(VmbErrorResources));

  EXPECT_EQ(EnumOf(camera, "PixelFormat"), "Mono8");
}

TEST_F(Faults, WithTheirEffectDoNotHideTheFailureOfTheCallItself) {
  world.cameras.Fault({{"call", "VmbFeatureEnumSet"}, {"error", VmbErrorResources}, {"effect", true}});

  EXPECT_THAT(SetFormats({"none such"}), ElementsAre(VmbErrorInvalidValue));
}

TEST_F(Faults, OfAnyCallHitWhicheverComes) {
  world.cameras.Fault({{"call", "any"}, {"occurrence", 2}, {"error", VmbErrorOther}});
  VmbInt64_t width = 0;

  EXPECT_THAT(SetFormats({"Mono8"}), ElementsAre(VmbErrorSuccess));

  EXPECT_EQ(VmbFeatureIntGet(camera, "Width", &width), VmbErrorOther);
}

TEST_F(Faults, HitAsManyCallsAsTheyAskForFromTheirOccurrenceOn) {
  world.cameras.Fault({{"call", "VmbFeatureEnumSet"}, {"occurrence", 2}, {"count", 2}, {"error", VmbErrorOther}});

  EXPECT_THAT(SetFormats({"Mono8", "Mono8", "Mono8", "Mono8"}),
              ElementsAre(VmbErrorSuccess, VmbErrorOther, VmbErrorOther, VmbErrorSuccess));
}

TEST_F(Faults, OfCountZeroHitForEverUntilTheyAreCleared) {
  world.cameras.Fault({{"call", "VmbFeatureEnumSet"}, {"count", 0}, {"error", VmbErrorOther}});
  EXPECT_THAT(SetFormats({"Mono8", "Mono8", "Mono8"}), ElementsAre(VmbErrorOther, VmbErrorOther, VmbErrorOther));

  world.cameras.ClearFaults();

  EXPECT_THAT(SetFormats({"Mono8"}), ElementsAre(VmbErrorSuccess));
}

TEST_F(Faults, OfTheLargestCountHitFromTheirOccurrenceOn) {
  world.cameras.Fault(
      {{"call", "VmbFeatureEnumSet"}, {"occurrence", 2}, {"count", INT64_MAX}, {"error", VmbErrorOther}});

  EXPECT_THAT(SetFormats({"Mono8", "Mono8", "Mono8"}), ElementsAre(VmbErrorSuccess, VmbErrorOther, VmbErrorOther));
}

TEST_F(Faults, HitOnlyTheirFeatureAndValue) {
  world.cameras.Fault({{"call", "VmbFeatureEnumSet"}, {"value", "Mono8"}, {"count", 0}, {"error", VmbErrorOther}});
  world.cameras.Fault({{"call", "VmbFeatureIntSet"},
                       {"feature", "Width"},
                       {"value", 32},
                       {"count", 0},
                       {"error", VmbErrorDeviceNotOpen}});
  world.cameras.Fault({{"call", "VmbFeatureFloatSet"}, {"value", 2.5}, {"count", 0}, {"error", VmbErrorInvalidAccess}});

  EXPECT_THAT(SetFormats({"RGB8Packed", "Mono8"}), ElementsAre(VmbErrorSuccess, VmbErrorOther));
  EXPECT_EQ(VmbFeatureIntSet(camera, "Height", 32), VmbErrorSuccess);
  EXPECT_EQ(VmbFeatureIntSet(camera, "Width", 32), VmbErrorDeviceNotOpen);
  EXPECT_EQ(VmbFeatureIntSet(camera, "Width", 40), VmbErrorSuccess);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "Gain", 2.0), VmbErrorSuccess);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "Gain", 2.5), VmbErrorInvalidAccess);
}

TEST(FaultsOfTwoCameras, HitOnlyTheirCamera) {
  StartedCameras world{std::vector{SimulatedCamera(1), SimulatedCamera(2)}};
  world.cameras.Fault({{"call", "VmbCaptureStart"}, {"camera", "DEV_000F31000002"}, {"error", VmbErrorOther}});
  world.cameras.Fault({{"frame", 0}, {"camera", "DEV_000F31000002"}, {"status", VmbFrameStatusInvalid}});
  const OpenedHandle first("DEV_000F31000001");
  const OpenedHandle second("DEV_000F31000002");
  FrameRing first_ring(first, 1);
  FrameRing second_ring(second, 1);

  EXPECT_EQ(VmbCaptureStart(second), VmbErrorOther);
  first_ring.Start();
  second_ring.Start();
  RunCommand(first, "AcquisitionStart");
  RunCommand(second, "AcquisitionStart");

  EXPECT_EQ(first_ring.WaitFor(1).front().receiveStatus, VmbFrameStatusComplete);
  EXPECT_EQ(second_ring.WaitFor(1).front().receiveStatus, VmbFrameStatusInvalid);
}

TEST_F(Faults, DelayACallThatThenTakesEffect) {
  constexpr std::chrono::milliseconds kDelay{40};
  world.cameras.Fault({{"call", "VmbFeatureEnumSet"}, {"delay_ms", kDelay.count()}});
  const auto begin = std::chrono::steady_clock::now();

  EXPECT_THAT(SetFormats({"Mono8"}), ElementsAre(VmbErrorSuccess));

  EXPECT_GE(std::chrono::steady_clock::now() - begin, kDelay);
  EXPECT_EQ(EnumOf(camera, "PixelFormat"), "Mono8");
}

TEST_F(Faults, KeepACommandFromReportingDone) {
  world.cameras.Fault(
      {{"call", "VmbFeatureCommandIsDone"}, {"feature", "GVSPAdjustPacketSize"}, {"done", false}, {"count", 3}});
  RunCommand(camera, "GVSPAdjustPacketSize");

  std::vector<int> polls;
  for (int i = 0; i < 5; ++i) {
    VmbBool_t done = 0;
    EXPECT_EQ(VmbFeatureCommandIsDone(camera, "GVSPAdjustPacketSize", &done), VmbErrorSuccess);
    polls.push_back(done);
  }

  EXPECT_THAT(polls, ElementsAre(0, 0, 0, 1, 1));
}

TEST_F(Faults, HitCallsOfTheSystem) {
  world.cameras.Fault(
      {{"call", "VmbFeatureInvalidationRegister"}, {"feature", "DiscoveryCameraEvent"}, {"error", VmbErrorIO}});
  const auto callback = [](VmbHandle_t, const char*, void*) {};

  EXPECT_EQ(VmbFeatureInvalidationRegister(gVimbaHandle, "DiscoveryCameraEvent", callback, nullptr), VmbErrorIO);
  EXPECT_EQ(VmbFeatureInvalidationRegister(gVimbaHandle, "DiscoveryCameraEvent", callback, nullptr), VmbErrorSuccess);
}

TEST(FaultsBeforeStartUp, HitTheStartUp) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.Fault({{"call", "VmbStartup"}, {"error", VmbErrorNoTL}});
  VmbUint32_t found = 0;

  EXPECT_EQ(VmbStartup(), VmbErrorNoTL);

  EXPECT_EQ(VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t)), VmbErrorApiNotStarted);
}

std::vector<VmbFrameStatus_t> StatusesOf(const std::vector<VmbFrame_t>& frames) {
  std::vector<VmbFrameStatus_t> statuses;
  statuses.reserve(frames.size());
  for (const VmbFrame_t& frame : frames) statuses.push_back(frame.receiveStatus);
  return statuses;
}

TEST_F(Faults, ChangeFramesByNumber) {
  FrameRing ring(camera, 4);
  world.cameras.Fault({{"frame", 1},
                       {"status", VmbFrameStatusIncomplete},
                       {"imageSize", 10},
                       {"pixelFormat", VmbPixelFormatRgb8},
                       {"timestamp", 3}});
  world.cameras.Fault({{"frame", 2}, {"count", 2}, {"status", VmbFrameStatusTooSmall}});
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  const auto frames = ring.WaitFor(4);

  EXPECT_THAT(StatusesOf(frames), ElementsAre(VmbFrameStatusComplete, VmbFrameStatusIncomplete, VmbFrameStatusTooSmall,
                                              VmbFrameStatusTooSmall));
  EXPECT_EQ(frames[1].imageSize, 10u);
  EXPECT_EQ(frames[1].pixelFormat, VmbPixelFormatRgb8);
  EXPECT_EQ(frames[1].timestamp, 3u);
  EXPECT_EQ(frames[1].frameID, 1u);
}

TEST_F(Faults, OfTheLargestCountChangeFramesFromTheirNumberOn) {
  FrameRing ring(camera, 3);
  world.cameras.Fault({{"frame", 1}, {"count", INT64_MAX}, {"status", VmbFrameStatusTooSmall}});
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  const auto frames = ring.WaitFor(3);

  EXPECT_THAT(StatusesOf(frames), ElementsAre(VmbFrameStatusComplete, VmbFrameStatusTooSmall, VmbFrameStatusTooSmall));
}

TEST_F(Faults, CountFramesFromTheMomentInWhichTheyAreAdded) {
  FrameRing ring(camera, 3);
  TriggerBy(camera, "Software");
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  RunCommand(camera, "TriggerSoftware");
  ring.WaitFor(1);

  world.cameras.Fault({{"frame", 1}, {"status", VmbFrameStatusInvalid}});
  RunCommand(camera, "TriggerSoftware");
  RunCommand(camera, "TriggerSoftware");

  EXPECT_THAT(StatusesOf(ring.WaitFor(3)),
              ElementsAre(VmbFrameStatusComplete, VmbFrameStatusComplete, VmbFrameStatusInvalid));
}

TEST_F(Faults, ChangeWhatWasAnnouncedWithAFrame) {
  FrameRing ring(camera, 2);
  world.cameras.Fault({{"frame", 0}, {"bufferSize", 7}, {"context1", 9}, {"buffer", 16}});
  world.cameras.Fault({{"frame", 1}, {"buffer", nullptr}});
  const void* const announced = ring.Frame(0).buffer;
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  const auto frames = ring.WaitFor(2);

  EXPECT_EQ(frames[0].bufferSize, 7u);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(frames[0].context[1]), 9u);
  EXPECT_EQ(static_cast<const char*>(frames[0].buffer) - static_cast<const char*>(announced), 16);
  EXPECT_EQ(frames[1].buffer, nullptr);
}

TEST_F(Faults, CallAFrameBackAgain) {
  FrameRing ring(camera, 2);
  world.cameras.Fault({{"frame", 0}, {"again", 2}});
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  const auto frames = ring.WaitFor(4);

  EXPECT_EQ(frames[1].frameID, frames[0].frameID);
  EXPECT_EQ(frames[2].frameID, frames[0].frameID);
  EXPECT_EQ(frames[3].frameID, 1u);
}

TEST_F(Faults, DropAFrame) {
  FrameRing ring(camera, 2);
  world.cameras.Fault({{"frame", 0}, {"drop", true}});
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  EXPECT_EQ(ring.WaitFor(2).front().frameID, 1u);
}

TEST_F(Faults, DelayAFrame) {
  constexpr std::chrono::milliseconds kDelay{50};
  FrameRing ring(camera, 1);
  world.cameras.Fault({{"frame", 0}, {"delay_ms", kDelay.count()}});
  ring.Start();
  const auto begin = std::chrono::steady_clock::now();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);

  EXPECT_GE(std::chrono::steady_clock::now() - begin, kDelay);
}

TEST_F(Faults, UnplugTheCameraAtAFrame) {
  FrameRing ring(camera, 4);
  world.cameras.Fault({{"unplugAtFrame", 2}});
  ring.Start();
  VmbInt64_t value = 0;

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(2);
  WaitIdle();

  EXPECT_EQ(ring.Arrived(), 2u);
  EXPECT_EQ(world.cameras.State()["plugged"], false);
  EXPECT_EQ(VmbFeatureIntGet(camera, "Width", &value), VmbErrorDeviceNotOpen);
}

TEST_F(Faults, PlugTheCameraInAgainWhenSomebodyLooksForIt) {
  FrameRing ring(camera, 4);
  world.cameras.Fault({{"unplugAtFrame", 1}, {"plugAfter_ms", 0}});
  ring.Start();
  VmbInt64_t value = 0;
  VmbUint32_t count = 0;

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);
  WaitIdle();
  EXPECT_EQ(world.cameras.State()["plugged"], false);
  EXPECT_EQ(VmbCamerasList(nullptr, 0, &count, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);

  EXPECT_EQ(world.cameras.State()["plugged"], true);
  EXPECT_EQ(VmbFeatureIntGet(camera, "Width", &value), VmbErrorDeviceNotOpen);
}

TEST_F(Faults, HitOneOfSoManyFrames) {
  FrameRing ring(camera, 8);
  world.cameras.Fault({{"frame", 1}, {"every", 3}, {"count", 2}, {"status", VmbFrameStatusInvalid}});
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  const auto frames = ring.WaitFor(8);

  std::vector<VmbUint64_t> hit;
  for (const VmbFrame_t& frame : frames) {
    if (frame.receiveStatus == VmbFrameStatusInvalid) hit.push_back(frame.frameID);
  }
  EXPECT_THAT(hit, ElementsAre(1, 4));
}

struct Refused {
  const char* json;
  const char* why;
};
class RefusedFault : public testing::TestWithParam<Refused> {};

TEST_P(RefusedFault, NamesMemberAndValue) {
  EXPECT_EQ(VimbaSimAddFaults(GetParam().json), kRefused);

  EXPECT_STREQ(VimbaSimLastError(), GetParam().why);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, RefusedFault,
    testing::Values(
        Refused{R"({"call":"VmbFeatureGet"})", R"(faults[0].call: "VmbFeatureGet" is no call that can fail)"},
        Refused{R"([{"frame":0},{"call":"VmbStartup","when":1}])", "faults[1].when: there is no such member"},
        Refused{R"({"frame":-1})", "faults[0].frame: -1 is no whole number from 0 to 9223372036854775807"},
        Refused{R"({"frame":0,"width":4294967296})",
                "faults[0].width: 4294967296 is no whole number from 0 to 4294967295"},
        Refused{R"({"unplugAtFrame":1,"plug":"DEV_2"})", "faults[0].plug: there is no such member"},
        Refused{R"({"frame":1,"every":0})", "faults[0].every: 0 is no whole number from 1 to 9223372036854775807"},
        Refused{R"({"error":-1})", "faults[0].call: a fault needs one of call, frame and unplugAtFrame"},
        Refused{R"({"call":"VmbStartup","value":true})", "faults[0].value: true is neither text nor number"},
        Refused{"[1]", "faults[0]: is no object"}, Refused{"{", "no JSON at byte 2"},
        Refused{R"({"frame":-1e999})", "the text: -1e999 is too large a number"},
        Refused{nullptr, "the text is null"}));

}  // namespace
