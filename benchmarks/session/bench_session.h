// bench_session.h
// One opened device on a simulated camera that answers at once, and a look at the library calls it makes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "VimbaC.h"
#include "bsmartref.h"
#include "camera/vimba_imaging_device_impl.h"
#include "vimba/vimba_initialization.h"

class BenchSession {
 public:
  // A monochrome camera of this size; what is in `more` (members of a camera's configuration) comes on top. Throws
  // std::runtime_error when the device cannot be opened.
  BenchSession(int width, int height, const nlohmann::json& more = nlohmann::json::object());
  ~BenchSession();
  BenchSession(const BenchSession&) = delete;
  BenchSession& operator=(const BenchSession&) = delete;

  BVimbaImagingDeviceImpl& Device() { return *m_device; }

 private:
  std::filesystem::path m_profile;
  BSmartRef<VimbaInitialization> m_system;
  std::unique_ptr<BVimbaImagingDeviceImpl> m_device;
};

// This program stands between the module and the library at one call: a frame that comes back here has just been pushed
// into the frame queue. A frame that was given to WatchFrame is kept instead of being handed on.
void WatchFrame(const VmbFrame_t* frame);
// Waits, spinning, until the watched frame has come back.
void WaitForWatchedFrame();

// Bytes of this process in physical memory.
std::int64_t ResidentBytes();
