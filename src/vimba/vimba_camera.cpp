// vimba_camera.cpp
// The opened camera that a device and its parts work on: its handle and the names under which it is known.
#include "vimba/vimba_camera.h"

#include <utility>

#include "diagnostics/camera_prefix.h"

void VimbaCamera::SetNames(WString unique_id, WString identifier) noexcept {
  m_unique_id = std::move(unique_id);
  m_identifier = std::move(identifier);
}

VmbError_t VimbaCamera::Close() { return VmbCameraClose(std::exchange(m_handle, nullptr)); }

WString VimbaCamera::Prefix() const { return CameraPrefix(m_identifier); }
