// device_storms.cpp
// Storms over one device: released while frames stream, triggered from two sides, driven from many threads, unloaded.
#include <atomic>
#include <thread>
#include <tuple>
#include <vector>

#include "VimbaC.h"
#include "bimagingdevice.h"
#include "bimagingdevicetrigger.h"
#include "storms/storm.h"
#include "storms/storm_world.h"
#include "vimba_simulator.h"

namespace {

constexpr std::uint32_t kShortTimeoutMs = 50;
constexpr std::uint32_t kLongTimeoutMs = 5000;

// Copying a frame takes a worker longer than the camera takes for the next, as its buffers keep their bytes.
SimulatedCamera LargeCamera() { return SimulatedCamera().Sensor(640, 480).With("scene", "none"); }

// The library goes on calling back until the camera is closed.
void RefuseToStop(StormWorld& world) {
  world.Link().FailCall("VmbFeatureCommandRun", "AcquisitionStop", VmbErrorOther);
  world.Link().FailCall("VmbCaptureEnd", "", VmbErrorOther);
}

// Frames come as fast as they are handed back.
void StreamAndRelease(StormWorld& world, Random& random) {
  BImagingDevice* device = world.Open(1);
  if (!device) return;
  device->Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
  if (world.Start(*device, false)) {
    for (int snaps = random.Below(4); snaps > 0; --snaps) {
      if (device->Snap(nullptr, kLongTimeoutMs).IsError()) world.Found().Report("a running camera gives no frame");
    }
    if (random.OneIn(4)) world.Stop(*device);
  }
  for (int turns = random.Below(200); turns > 0; --turns) std::this_thread::yield();
  const bool refused = random.OneIn(4);
  if (refused) RefuseToStop(world);
  world.Release(device);
  if (refused) world.Link().ClearFaults();
}

// One cycle of a host that switches between its line and its own command.
void TriggerOnce(StormWorld& world, BImagingDevice& device, Random& random) {
  BImagingDeviceTrigger& trigger = *device.Trigger();
  trigger.SetExternal(random.OneIn(2));
  if (random.OneIn(4)) trigger.SetActivation(random.Below(2));
  const bool one_shot = !random.OneIn(3);
  if (!world.Start(device, one_shot)) return;
  for (int snaps = one_shot ? 1 : random.Below(5); snaps > 0; --snaps) {
    // Does nothing while the trigger is external.
    if (!one_shot) trigger.Fire();
    std::ignore = world.Snap(device, 1, kShortTimeoutMs);
  }
  world.Stop(device);
}

void AnyCall(StormWorld& world, BImagingDevice& device, Random& random) {
  switch (random.Below(4)) {
    case 0:
      world.Start(device, random.OneIn(2));
      break;
    case 1:
      world.Stop(device);
      break;
    default:
      std::ignore = world.Snap(device, 1, static_cast<std::uint32_t>(random.Below(20)));
  }
}

}  // namespace

void ReleaseWhileStreaming(Findings& findings, Random& random) {
  constexpr int kReleases = 10;
  StormWorld world(findings, {LargeCamera()});
  for (int release = 0; release < kReleases; ++release) StreamAndRelease(world, random);
}

void RaceTriggers(Findings& findings, Random& random) {
  constexpr int kCycles = 25;
  StormWorld world(findings, {SimulatedCamera(1)});
  BImagingDevice* device = world.Open(1);
  if (!device) return;
  std::atomic<bool> over = false;
  std::thread line([&] {
    constexpr int kLine = 2;
    for (int level = 1; !over; level = 1 - level) {
      VimbaSimSetLine(SimulatedCamera::kId, kLine, level);
      std::this_thread::yield();
    }
  });
  for (int cycle = 0; cycle < kCycles; ++cycle) TriggerOnce(world, *device, random);
  over = true;
  line.join();
  world.Release(device);
}

void SnapFromManyThreads(Findings& findings, Random& random) {
  constexpr int kThreads = 4;
  constexpr int kCalls = 40;
  StormWorld world(findings, {SimulatedCamera(1)});
  BImagingDevice* device = world.Open(1);
  if (!device) return;
  if (random.OneIn(2)) device->Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
  std::vector<std::thread> hosts;
  hosts.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    hosts.emplace_back([&, seed = random.Seed()] {
      Random own(seed);
      for (int call = 0; call < kCalls; ++call) AnyCall(world, *device, own);
    });
  }
  for (std::thread& host : hosts) host.join();
  world.Release(device);
}

// The world unloads the module as its first act once it goes.
void UnloadAtOnce(Findings& findings, Random& random) {
  StormWorld world(findings, {LargeCamera()});
  if (random.OneIn(4)) world.List();
  StreamAndRelease(world, random);
}
