// wire_device.h
// The usual world of a test of the module over the wire: a camera, a profile, and one device opened from it.
#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bbaseaoi.h"
#include "bridge/wire_camera.h"
#include "support/driver_module.h"
#include "support/host_output.h"
#include "support/profile_file.h"

// Change the profile, then Open().
struct WireDevice : testing::Test {
  static constexpr std::uint32_t kDeadlineMs = 10'000;

  HostOutput output;
  ProfileFile profile;
  std::optional<RunningCamera> camera;
  std::optional<OpenDevice> device;

  ~WireDevice() override { device.reset(); }

  // True when the device is open.
  bool Open(const WireCamera& wire_camera = WireCamera()) {
    device.reset();
    camera.reset();
    camera.emplace(wire_camera);
    profile.Key("Camera_Identifier", wire_camera.Id());
    return Reopen();
  }
  bool Reopen() {
    device.reset();
    device.emplace(profile.Open());
    return static_cast<bool>(*device);
  }
  void TakeArea(int left, int top, int width, int height) {
    profile.Key("AOIX", std::to_string(left)).Key("AOIY", std::to_string(top));
    profile.Key("AOIWIDTH", std::to_string(width)).Key("AOIHEIGHT", std::to_string(height));
  }

  BImagingDevice& Device() { return *device->Get(); }
  BError SnapOnce(BBaseAoi* aoi) {
    Device().StartSnap(true);
    BError error = Device().Snap(aoi, kDeadlineMs);
    Device().StopSnap();
    return error;
  }
};
