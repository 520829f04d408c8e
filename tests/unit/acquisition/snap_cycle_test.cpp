// snap_cycle_test.cpp
// Start, snap and stop on their own: who hears what and when, what a failure leaves behind.
#include "acquisition/snap_cycle.h"

#include <array>
#include <functional>
#include <utility>

#include "VimbaC.h"
#include "acquisition/frame_copy.h"
#include "bimagingdevicetrigger.h"
#include "unit/acquisition/scripted_camera.h"

namespace {

using Calls = std::vector<std::string>;
using Heard = std::vector<std::string>;

constexpr VmbInt64_t kCameraTime = 123'456;
const std::string kLatch = "VmbFeatureCommandRun(GevTimestampControlLatch)";
const std::string kReadTime = "VmbFeatureIntGet(GevTimestampValue)";
const std::string kStart = "VmbFeatureCommandRun(AcquisitionStart)";
const std::string kStop = "VmbFeatureCommandRun(AcquisitionStop)";

// Records what the cycle asks of it.
class RecordingTrigger final : public BImagingDeviceTrigger {
 public:
  explicit RecordingTrigger(std::vector<std::string>& heard) : m_heard(heard) {}
  void SetOn() override {}
  bool IsAvailable() const override { return true; }
  bool IsExternal() const override { return m_external; }
  void SetExternal(bool external) override { m_external = external; }
  bool SetActivation(int /*edge*/) override { return true; }
  bool SetSource(int source) override {
    m_heard.push_back("source " + std::to_string(source));
    return true;
  }
  void Fire() override { m_heard.emplace_back("fire"); }

 private:
  std::vector<std::string>& m_heard;
  bool m_external = false;
};

// Does something as it goes.
class FrameWithLastAct final : public BFrameQueue::BFrame {
 public:
  explicit FrameWithLastAct(std::function<void()> last_act)
      : BFrame(0, VmbPixelFormatMono8, 0, L"DEV_7"), m_last_act(std::move(last_act)) {}
  ~FrameWithLastAct() override { m_last_act(); }
  FrameWithLastAct(const FrameWithLastAct&) = delete;
  FrameWithLastAct& operator=(const FrameWithLastAct&) = delete;

 private:
  std::function<void()> m_last_act;
};

struct Cycle : ScriptedCamera {
  Cycle() { Library().SetInteger(camera.Handle(), "GevTimestampValue", kCameraTime); }

  BError Snap() { return cycle.Snap(nullptr, 0, FrameLayout{}); }
  BError ErrorOf(const std::function<void()>& operation) {
    try {
      operation();
    } catch (const BError& error) {
      return error;
    }
    return BError();
  }
};

TEST_F(Cycle, AStartAsksTheStreamFirstAndTheCameraThen) {
  cycle.StartSnap(true);
  EXPECT_EQ(heard, Heard{"before"});
  EXPECT_EQ(Library().Calls(), (Calls{"VmbFeatureEnumSet(AcquisitionMode, SingleFrame)", kLatch, kReadTime, kStart}));
}

TEST_F(Cycle, AContinuousRunIsOneFromItsStartToItsStop) {
  EXPECT_FALSE(cycle.RunsContinuously());
  cycle.StartSnap(false);
  EXPECT_TRUE(cycle.RunsContinuously());
  EXPECT_EQ(Library().Calls().front(), "VmbFeatureEnumSet(AcquisitionMode, Continuous)");
  cycle.StopSnap();
  EXPECT_FALSE(cycle.RunsContinuously());
}

TEST_F(Cycle, ARunThatCouldNotBeStartedDoesNotRun) {
  for (const char* feature : {"AcquisitionMode", "AcquisitionStart"}) {
    Library().Fail("VmbFeatureEnumSet", VmbErrorIO, feature);
    Library().Fail("VmbFeatureCommandRun", VmbErrorIO, feature);
    EXPECT_THROW(cycle.StartSnap(false), BError) << feature;
    EXPECT_FALSE(cycle.RunsContinuously()) << feature;
    Library().Mend();
  }
}

TEST_F(Cycle, ARunThatCouldNotBeStoppedRunsOn) {
  cycle.StartSnap(false);
  Library().Fail("VmbFeatureCommandRun", VmbErrorIO, "AcquisitionStop");
  EXPECT_THROW(cycle.StopSnap(), BError);
  EXPECT_TRUE(cycle.RunsContinuously());
}

TEST_F(Cycle, ARunThatCouldNotBeStoppedIsStillAContinuousOne) {
  RecordingTrigger trigger(heard);
  cycle.SetTrigger(&trigger);
  cycle.StartSnap(false);
  Library().Fail("VmbFeatureCommandRun", VmbErrorIO, "AcquisitionStop");
  EXPECT_THROW(cycle.StopSnap(), BError);
  EXPECT_EQ(Snap(), BError(BError::eTimeout));
  EXPECT_EQ(heard, Heard{"before"}) << "it is not fired";
  trigger.SetExternal(true);
  EXPECT_THROW(cycle.StopSnap(), BError);
  EXPECT_EQ(heard, (Heard{"before", "source 0"})) << "its trigger is switched back";
}

TEST_F(Cycle, ASingleSnapEndsAContinuousRunThatWasNotStopped) {
  cycle.StartSnap(false);
  cycle.StartSnap(true);
  EXPECT_FALSE(cycle.RunsContinuously());
}

TEST_F(Cycle, AStopHandsTheLastFailureToTheStreamAndForgetsIt) {
  cycle.StartSnap(false);
  queue.Push(nullptr, BError(BError::eFrameInvalid));
  EXPECT_EQ(Snap(), BError(BError::eFrameInvalid));
  queue.Push(nullptr, BError(BError::eAborted));
  EXPECT_EQ(Snap(), BError(BError::eAborted));
  cycle.StopSnap();
  cycle.StopSnap();
  EXPECT_EQ(heard, (Heard{"before", "after 12109", "after 0"}));
}

TEST_F(Cycle, AStopBeforeAnyStartHasNoFailureToHandOver) {
  cycle.StopSnap();
  EXPECT_EQ(heard, Heard{"after 0"});
}

TEST_F(Cycle, AStartDropsWhatWaitsInTheQueue) {
  queue.Push(nullptr, BError(BError::eFrameInvalid));
  cycle.StartSnap(true);
  EXPECT_EQ(Snap(), BError(BError::eTimeout));
}

// The frame would be new enough for the acquisition before, whose scan start still holds when a start begins.
TEST_F(Cycle, AFrameThatComesWhileAStartDropsTheOthersIsNoneOfTheNewAcquisition) {
  cycle.StartSnap(false);
  std::uint8_t pixel = 0;
  VmbFrame_t late{};
  late.buffer = &pixel;
  late.bufferSize = sizeof pixel;
  late.timestamp = kCameraTime + 1;
  queue.Push(new FrameWithLastAct([&] {
               receiver.OnFrameExt(&late);
               receiver.WaitForWorkers();
             }),
             BError());
  cycle.StartSnap(false);
  EXPECT_EQ(Snap(), BError(BError::eTimeout));
  EXPECT_EQ(Library().Queued(), std::vector<const VmbFrame_t*>{&late}) << "it did come, and went back";
}

TEST_F(Cycle, ASingleSnapFiresTheSoftwareTrigger) {
  RecordingTrigger trigger(heard);
  cycle.SetTrigger(&trigger);
  cycle.StartSnap(true);
  EXPECT_EQ(Snap(), BError(BError::eTimeout));
  EXPECT_EQ(heard, (Heard{"before", "fire"}));
}

TEST_F(Cycle, ASnapBeforeAnyStartFiresLikeASingleOne) {
  RecordingTrigger trigger(heard);
  cycle.SetTrigger(&trigger);
  EXPECT_EQ(Snap(), BError(BError::eTimeout));
  EXPECT_EQ(heard, Heard{"fire"});
}

TEST_F(Cycle, AnExternalTriggerIsSwitchedToTheLineForTheSnapAlone) {
  RecordingTrigger trigger(heard);
  trigger.SetExternal(true);
  cycle.SetTrigger(&trigger);
  cycle.StartSnap(true);
  EXPECT_EQ(Snap(), BError(BError::eTimeout));
  EXPECT_EQ(heard, (Heard{"before", "source 1", "source 0"}));
}

TEST_F(Cycle, AnExternalContinuousRunIsSwitchedBackWhenItStops) {
  RecordingTrigger trigger(heard);
  trigger.SetExternal(true);
  cycle.SetTrigger(&trigger);
  cycle.StartSnap(false);
  EXPECT_EQ(Snap(), BError(BError::eTimeout));
  cycle.StopSnap();
  EXPECT_EQ(heard, (Heard{"before", "source 1", "source 0", "after 12106"}));
}

TEST_F(Cycle, TheCamerasTimeIsAllOnesWhenEitherStepFails) {
  EXPECT_EQ(cycle.LatchCameraTimestamp(), static_cast<std::uint64_t>(kCameraTime));
  Library().Fail("VmbFeatureIntGet", VmbErrorIO, "GevTimestampValue");
  EXPECT_EQ(cycle.LatchCameraTimestamp(), FrameReceiver::kNoTimestamp);
  Library().Mend();
  Library().ClearCalls();
  Library().Fail("VmbFeatureCommandRun", VmbErrorIO, "GevTimestampControlLatch");
  EXPECT_EQ(cycle.LatchCameraTimestamp(), FrameReceiver::kNoTimestamp);
  EXPECT_EQ(Library().Calls(), Calls{kLatch}) << "a time that was not latched is not read";
}

TEST_F(Cycle, AFailedStartThrowsAndCanBeTriedAgain) {
  Library().Fail("VmbFeatureCommandRun", VmbErrorIO, "AcquisitionStart");
  EXPECT_EQ(ErrorOf([&] { cycle.StartSnap(true); }), BError(BError::eAcquisitionFailed, L"AcquisitionStart failed"));
  Library().Mend();
  EXPECT_EQ(ErrorOf([&] { cycle.StartSnap(true); }), BError());
}

TEST_F(Cycle, AFailedStopTellsTheStreamNothing) {
  cycle.StartSnap(true);
  Library().Fail("VmbFeatureCommandRun", VmbErrorIO, "AcquisitionStop");
  EXPECT_EQ(ErrorOf([&] { cycle.StopSnap(); }), BError(BError::eAcquisitionFailed, L"AcquisitionStop failed"));
  EXPECT_EQ(heard, Heard{"before"});
}

// What the camera's copies leave behind: blocks of this many bytes, more of them than an idle device keeps.
struct CycleMemory : Cycle {
  static constexpr VmbUint32_t kBlockBytes = FrameBlocks::kIdleBytes / 2;
  std::vector<std::uint8_t> buffer = std::vector<std::uint8_t>(kBlockBytes);

  void UseManyBlocksAtOnce() {
    std::array<VmbFrame_t, 4> frames{};
    for (VmbFrame_t& frame : frames) {
      frame.buffer = buffer.data();
      frame.bufferSize = kBlockBytes;
      frame.timestamp = kCameraTime;
      receiver.OnFrameExt(&frame);
    }
    receiver.WaitForWorkers();
    queue.Clear();
  }
};

TEST_F(CycleMemory, IsKeptWhileAnAcquisitionRuns) {
  cycle.StartSnap(false);
  UseManyBlocksAtOnce();
  EXPECT_EQ(receiver.IdleBytes(), std::size_t{4} * kBlockBytes);
}

TEST_F(CycleMemory, IsGivenBackWhenTheStopFails) {
  cycle.StartSnap(false);
  UseManyBlocksAtOnce();
  Library().Fail("VmbFeatureCommandRun", VmbErrorIO, "AcquisitionStop");
  EXPECT_THROW(cycle.StopSnap(), BError);
  EXPECT_LE(receiver.IdleBytes(), FrameBlocks::kIdleBytes);
}

TEST_F(CycleMemory, IsGivenBackWhenTheStartFails) {
  Library().Fail("VmbFeatureCommandRun", VmbErrorIO, "AcquisitionStart");
  EXPECT_THROW(cycle.StartSnap(false), BError);
  UseManyBlocksAtOnce();
  EXPECT_LE(receiver.IdleBytes(), FrameBlocks::kIdleBytes);
}

}  // namespace
