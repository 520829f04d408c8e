// system/session.cpp
// One opening of a camera, from VmbCameraOpen to VmbCameraClose.
#include "system/session.h"

#include <utility>

namespace Simulator {

Session::Engine::Engine(VmbHandle_t handle, SensorParts parts)
    : frames(handle, [this] { acquisition.Wake(); }), acquisition(std::move(parts), frames) {}

Session::Session(VmbHandle_t handle, std::shared_ptr<Camera> camera, VmbAccessMode_t access)
    : m_handle(handle),
      m_camera(std::move(camera)),
      m_power_cycle(m_camera->PowerCycle()),
      m_engine(access == VmbAccessModeFull ? std::make_unique<Engine>(handle, m_camera->Parts()) : nullptr) {
  if (m_engine) m_camera->Attach(m_engine->acquisition);
}

Session::~Session() { Close(); }

VmbError_t Session::Alive() const {
  return m_camera->Plugged() && m_camera->PowerCycle() == m_power_cycle ? VmbErrorSuccess : VmbErrorDeviceNotOpen;
}

bool Session::OnThread() const {
  return m_engine && (m_engine->frames.OnCallbackThread() || m_engine->acquisition.OnThread());
}

void Session::Close() {
  m_camera->Unwatch(m_handle);
  if (!m_engine) return;
  m_camera->Detach(m_engine->acquisition);
  m_engine->acquisition.Close();
  m_engine->frames.Close();
  m_camera->Release(m_handle);
}

}  // namespace Simulator
