// opened_camera.h
// The usual world of a driver test: simulated cameras, a profile, and one device opened from it.
#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "support/driver_module.h"
#include "support/host_output.h"
#include "support/profile_file.h"
#include "support/simulated_cameras.h"

using Texts = std::vector<std::wstring>;

// Set up the cameras, change the profile, then Open().
struct OpenedCamera : testing::Test {
  HostOutput output;
  ProfileFile profile;
  std::optional<SimulatedCameras> cameras;
  std::optional<OpenDevice> device;

  OpenedCamera() { profile.Key("Camera_Identifier", SimulatedCamera::kId); }
  ~OpenedCamera() override { device.reset(); }

  // True when the device is open; the host output and the record of calls begin anew then.
  bool Open(const SimulatedCamera& camera = SimulatedCamera()) {
    cameras.emplace(camera);
    return Reopen();
  }
  bool Reopen() {
    device.reset();
    device.emplace(profile.Open());
    return static_cast<bool>(*device);
  }
  // A camera that delivers large frames by itself to a host that takes none. True once the device holds as many as its
  // bound of memory allows and the whole ring waits for the next block.
  bool OpenHeldBack() {
    constexpr int kWidth = 4096;
    constexpr int kHeight = 3000;
    if (!Open(SimulatedCamera().Sensor(kWidth, kHeight).With("scene", "none"))) return false;
    Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
    Forget();
    Device().StartSnap(false);
    held_frames = kMostBytesInUse / (std::size_t{kWidth} * kHeight) + cameras->State()["announced"].get<std::size_t>();
    return WaitForFrames(held_frames);
  }
  // Until that many have arrived since the host output was cleared.
  bool WaitForFrames(std::size_t count) const {
    return output.WaitForDiagnostic(L"OnFrameExt()", count, std::chrono::seconds(60));
  }
  static constexpr std::size_t kMostBytesInUse = 512U << 20U;
  std::size_t held_frames = 0;

  void Forget() {
    output.Clear();
    cameras->ClearCalls();
  }

  BImagingDevice& Device() { return *device->Get(); }

  // The lines of the one message with this title end, without numbers and times; the title shortened to its label.
  Texts Message(const std::wstring& label) const {
    const Texts messages = output.Diagnostics(label);
    if (messages.size() != 1) return {L"there are " + std::to_wstring(messages.size()) + L" such messages"};
    Texts lines = LinesOf(messages.front());
    const std::wstring prefix = L"Camera 1 (Vimba_Manta-G-507B_50-0503340001) : Thread ID = # : ";
    if (lines.front().rfind(prefix, 0) == 0) lines.front().erase(0, prefix.size());
    return lines;
  }
  Texts Failures() const { return output.WithCaption(L"!"); }
};
