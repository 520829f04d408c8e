// open_camera_handle.h
// One simulated camera, opened as the driver opens it, for tests of what works on an open camera.
#pragma once

#include <stdexcept>
#include <string>

#include "VimbaC.h"
#include "support/simulated_cameras.h"

// Vimba is started and the camera open with full access for as long as the object lives; calls are recorded from then
// on.
class OpenCameraHandle {
 public:
  explicit OpenCameraHandle(const SimulatedCamera& camera = SimulatedCamera()) : m_link(camera) {
    Check("VmbStartup", VmbStartup());
    Check("VmbCameraOpen", VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, &m_handle));
    m_link.ClearCalls();
  }
  ~OpenCameraHandle() {
    VmbCameraClose(m_handle);
    VmbShutdown();
  }
  OpenCameraHandle(const OpenCameraHandle&) = delete;
  OpenCameraHandle& operator=(const OpenCameraHandle&) = delete;

  VmbHandle_t Handle() const { return m_handle; }
  SimulatedCameras* operator->() { return &m_link; }

 private:
  static void Check(const std::string& call, VmbError_t code) {
    if (code != VmbErrorSuccess) throw std::runtime_error(call + " answers " + std::to_string(code));
  }

  SimulatedCameras m_link;
  VmbHandle_t m_handle = nullptr;
};
