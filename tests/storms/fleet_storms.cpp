// fleet_storms.cpp
// Storms over several devices: partners that are released while others snap, lives that overlap.
#include <algorithm>
#include <array>
#include <atomic>
#include <deque>
#include <nlohmann/json.hpp>
#include <optional>
#include <thread>
#include <tuple>
#include <vector>

#include "VimbaC.h"
#include "bimagingdevice.h"
#include "bimagingdevicetrigger.h"
#include "storms/storm.h"
#include "storms/storm_world.h"

namespace {

constexpr std::uint32_t kShortTimeoutMs = 50;

// A device and the host's thread that drives it. All operations on the thread of the exports.
class DrivenDevice {
 public:
  // How the thread drives the device, until it is stopped.
  enum class Way { kSingle, kContinuous };

  DrivenDevice(StormWorld& world, int camera) : m_world(world), m_camera(camera) {}
  ~DrivenDevice() { Release(); }
  DrivenDevice(const DrivenDevice&) = delete;
  DrivenDevice& operator=(const DrivenDevice&) = delete;

  void Open() { m_device = m_world.Open(m_camera); }
  void Drive(Way way) {
    m_over = false;
    m_thread = std::thread([this, way] { way == Way::kSingle ? SnapSingle() : SnapContinuously(); });
  }
  // No operation runs once the thread has ended; the others go on.
  void Release() {
    m_over = true;
    if (m_thread.joinable()) m_thread.join();
    if (m_device) m_world.Release(m_device);
  }
  BImagingDevice* Get() const { return m_device; }

 private:
  void SnapSingle() {
    while (!m_over) m_world.SnapOnce(*m_device, m_camera);
  }
  void SnapContinuously() {
    while (!m_over) {
      if (!m_world.Start(*m_device, false)) continue;
      constexpr int kFrames = 20;
      for (int frame = 0; frame < kFrames && !m_over; ++frame) {
        std::ignore = m_world.Snap(*m_device, m_camera, kShortTimeoutMs);
      }
      // As often as not the device is released while it runs.
      if (!m_over) m_world.Stop(*m_device);
    }
  }

  StormWorld& m_world;
  const int m_camera;
  BImagingDevice* m_device = nullptr;
  std::atomic<bool> m_over = false;
  std::thread m_thread;
};

std::vector<SimulatedCamera> Cameras(int count) {
  std::vector<SimulatedCamera> cameras;
  for (int number = 1; number <= count; ++number) cameras.emplace_back(number);
  return cameras;
}

using Fleet = std::deque<DrivenDevice>;

void MakePartners(const Fleet& fleet, const DrivenDevice& added) {
  for (const DrivenDevice& other : fleet) {
    if (&other == &added || !other.Get() || !added.Get()) continue;
    added.Get()->AddBandwidthPartner(other.Get());
    other.Get()->AddBandwidthPartner(added.Get());
  }
}

// Frames are lost here and there, so that partners are told to give up.
void LoseFrames(StormWorld& world, int cameras, Random& random) {
  constexpr int kLost = 6;
  world.Link().ClearFaults();
  for (int lost = 0; lost < kLost; ++lost) {
    const std::array kinds{nlohmann::json{{"status", VmbFrameStatusIncomplete}},
                           nlohmann::json{{"status", VmbFrameStatusTooSmall}},
                           nlohmann::json{{"status", VmbFrameStatusInvalid}}, nlohmann::json{{"drop", true}}};
    nlohmann::json fault = kinds.at(static_cast<std::size_t>(random.Below(static_cast<int>(kinds.size()))));
    fault["frame"] = random.Below(10);
    fault["camera"] = StormWorld::IdOf(random.Between(1, cameras));
    world.Link().Fault(fault);
  }
}

void ReleasePartners(Findings& findings, Random& random, int count) {
  constexpr int kReleases = 6;
  StormWorld world(findings, Cameras(count));
  Fleet fleet;
  for (int number = 1; number <= count; ++number) fleet.emplace_back(world, number);
  for (DrivenDevice& device : fleet) device.Open();
  for (DrivenDevice& device : fleet) MakePartners(fleet, device);
  const auto drive = [&](DrivenDevice& device) {
    if (device.Get()) device.Drive(random.OneIn(2) ? DrivenDevice::Way::kSingle : DrivenDevice::Way::kContinuous);
  };
  for (DrivenDevice& device : fleet) drive(device);
  for (int release = 0; release < kReleases; ++release) {
    LoseFrames(world, count, random);
    DrivenDevice& device = fleet[static_cast<std::size_t>(random.Below(count))];
    device.Release();
    if (random.OneIn(3)) world.List();
    device.Open();
    MakePartners(fleet, device);
    drive(device);
  }
  while (!fleet.empty()) random.OneIn(2) ? fleet.pop_back() : fleet.pop_front();
}

// One call of a host to any device, which may be in the hands of another thread.
void AnyCallToAPartner(StormWorld& world, Fleet& fleet, Random& random) {
  const int camera = random.Between(1, static_cast<int>(fleet.size()));
  BImagingDevice& device = *fleet[static_cast<std::size_t>(camera) - 1].Get();
  BImagingDevice* const other = fleet[static_cast<std::size_t>(random.Below(static_cast<int>(fleet.size())))].Get();
  switch (random.Below(8)) {
    case 0:
      device.AddBandwidthPartner(other);
      return;
    case 1:
      device.RemoveBandwidthPartner(other);
      return;
    case 2:
      std::ignore = device.SetBandwidth(random.Between(1'000'000, 124'000'000));
      return;
    case 3:
      std::ignore = device.GetBandwidth();
      return;
    case 4:
      world.Start(device, random.OneIn(2));
      return;
    case 5:
      world.Stop(device);
      return;
    default:
      std::ignore = world.Snap(device, camera, static_cast<std::uint32_t>(random.Below(20)));
  }
}

}  // namespace

void ReleaseTwoPartners(Findings& findings, Random& random) { ReleasePartners(findings, random, 2); }

void ReleaseFourPartners(Findings& findings, Random& random) { ReleasePartners(findings, random, 4); }

// The watchdog ends what waits for itself.
void SnapPartnersFromAnyThread(Findings& findings, Random& random) {
  constexpr int kDevices = 4;
  constexpr int kThreads = 4;
  constexpr int kRounds = 5;
  constexpr int kCalls = 40;
  StormWorld world(findings, Cameras(kDevices));
  Fleet fleet;
  for (int number = 1; number <= kDevices; ++number) fleet.emplace_back(world, number);
  for (DrivenDevice& device : fleet) device.Open();
  if (std::any_of(fleet.begin(), fleet.end(), [](const DrivenDevice& device) { return !device.Get(); })) return;
  for (DrivenDevice& device : fleet) MakePartners(fleet, device);
  for (int round = 0; round < kRounds; ++round) {
    LoseFrames(world, kDevices, random);
    std::vector<std::thread> hosts;
    hosts.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
      hosts.emplace_back([&, seed = random.Seed()] {
        Random own(seed);
        for (int call = 0; call < kCalls; ++call) AnyCallToAPartner(world, fleet, own);
      });
    }
    for (std::thread& host : hosts) host.join();
  }
}

void CreateAndReleaseInterleaved(Findings& findings, Random& random) {
  constexpr int kDevices = 4;
  constexpr int kActions = 16;
  StormWorld world(findings, Cameras(kDevices));
  Fleet fleet;
  for (int number = 1; number <= kDevices; ++number) fleet.emplace_back(world, number);
  for (int action = 0; action < kActions; ++action) {
    DrivenDevice& device = fleet[static_cast<std::size_t>(random.Below(kDevices))];
    if (random.OneIn(4)) {
      world.List();
    } else if (device.Get()) {
      device.Release();
    } else {
      device.Open();
      if (!device.Get()) continue;
      device.Get()->Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
      device.Drive(DrivenDevice::Way::kContinuous);
    }
  }
}
