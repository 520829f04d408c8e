// vimba_session.h
// Cameras as the VimbaC library shows them, for what a module's interface does not say.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "VimbaC.h"
#include "library/vimba_library.h"

namespace Kelcam {

// A camera in the library's list. Texts are UTF-8, as the camera has them.
struct CameraRecord {
  std::string id, name, model, serial;
  VmbAccessMode_t permitted_access = VmbAccessModeNone;
};

// The library, started for as long as the object lives. A module that starts it too counts its own start.
class VimbaSession {
 public:
  // Throws Failure when the library does not start. The library outlives the session.
  explicit VimbaSession(const VimbaLibrary& library);
  ~VimbaSession();
  VimbaSession(const VimbaSession&) = delete;
  VimbaSession& operator=(const VimbaSession&) = delete;

  // Asks the network and returns the cameras in the library's order, which is that of a module's list.
  std::vector<CameraRecord> Cameras() const;
  // How the camera with this id, serial number or address may be opened. None: the library knows no such camera.
  std::optional<VmbAccessMode_t> PermittedAccess(const std::string& id) const;
  // The id of the camera with this id, serial number or address. None: the library knows no such camera.
  std::optional<std::string> IdOf(const std::string& name) const;
  const VimbaLibrary& Library() const { return m_library; }

 private:
  const VimbaLibrary& m_library;
};

// A camera's features, from opening to closing.
class OpenedCamera {
 public:
  // id: what the library takes for one: a camera's id, serial number or address. See Code() for whether it opened.
  OpenedCamera(const VimbaSession& session, const std::string& id, VmbAccessMode_t access);
  ~OpenedCamera();
  OpenedCamera(const OpenedCamera&) = delete;
  OpenedCamera& operator=(const OpenedCamera&) = delete;

  bool IsOpen() const { return m_code == VmbErrorSuccess; }
  VmbError_t Code() const { return m_code; }

  // None where the camera does not answer, or has no such feature.
  std::optional<std::int64_t> Integer(const char* feature) const;
  std::optional<std::pair<std::int64_t, std::int64_t>> IntegerRange(const char* feature) const;
  std::optional<double> Number(const char* feature) const;
  std::optional<std::string> Entry(const char* feature) const;
  // Of a feature that is a text; its first 255 bytes.
  std::optional<std::string> Text(const char* feature) const;
  // Whether the camera took it.
  bool SetEntry(const char* feature, const std::string& entry) const;
  // "169.254.76.101"; none where the camera reports none.
  std::optional<std::string> Address() const;

 private:
  const VimbaLibrary& m_library;
  VmbHandle_t m_handle = nullptr;
  VmbError_t m_code;
};

}  // namespace Kelcam
