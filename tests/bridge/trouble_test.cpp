// trouble_test.cpp
// Cameras that go, hosts that stop, and sessions that follow each other in haste.
#include <arv.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <optional>
#include <thread>

#include "bridge/camera_host.h"
#include "bridge/picture_check.h"
#include "bridge/wire_device.h"
#include "support/process.h"

namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::HasSubstr;

// Aravis' report that a camera is gone, which takes its time here.
class SlowReport {
 public:
  SlowReport()
      : m_class(g_type_class_ref(ARV_TYPE_DEVICE)),
        m_signal(g_signal_lookup("control-lost", ARV_TYPE_DEVICE)),
        m_hook(g_signal_add_emission_hook(m_signal, 0, &SlowReport::Happens, this, nullptr)) {}
  ~SlowReport() {
    g_signal_remove_emission_hook(m_signal, m_hook);
    g_type_class_unref(m_class);
  }
  SlowReport(const SlowReport&) = delete;
  SlowReport& operator=(const SlowReport&) = delete;

  bool WaitForBegin(seconds timeout) const {
    const auto deadline = steady_clock::now() + timeout;
    while (!m_begun && steady_clock::now() < deadline) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return m_begun;
  }
  bool HasEnded() const { return m_ended; }

 private:
  static gboolean Happens(GSignalInvocationHint*, guint, const GValue*, gpointer self) {
    auto& report = *static_cast<SlowReport*>(self);
    report.m_begun = true;
    std::this_thread::sleep_for(kDuration);
    report.m_ended = true;
    return TRUE;
  }
  static constexpr std::chrono::milliseconds kDuration{700};

  const gpointer m_class;  // without it there is no signal yet
  const guint m_signal;
  std::atomic<bool> m_begun{false};
  std::atomic<bool> m_ended{false};
  const gulong m_hook;
};

Process SecondHost() { return {ProgramFile("wire-host"), {WireCamera::kId}}; }

struct VanishingCamera : WireDevice {
  VanishingCamera() { TakeArea(0, 0, kArea.width, kArea.height); }
  static constexpr BSize kArea{512, 512};
};

TEST_F(VanishingCamera, EndsTheRunAndIsReleasedInTimeForANewOne) {
  constexpr seconds kReleaseTime{15};
  ASSERT_TRUE(Open());
  ASSERT_TRUE(Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun));
  Device().StartSnap(false);
  ASSERT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());

  camera->Kill();
  BError error;
  // What had arrived before is taken first.
  for (int frame = 0; frame < 20 && !error.IsError(); ++frame) error = Device().Snap(nullptr, 1000);
  EXPECT_THAT(error.ErrorCode(), testing::AnyOf(BError::eTimeout, BError::eAcquisitionFailed));
  try {
    Device().StopSnap();
    ADD_FAILURE() << "nobody can have stopped the camera";
  } catch (const BError& stop) {
    EXPECT_EQ(stop.ErrorCode(), BError::eAcquisitionFailed);
    EXPECT_EQ(stop.Text(0), WString(L"AcquisitionStop failed"));
  }
  const auto begin = steady_clock::now();
  device->Release();
  EXPECT_LT(steady_clock::now() - begin, kReleaseTime);

  ASSERT_TRUE(Open());
  BBaseAoi aoi(BBaseAoi::eMono8);
  EXPECT_EQ(SnapOnce(&aoi), BError());
  EXPECT_TRUE(ShowsGrey(aoi, kArea));
}

// The report needs the device: without waiting, the program would end in it.
TEST(VanishedCamera, IsClosedWhenAravisHasReportedItsLoss) {
  constexpr seconds kVerdict{20};
  RunningCamera camera;
  const StartedVimba vimba;
  const SlowReport report;
  CameraHost host(WireCamera::kId);

  camera.Kill();
  ASSERT_TRUE(report.WaitForBegin(kVerdict));
  ASSERT_EQ(VmbCameraClose(host.Handle()), VmbErrorSuccess);

  EXPECT_TRUE(report.HasEnded());
}

TEST(VanishedCamera, IsClosedInTimeBeforeThat) {
  constexpr seconds kRelease{15};
  RunningCamera camera;
  const StartedVimba vimba;
  CameraHost host(WireCamera::kId);

  camera.Kill();
  const auto begin = steady_clock::now();
  ASSERT_EQ(VmbCameraClose(host.Handle()), VmbErrorSuccess);

  EXPECT_LT(steady_clock::now() - begin, kRelease);
}

TEST(SecondHost, FindsTheCameraInUse) {
  const RunningCamera camera;
  const StartedVimba vimba;
  CameraHost host(WireCamera::kId);
  host.Start();
  Process second = SecondHost();
  const ProcessResult result = second.Wait();
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "VmbCameraOpen DEV_000F31000001 answers " + std::to_string(VmbErrorInvalidAccess) + "\n");
  const std::size_t frames = host.Seen().size();
  EXPECT_TRUE(host.WaitForFrames(frames + 2)) << "the first host goes on";
}

// Longer than its heartbeat: the camera is free for others by then.
TEST(SecondHost, ThatIsStoppedLosesTheCameraAndFindsOutWhenItGoesOn) {
  const RunningCamera camera;
  Process stopped = SecondHost();
  ASSERT_TRUE(stopped.WaitForError("streaming"));
  ASSERT_TRUE(stopped.Signal(SIGSTOP));
  const StartedVimba vimba;
  VmbHandle_t handle = nullptr;
  ASSERT_EQ(VmbCameraOpen(WireCamera::kId, VmbAccessModeFull, &handle), VmbErrorSuccess);
  ASSERT_EQ(VmbCameraClose(handle), VmbErrorSuccess);

  ASSERT_TRUE(stopped.Signal(SIGCONT));
  const ProcessResult result = stopped.Wait();
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.err,
              HasSubstr("VmbFeatureIntGet answers " + std::to_string(VmbErrorDeviceNotOpen) + "\nclosed\n"));
}

TEST(SecondHost, ThatIsKilledLeavesTheCameraFree) {
  const RunningCamera camera;
  Process killed = SecondHost();
  ASSERT_TRUE(killed.WaitForError("streaming"));
  ASSERT_TRUE(killed.Signal(SIGKILL));
  const StartedVimba vimba;
  CameraHost host(WireCamera::kId);
  host.SetSize(64, 64);
  EXPECT_EQ(host.Integer("PayloadSize"), 64 * 64);
  // The camera still sent to the other one.
  host.Start();
  EXPECT_TRUE(host.WaitForFrames(2));
  host.Stop();
}

TEST(Haste, SixtyRoundsOfStartQueueFlushAndEndWhileFramesArrive) {
  const RunningCamera camera;
  const StartedVimba vimba;
  CameraHost host(WireCamera::kId);
  host.SetSize(256, 256);
  host.Set("AcquisitionFrameRateAbs", 500.0);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    host.Start();
    ASSERT_TRUE(host.WaitForFrames(2));
    host.FlushAndQueueAgain();
    ASSERT_TRUE(host.WaitForFrames(host.Seen().size() + 2));
    // The camera goes on.
    ASSERT_EQ(VmbCaptureEnd(host.Handle()), VmbErrorSuccess);
    const std::size_t frames = host.Seen().size();
    host.Stop();
    EXPECT_EQ(host.Seen().size(), frames) << "a callback after the end";
    for (const SeenFrame& frame : host.Seen()) ASSERT_NE(frame.status, VmbFrameStatusTooSmall);
  }
}

TEST(Haste, FifteenStartUpsOfWhichEveryOtherLeavesItsCameraOpen) {
  const RunningCamera camera;
  for (int round = 0; round < 15; ++round) {
    SCOPED_TRACE(round);
    std::optional<StartedVimba> vimba(std::in_place);
    CameraHost host(WireCamera::kId);
    host.SetSize(512, 512);
    host.Start();
    ASSERT_TRUE(host.WaitForFrames(2));
    if (round % 2 == 0) {
      host.Stop();
      ASSERT_EQ(VmbCameraClose(host.Handle()), VmbErrorSuccess);
    }
    vimba.reset();
    EXPECT_EQ(VmbCameraClose(host.Handle()), VmbErrorApiNotStarted);
  }
}

}  // namespace
