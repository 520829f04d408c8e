// pause.cpp
// A continuous run whose host pauses: what waits, what is lost, and what comes when the host goes on.
#include "storms/pause.h"

#include <chrono>
#include <iostream>
#include <string>
#include <thread>

#include "bimagingdevice.h"
#include "bimagingdevicetrigger.h"
#include "storms/frame_journal.h"
#include "storms/process_census.h"
#include "support/driver_module.h"
#include "support/profile_file.h"
#include "support/simulated_cameras.h"
#include "vimba_simulator.h"

namespace {

constexpr int kWidth = 4096;
constexpr int kHeight = 3000;
constexpr std::size_t kFrameBytes = std::size_t{kWidth} * kHeight;
constexpr std::size_t kMiB = 1U << 20U;
// docs/limits.md: what waits for a host, the ring of frames, and the copies that its workers have begun.
constexpr std::size_t kWaitingBytes = 512 * kMiB;
constexpr std::size_t kRingFrames = 10;
constexpr std::size_t kSlackBytes = 8 * kMiB;
constexpr int kLostBeforeTheHostGoesOn = 25;
constexpr std::uint32_t kTimeoutMs = 5000;
constexpr std::chrono::seconds kPausesAtMost{90};

class Pause {
 public:
  explicit Pause(Findings& findings)
      : m_findings(findings),
        m_journal(findings, 100'000),
        m_cameras(SimulatedCamera().RealTiming().Sensor(kWidth, kHeight).With("scene", "none")) {
    m_journal.AllowOvertaking();
    m_profile.Key("Camera_Identifier", SimulatedCamera::kId);
    m_device = TheModule().create(m_profile.Open());
  }
  ~Pause() { TheModule().release(&m_device); }
  Pause(const Pause&) = delete;
  Pause& operator=(const Pause&) = delete;

  std::uint64_t Run();

 private:
  void Snap(std::uint32_t timeout_ms);
  bool WaitUntilFramesAreLost() const;
  int Count(const char* what) const { return m_cameras.State()[what].get<int>(); }

  Findings& m_findings;
  FrameJournal m_journal;
  SimulatedCameras m_cameras;
  ProfileFile m_profile;
  BImagingDevice* m_device = nullptr;
  std::uint64_t m_snaps = 0;
};

void Pause::Snap(std::uint32_t timeout_ms) {
  ++m_snaps;
  const BError error = m_device->Snap(nullptr, timeout_ms);
  if (error.IsError()) m_findings.Report("a snap of the run fails: " + std::to_string(error.ErrorCode()));
}

bool Pause::WaitUntilFramesAreLost() const {
  const auto deadline = std::chrono::steady_clock::now() + kPausesAtMost;
  while (Count("dropped") < kLostBeforeTheHostGoesOn) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

std::uint64_t Pause::Run() {
  constexpr int kSnapsBefore = 3;
  const std::size_t before = ProcessCensus::Now().resident_bytes;
  m_device->Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
  m_device->StartSnap(false);
  for (int snap = 0; snap < kSnapsBefore; ++snap) Snap(kTimeoutMs);
  if (!WaitUntilFramesAreLost()) m_findings.Report("nothing is lost however long the host pauses");
  const std::size_t grown = ProcessCensus::Now().resident_bytes - before;
  const int lost = Count("dropped");
  if (grown > kWaitingBytes + (kRingFrames + 1) * kFrameBytes + kSlackBytes) m_findings.Report("more memory is in use");
  // What waits now comes without waiting, and what the workers hold follows; then come new frames.
  const int waiting = static_cast<int>(kWaitingBytes / kFrameBytes);
  for (int snap = 0; snap < waiting; ++snap) Snap(0);
  for (std::size_t snap = 0; snap < 2 * kRingFrames; ++snap) Snap(kTimeoutMs);
  const int lost_in_all = Count("dropped");
  m_device->StopSnap();
  if (VimbaSimWaitIdle(kTimeoutMs) != 0) m_findings.Report("the camera does not come to rest");
  m_journal.CheckArrivals();
  const FrameJournal::Counts counts = m_journal.CountsOf(m_device->Name());
  std::cout << "pause: frames of " << kFrameBytes / kMiB << " MiB; " << waiting << " wait for the host, "
            << grown / kMiB << " MiB more are resident; " << lost << " frames lost until the host goes on, "
            << lost_in_all << " until it has caught up; then " << counts.reported << " frames reported, each once, "
            << counts.overtaken << " out of order" << std::endl;
  // The frames that still wait go with the next start.
  m_device->StartSnap(true);
  m_device->StopSnap();
  const std::size_t after = ProcessCensus::Now().resident_bytes;
  std::cout << "pause: " << (after > before ? (after - before) / kMiB : 0) << " MiB more are resident after the run"
            << std::endl;
  if (after > before + kRingFrames * kFrameBytes + kSlackBytes) m_findings.Report("memory stays in use");
  return m_snaps;
}

}  // namespace

std::uint64_t PauseAContinuousRun(Findings& findings) {
  Pause pause(findings);
  return pause.Run();
}
