// opened_implementation.h
// A camera's implementation object on a simulated camera, without the device around it.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "acquisition/module_threads.h"
#include "camera/vimba_imaging_device_impl.h"
#include "support/host_output.h"
#include "support/profile_file.h"
#include "support/simulated_cameras.h"
#include "vimba/vimba_initialization.h"

// In a continuous acquisition that nothing triggers: what comes is what a test delivers.
struct OpenedImplementation : testing::Test {
  // First, and so the last to go: a worker that the object no longer waits for still has to end.
  struct AllThreadsEnd {
    ~AllThreadsEnd() { ModuleThreads().WaitForAll(); }
  } threads;
  HostOutput output;
  SimulatedCameras cameras;
  ProfileFile profile;
  BSmartRef<VimbaInitialization> system = VimbaInitialization::Open(nullptr);
  BVimbaImagingDeviceImpl implementation;

  explicit OpenedImplementation(const SimulatedCamera& camera = SimulatedCamera()) : cameras(camera) {}

  void SetUp() override {
    profile.Key("Camera_Identifier", SimulatedCamera::kId);
    ASSERT_TRUE(implementation.Initialize(profile.Open()));
    implementation.StartSnap(false);
    output.Clear();
    cameras.ClearCalls();
  }

  BError Snap(std::uint32_t timeout_ms = 30'000) { return implementation.Snap(nullptr, timeout_ms, 0); }
  int QueuedFrames() const { return cameras.State()["queued"].get<int>(); }
  bool AllFramesComeBack() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (QueuedFrames() != 10 && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
    return QueuedFrames() == 10;
  }
  // The lines of the one message with this title's end, the title itself left away.
  std::vector<std::wstring> Lines(const std::wstring& title_end) const {
    const std::vector<std::wstring> messages = output.Diagnostics(title_end);
    if (messages.size() != 1) return {std::to_wstring(messages.size()) + L" messages"};
    std::vector<std::wstring> lines = LinesOf(messages.front());
    lines.erase(lines.begin());
    return lines;
  }
};
