// bench_session.cpp
// One opened device on a simulated camera that answers at once, and a look at the library calls it makes.
#include "bench_session.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "bcamprofile.h"
#include "vimba_simulator.h"

namespace {

std::atomic<const VmbFrame_t*> watched_frame{nullptr};
std::atomic<bool> watched_frame_is_back{false};

constexpr char kCameraId[] = "DEV_BENCH";
// Bytes per second: ten gigabit and a little, for 240 frames/s with the packets' heads.
constexpr double kLinkCapacity = 1.3e9;

std::filesystem::path WriteProfile() {
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("kel_bench_" + std::to_string(getpid()) + ".ini");
  std::ofstream(path) << "API=Vimba\nCamera_Identifier=" << kCameraId << "\nBayertype=RGGB\n";
  return path;
}

void ConfigureCamera(int width, int height, const nlohmann::json& more) {
  nlohmann::json camera = {{"id", kCameraId},
                           {"name", "Bench"},
                           {"sensor", {{"width", width}, {"height", height}, {"type", "mono"}}},
                           {"timing", "instant"}};
  camera.merge_patch(more);
  if (VimbaSimConfigure(
          nlohmann::json{{"cameras", {camera}}, {"link", {{"capacity", kLinkCapacity}}}}.dump().c_str()) != 0) {
    throw std::runtime_error(VimbaSimLastError());
  }
}

}  // namespace

BenchSession::BenchSession(int width, int height, const nlohmann::json& more) : m_profile(WriteProfile()) {
  ConfigureCamera(width, height, more);
  m_system = VimbaInitialization::Open(nullptr);
  m_device = std::make_unique<BVimbaImagingDeviceImpl>();
  if (!m_system || !m_device->Initialize(new BCamProfile(WString(m_profile.wstring())))) {
    throw std::runtime_error("the simulated camera cannot be opened");
  }
}

BenchSession::~BenchSession() {
  m_device.reset();
  m_system = nullptr;
  std::filesystem::remove(m_profile);
}

void WatchFrame(const VmbFrame_t* frame) {
  watched_frame_is_back = false;
  watched_frame = frame;
}

void WaitForWatchedFrame() {
  while (!watched_frame_is_back) std::this_thread::yield();
}

// Found by the module's calls before the library's own: the program comes first in the search for symbols.
extern "C" VmbError_t VmbCaptureFrameQueue(VmbHandle_t camera, const VmbFrame_t* frame, VmbFrameCallback callback) {
  if (frame == watched_frame) {
    watched_frame_is_back = true;
    return VmbErrorSuccess;
  }
  static const auto kLibraryCall =
      reinterpret_cast<decltype(&VmbCaptureFrameQueue)>(dlsym(RTLD_NEXT, "VmbCaptureFrameQueue"));
  return kLibraryCall(camera, frame, callback);
}

std::int64_t ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  std::int64_t total = 0;
  std::int64_t resident = 0;
  statm >> total >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}
