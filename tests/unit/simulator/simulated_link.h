// simulated_link.h
// Simulated cameras in use.
#pragma once

#include <string>
#include <vector>

#include "support/frame_ring.h"
#include "support/simulated_cameras.h"
#include "vimba_simulator.h"

// What the functions of vimba_simulator.h answer.
inline constexpr int kAccepted = 0;
inline constexpr int kRefused = 1;

// Simulated cameras with the API started.
struct StartedCameras {
  SimulatedCameras cameras;
  StartedApi api;

  explicit StartedCameras(const SimulatedCamera& camera = SimulatedCamera()) : cameras(camera) {}
  explicit StartedCameras(const std::vector<SimulatedCamera>& all, const nlohmann::json& system = nullptr)
      : cameras(all, system) {}
};

// The first of them, opened.
struct OpenedHandle : CameraHandle {
  explicit OpenedHandle(const std::string& id = SimulatedCamera::kId, VmbAccessMode_t access = VmbAccessModeFull)
      : CameraHandle(id, access) {}
};

// Returns when no callback runs and no frame is due at once. The test fails when that takes too long.
void WaitIdle();
std::string RecordedCalls();
