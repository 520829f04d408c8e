// system/session.h
// One opening of a camera, from VmbCameraOpen to VmbCameraClose.
#pragma once

#include <memory>

#include "VimbaC.h"
#include "camera/camera.h"
#include "engine/acquisition.h"
#include "library/capture_queue.h"

namespace Simulator {

using VimbaLibrary::CaptureQueue;

// With full access it has a capture queue and an acquisition with a thread each, otherwise neither. [any thread]
class Session {
 public:
  Session(VmbHandle_t handle, std::shared_ptr<Camera> camera, VmbAccessMode_t access);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  VmbHandle_t Handle() const { return m_handle; }
  Camera& Device() const { return *m_camera; }
  bool HasFullAccess() const { return m_engine != nullptr; }
  // DeviceNotOpen once the camera has been unplugged, also after it has come back.
  VmbError_t Alive() const;

  // Null without full access.
  CaptureQueue* Frames() const { return m_engine ? &m_engine->frames : nullptr; }
  bool DeliverNow(const FrameOverride& override) { return m_engine && m_engine->acquisition.DeliverNow(override); }
  bool Idle() const { return !m_engine || (m_engine->acquisition.Idle() && m_engine->frames.Idle()); }
  std::uint64_t Activity() const {
    return m_engine ? m_engine->acquisition.Activity() + m_engine->frames.Activity() : 0;
  }
  // Whether the caller runs on a thread of this opening.
  bool OnThread() const;
  // Ends acquisition, capture and both threads. Not on one of them.
  void Close();

 private:
  struct Engine {
    Engine(VmbHandle_t handle, SensorParts parts);
    CaptureQueue frames;
    Acquisition acquisition;
  };

  const VmbHandle_t m_handle;
  const std::shared_ptr<Camera> m_camera;
  const std::uint64_t m_power_cycle;
  const std::unique_ptr<Engine> m_engine;
};

}  // namespace Simulator
