// vimba_trigger_test.cpp
// The frame-start trigger of an opened camera.
#include "controls/vimba_trigger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "support/open_camera_handle.h"

namespace {

using Calls = std::vector<std::string>;

const std::string kModeOn = R"(VmbFeatureEnumSet("TriggerMode", "On"))";
const std::string kFrameStart = R"(VmbFeatureEnumSet("TriggerSelector", "FrameStart"))";
const std::string kSoftware = R"(VmbFeatureEnumSet("TriggerSource", "Software"))";
const std::string kLine2 = R"(VmbFeatureEnumSet("TriggerSource", "Line2"))";
const std::string kFreerun = R"(VmbFeatureEnumSet("TriggerSource", "Freerun"))";
const std::string kRun = R"(VmbFeatureCommandRun("TriggerSoftware"))";
const std::string kIsDone = R"(VmbFeatureCommandIsDone("TriggerSoftware"))";

// A trigger of an opened camera whose calls so far are forgotten.
struct TriggerOfCamera {
  explicit TriggerOfCamera(const SimulatedCamera& configuration = SimulatedCamera())
      : camera(configuration), trigger(camera.Handle()) {
    camera->ClearCalls();
  }
  Calls Sent() {
    Calls calls = camera->Calls();
    camera->ClearCalls();
    return calls;
  }
  OpenCameraHandle camera;
  BVimbaTrigger trigger;
};

TEST(TriggerCreation, TriesTheLineAndLeavesTheCameraWaitingForSoftwareTriggers) {
  OpenCameraHandle camera;
  const BVimbaTrigger trigger(camera.Handle());

  EXPECT_TRUE(trigger.IsAvailable());
  EXPECT_FALSE(trigger.IsExternal());
  EXPECT_EQ(camera->Calls(), (Calls{kModeOn, kFrameStart, kLine2, kModeOn, kFrameStart, kSoftware}));
}

TEST(TriggerCreation, TheFirstRefusalEndsItWithoutATrigger) {
  const Calls steps{kModeOn, kFrameStart, kLine2};
  const char* const features[] = {"TriggerMode", "TriggerSelector", "TriggerSource"};
  for (std::size_t step = 0; step < steps.size(); ++step) {
    OpenCameraHandle camera;
    camera->FailCall("VmbFeatureEnumSet", features[step], VmbErrorInvalidValue);
    const BVimbaTrigger trigger(camera.Handle());
    EXPECT_FALSE(trigger.IsAvailable());
    EXPECT_EQ(camera->Calls(), Calls(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(step) + 1));
  }
}

TEST(TriggerCreation, ACameraWithoutASelectorHasNoTriggerAndIsNeverExternal) {
  TriggerOfCamera of(SimulatedCamera().Missing("TriggerSelector"));

  of.trigger.SetExternal(true);

  EXPECT_FALSE(of.trigger.IsAvailable());
  EXPECT_FALSE(of.trigger.IsExternal());
}

TEST(TriggerCreation, ASoftwareSourceThatIsRefusedDoesNotMakeItUnavailable) {
  OpenCameraHandle camera;
  camera->FailCall("VmbFeatureEnumSet", "TriggerSource", VmbErrorInvalidValue, 2);

  EXPECT_TRUE(BVimbaTrigger(camera.Handle()).IsAvailable());
}

TEST(TriggerSource, EachNumberSelectsItsEntryAndOthersNone) {
  struct Row {
    int source;
    Calls calls;
  };
  const Row rows[] = {{0, {kModeOn, kFrameStart, kSoftware}},
                      {1, {kModeOn, kFrameStart, kLine2}},
                      {2, {kModeOn, kFrameStart, kFreerun}},
                      {3, {kModeOn, kFrameStart}},
                      {5, {kModeOn, kFrameStart}},
                      {-1, {kModeOn, kFrameStart}},
                      {2147483647, {kModeOn, kFrameStart}},
                      {-2147483647 - 1, {kModeOn, kFrameStart}}};
  TriggerOfCamera of;
  for (const Row& row : rows) {
    EXPECT_TRUE(of.trigger.SetSource(row.source)) << row.source;
    EXPECT_EQ(of.Sent(), row.calls) << row.source;
  }
}

TEST(TriggerSource, TheFirstRefusalEndsTheSelection) {
  const Calls steps{kModeOn, kFrameStart, kSoftware};
  const char* const features[] = {"TriggerMode", "TriggerSelector", "TriggerSource"};
  for (std::size_t step = 0; step < steps.size(); ++step) {
    TriggerOfCamera of;
    of.camera->FailCall("VmbFeatureEnumSet", features[step], VmbErrorInvalidAccess);
    EXPECT_FALSE(of.trigger.SetSource(BVimbaTrigger::eSoftware));
    EXPECT_EQ(of.Sent(), Calls(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(step) + 1));
  }
}

TEST(TriggerSource, AnExternalTriggerIsNotLetRunFree) {
  TriggerOfCamera of;
  of.trigger.SetExternal(true);

  EXPECT_TRUE(of.trigger.SetSource(BVimbaTrigger::eFreeRun));
  EXPECT_EQ(of.Sent(), Calls{});

  EXPECT_TRUE(of.trigger.SetSource(BVimbaTrigger::eLine));
  EXPECT_EQ(of.Sent(), (Calls{kModeOn, kFrameStart, kLine2}));
}

TEST(TriggerSwitch, OnSelectsTheSoftwareSource) {
  TriggerOfCamera of;

  of.trigger.SetOn();

  EXPECT_EQ(of.Sent(), (Calls{kModeOn, kFrameStart, kSoftware}));
}

TEST(TriggerSwitch, OffEndsBeingExternalAndSendsNothing) {
  TriggerOfCamera of;
  of.trigger.SetExternal(true);
  ASSERT_TRUE(of.trigger.IsExternal());

  of.trigger.SetOff();

  EXPECT_FALSE(of.trigger.IsExternal());
  EXPECT_EQ(of.Sent(), Calls{});
}

TEST(TriggerSwitch, BeingExternalIsOnlyRemembered) {
  TriggerOfCamera of;

  of.trigger.SetExternal(true);
  EXPECT_TRUE(of.trigger.IsExternal());
  of.trigger.SetExternal(false);
  EXPECT_FALSE(of.trigger.IsExternal());

  EXPECT_EQ(of.Sent(), Calls{});
}

TEST(TriggerActivation, ZeroIsTheRisingEdgeAndAnyOtherTheFallingOne) {
  struct Row {
    int edge;
    std::string call;
  };
  const Row rows[] = {{0, R"(VmbFeatureEnumSet("TriggerActivation", "RisingEdge"))"},
                      {1, R"(VmbFeatureEnumSet("TriggerActivation", "FallingEdge"))"},
                      {7, R"(VmbFeatureEnumSet("TriggerActivation", "FallingEdge"))"},
                      {-1, R"(VmbFeatureEnumSet("TriggerActivation", "FallingEdge"))"}};
  TriggerOfCamera of;
  for (const Row& row : rows) {
    EXPECT_TRUE(of.trigger.SetActivation(row.edge)) << row.edge;
    EXPECT_EQ(of.Sent(), Calls{row.call}) << row.edge;
  }
}

TEST(TriggerActivation, AlwaysReportsSuccess) {
  TriggerOfCamera refusing;
  refusing.camera->FailCall("VmbFeatureEnumSet", "TriggerActivation", VmbErrorInvalidAccess);
  EXPECT_TRUE(refusing.trigger.SetActivation(BImagingDeviceTrigger::eFalling));
  EXPECT_EQ(refusing.Sent().size(), 1U);
}

TEST(TriggerActivation, OfAnUnavailableTriggerSendsNothing) {
  TriggerOfCamera of(SimulatedCamera().Missing("TriggerMode"));

  EXPECT_TRUE(of.trigger.SetActivation(BImagingDeviceTrigger::eFalling));

  EXPECT_EQ(of.Sent(), Calls{});
}

TEST(TriggerFire, RunsTheCommandAndAsksUntilItIsDone) {
  TriggerOfCamera of;
  of.camera->Fault(
      {{"call", "VmbFeatureCommandIsDone"}, {"feature", "TriggerSoftware"}, {"count", 3}, {"done", false}});

  of.trigger.Fire();

  EXPECT_EQ(of.Sent(), (Calls{kRun, kIsDone, kIsDone, kIsDone, kIsDone}));
}

TEST(TriggerFire, EndsWhenTheCommandFails) {
  TriggerOfCamera of;
  of.camera->FailCall("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorInvalidAccess);

  of.trigger.Fire();

  EXPECT_EQ(of.Sent(), Calls{kRun});
}

TEST(TriggerFire, EndsWhenTheQueryFails) {
  TriggerOfCamera of;
  of.camera->FailCall("VmbFeatureCommandIsDone", "TriggerSoftware", VmbErrorIO);

  of.trigger.Fire();

  EXPECT_EQ(of.Sent(), (Calls{kRun, kIsDone}));
}

TEST(TriggerFire, SendsNothingWhileTheTriggerIsExternal) {
  TriggerOfCamera of;
  of.trigger.SetExternal(true);

  of.trigger.Fire();

  EXPECT_EQ(of.Sent(), Calls{});
}

TEST(TriggerFire, AnUnavailableTriggerFiresEvenWhenItWasToBeExternal) {
  TriggerOfCamera of(SimulatedCamera().Missing("TriggerSelector"));
  of.trigger.SetExternal(true);

  of.trigger.Fire();

  EXPECT_EQ(of.Sent().front(), kRun);
}

}  // namespace
