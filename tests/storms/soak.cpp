// soak.cpp
// Many thousand snaps on two cameras that are partners, some of them with a fault.
#include "storms/soak.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "VimbaC.h"
#include "bimagingdevice.h"
#include "bimagingdevicetrigger.h"
#include "storms/frame_journal.h"
#include "storms/process_census.h"
#include "support/driver_module.h"
#include "support/profile_file.h"
#include "support/random.h"
#include "support/simulated_cameras.h"
#include "vimba_simulator.h"

namespace {

using nlohmann::json;

// Where the figures settle: the pools of the allocator, the stacks that the threads library keeps.
constexpr std::uint64_t kSettlingSnaps = 2'000;
constexpr std::size_t kGrowthBytes = 2U << 20U;
constexpr int kOneFaultIn = 20;
constexpr int kOneContinuousRoundIn = 10;
constexpr int kContinuousSnaps = 10;
// Where a frame must come it may be late on a busy machine; where a fault has taken it, nothing comes.
constexpr std::uint32_t kPatientMs = 10'000;
constexpr std::uint32_t kTimeoutMs = 200;
constexpr std::uint32_t kIdleWithinMs = 10'000;
// A frame that cannot be queued again is lost to its ring of ten.
constexpr int kMostLostFrames = 5;

// One of two cameras. Rates in bytes per second.
struct Partner {
  int number;
  std::int64_t lowest_rate;
  std::int64_t highest_rate;
  BImagingDevice* device = nullptr;
  std::int64_t lowest_seen = std::numeric_limits<std::int64_t>::max();
  std::int64_t highest_seen = 0;
  int lost_frames = 0;
  bool started = false;
};

std::string IdOf(const Partner& partner) { return "DEV_000F3100000" + std::to_string(partner.number); }

const std::vector<json>& FrameFaults() {
  static const std::vector<json> kFaults{
      {{"status", VmbFrameStatusIncomplete}},
      {{"status", VmbFrameStatusTooSmall}},
      {{"status", VmbFrameStatusInvalid}},
      {{"drop", true}},
      {{"timestamp", 1}},
  };
  return kFaults;
}

const std::vector<json>& CallFaults() {
  static const auto kCommand = [](const char* feature, VmbError_t error) {
    return json{{"call", "VmbFeatureCommandRun"}, {"feature", feature}, {"error", error}};
  };
  static const std::vector<json> kFaults{
      kCommand("AcquisitionStart", VmbErrorTimeout),
      kCommand("AcquisitionStop", VmbErrorTimeout),
      kCommand("TriggerSoftware", VmbErrorTimeout),
      kCommand("GevTimestampControlLatch", VmbErrorTimeout),
      {{"call", "VmbFeatureEnumSet"}, {"feature", "AcquisitionMode"}, {"error", VmbErrorInvalidAccess}},
      {{"call", "VmbFeatureIntGet"}, {"feature", "StreamBytesPerSecond"}, {"error", VmbErrorTimeout}},
      {{"call", "VmbFeatureIntSet"}, {"feature", "StreamBytesPerSecond"}, {"error", VmbErrorTimeout}},
      {{"call", "VmbFeatureIntGet"}, {"feature", "GevTimestampValue"}, {"error", VmbErrorTimeout}},
      {{"call", "VmbCaptureFrameQueue"}, {"error", VmbErrorResources}},
  };
  return kFaults;
}

class Soak {
 public:
  Soak(const SoakOptions& options, Findings& findings)
      : m_options(options),
        m_findings(findings),
        m_random(options.seed),
        m_journal(findings, 4 * options.snaps),
        m_cameras({SimulatedCamera(1).Range("StreamBytesPerSecond", 1'000'000, 124'000'000),
                   SimulatedCamera(2).Range("StreamBytesPerSecond", 1'000'000, 124'000'000)}) {
    m_profiles[1].Key("BYTEPERSECOND", "90000000");
    for (std::size_t i = 0; i < m_partners.size(); ++i) {
      m_profiles.at(i).Key("Camera_Identifier", IdOf(m_partners.at(i)));
      m_partners.at(i).device = TheModule().create(m_profiles.at(i).Open());
    }
    m_partners[0].device->AddBandwidthPartner(m_partners[1].device);
    m_partners[1].device->AddBandwidthPartner(m_partners[0].device);
  }
  ~Soak() {
    for (Partner& partner : m_partners) TheModule().release(&partner.device);
  }
  Soak(const Soak&) = delete;
  Soak& operator=(const Soak&) = delete;

  std::uint64_t Run(Watchdog& watchdog) {
    ProcessCensus settled;
    while (m_snaps < m_options.snaps) {
      watchdog.Feed();
      const std::uint64_t before = m_snaps;
      Round();
      if (before / kSettlingSnaps == m_snaps / kSettlingSnaps) continue;
      if (VimbaSimWaitIdle(kIdleWithinMs) != 0) m_findings.Report("the cameras do not come to rest");
      m_journal.CheckArrivals();
      const ProcessCensus now = ProcessCensus::Now();
      if (before < kSettlingSnaps) settled = now;
      Compare(settled, now);
    }
    PrintFigures();
    return m_snaps;
  }

 private:
  void Round();
  void AddFault(int snaps_of_round);
  void SnapBoth(bool continuous, bool must_succeed);
  void Start(Partner& partner, bool one_shot);
  void Stop(Partner& partner);
  void CheckRate(Partner& partner);
  void Compare(const ProcessCensus& settled, const ProcessCensus& now);
  void PrintFigures();

  const SoakOptions m_options;
  Findings& m_findings;
  Random m_random;
  FrameJournal m_journal;
  SimulatedCameras m_cameras;
  std::array<ProfileFile, 2> m_profiles;
  std::array<Partner, 2> m_partners{{{.number = 1, .lowest_rate = 45'000'000, .highest_rate = 124'000'000},
                                     {.number = 2, .lowest_rate = 45'000'000, .highest_rate = 90'000'000}}};
  std::uint64_t m_snaps = 0;
  std::uint64_t m_failed = 0;
  std::uint64_t m_faults = 0;
  int m_faults_of_round = 0;
  // A failure to queue a frame again is reported by whichever snap comes next.
  bool m_queueing_fails = false;
};

// Both cameras start, snap and stop; what is late from a fault has come before the next round begins.
void Soak::Round() {
  const bool continuous = m_random.OneIn(kOneContinuousRoundIn);
  const int snaps = continuous ? kContinuousSnaps : 1;
  m_faults_of_round = 0;
  const bool queueing_failed = std::exchange(m_queueing_fails, false);
  for (int i = 0; i < 2 * snaps; ++i) {
    if (m_random.OneIn(kOneFaultIn)) AddFault(snaps);
  }
  const bool must_succeed = m_faults_of_round == 0 && !queueing_failed;
  for (Partner& partner : m_partners) Start(partner, !continuous);
  for (int snap = 0; snap < snaps; ++snap) SnapBoth(continuous, must_succeed);
  for (Partner& partner : m_partners) Stop(partner);
  if (m_faults_of_round != 0) {
    m_cameras.ClearFaults();
    if (VimbaSimWaitIdle(kIdleWithinMs) != 0) m_findings.Report("the cameras do not come to rest");
  }
  for (Partner& partner : m_partners) CheckRate(partner);
}

void Soak::AddFault(int snaps_of_round) {
  Partner& partner = m_partners.at(static_cast<std::size_t>(m_random.Below(2)));
  const std::vector<json>& kinds = m_random.OneIn(2) ? FrameFaults() : CallFaults();
  json fault = kinds.at(static_cast<std::size_t>(m_random.Below(static_cast<int>(kinds.size()))));
  fault["camera"] = IdOf(partner);
  if (!fault.contains("call")) {
    fault["frame"] = m_random.Below(snaps_of_round);
  } else if (fault["call"] == "VmbCaptureFrameQueue") {
    if (partner.lost_frames == kMostLostFrames) return;
    ++partner.lost_frames;
    m_queueing_fails = true;
  }
  m_cameras.Fault(fault);
  ++m_faults;
  ++m_faults_of_round;
}

void Soak::SnapBoth(bool continuous, bool must_succeed) {
  // In a continuous run a snap does not trigger.
  for (Partner& partner : m_partners) {
    if (continuous) partner.device->Trigger()->Fire();
  }
  for (Partner& partner : m_partners) {
    if (!partner.started) continue;
    const BError error = partner.device->Snap(nullptr, must_succeed ? kPatientMs : kTimeoutMs);
    ++m_snaps;
    if (!error.IsError()) continue;
    ++m_failed;
    if (must_succeed) m_findings.Report("a snap fails without a fault: " + std::to_string(error.ErrorCode()));
  }
}

void Soak::Start(Partner& partner, bool one_shot) {
  partner.started = false;
  try {
    partner.device->StartSnap(one_shot);
    partner.started = true;
  } catch (const BError&) {
    if (m_faults_of_round == 0) m_findings.Report("a start fails without a fault");
  }
}

// A camera that has refused is asked again; with several faults more than once.
void Soak::Stop(Partner& partner) {
  for (int tries = 0; tries <= m_faults_of_round; ++tries) {
    try {
      partner.device->StopSnap();
      return;
    } catch (const BError&) {
      if (m_faults_of_round == 0) m_findings.Report("a stop fails without a fault");
    }
  }
  m_findings.Report("a camera cannot be stopped");
}

void Soak::CheckRate(Partner& partner) {
  const std::int64_t rate = partner.device->GetBandwidth();
  partner.lowest_seen = std::min(partner.lowest_seen, rate);
  partner.highest_seen = std::max(partner.highest_seen, rate);
  if (rate < partner.lowest_rate || rate > partner.highest_rate) {
    m_findings.Report("camera " + std::to_string(partner.number) + " streams " + std::to_string(rate) + " bytes/s");
  }
}

void Soak::Compare(const ProcessCensus& settled, const ProcessCensus& now) {
  std::cout << "after " << m_snaps << " snaps: " << now.resident_bytes / 1024 << " KiB resident, " << now.threads
            << " threads, " << now.descriptors << " descriptors" << std::endl;
  if (now.threads > settled.threads) m_findings.Report("there are more threads");
  if (now.descriptors > settled.descriptors) m_findings.Report("there are more descriptors");
  if (now.resident_bytes > settled.resident_bytes + kGrowthBytes) m_findings.Report("more memory is resident");
}

void Soak::PrintFigures() {
  std::cout << m_snaps << " snaps, " << m_faults << " faults, " << m_failed << " snaps failed; " << m_journal.Messages()
            << " messages" << std::endl;
  for (const Partner& partner : m_partners) {
    const std::wstring name = partner.device->Name();
    const FrameJournal::Counts counts = m_journal.CountsOf(name);
    std::cout << "camera " << partner.number << ": " << counts.reported << " frames reported, each once, "
              << counts.overtaken << " out of order; rate " << partner.lowest_seen << " to " << partner.highest_seen
              << " of " << partner.lowest_rate << " to " << partner.highest_rate << " bytes/s; " << partner.lost_frames
              << " frames of its ring lost" << std::endl;
  }
}

}  // namespace

std::uint64_t SoakPartners(const SoakOptions& options, Findings& findings, Watchdog& watchdog) {
  Soak soak(options, findings);
  return soak.Run(watchdog);
}
