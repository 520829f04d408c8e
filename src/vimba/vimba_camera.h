// vimba_camera.h
// The opened camera that a device and its parts work on: its handle and the names under which it is known.
#pragma once

#include "VimbaC.h"
#include "wstring.h"

// Closed until a camera has been found and opened for it. Its device writes it while no other thread knows the device;
// from the first callback until the last worker has ended it does not change. Reading: [any thread].
class VimbaCamera {
 public:
  // Takes over an open camera, before anything else that may fail: whoever is left with it closes it. [host thread]
  void Adopt(VmbHandle_t handle) noexcept { m_handle = handle; }
  // `unique_id` is the text by which it was opened, `identifier` the one for the host. [host thread]
  void SetNames(WString unique_id, WString identifier) noexcept;
  // Closes the camera, once, whatever the library answers; the names stay. [host thread]
  [[nodiscard]] VmbError_t Close();

  VmbHandle_t Handle() const { return m_handle; }  // null while closed
  bool IsOpen() const { return m_handle != nullptr; }
  const WString& UniqueId() const { return m_unique_id; }
  const WString& Identifier() const { return m_identifier; }
  // How the title of a message about this camera begins; it names the calling thread.
  WString Prefix() const;

 private:
  VmbHandle_t m_handle = nullptr;
  WString m_unique_id;
  WString m_identifier;
};
