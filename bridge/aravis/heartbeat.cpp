// heartbeat.cpp
// The thread by which Aravis notices that a camera is gone.
#include "aravis/heartbeat.h"

#include <cstdint>
#include <thread>

#include "aravis/errors.h"

namespace Bridge {
namespace {

// Control channel privilege: who controls the camera.
constexpr std::uint64_t kPrivilege = 0x0a00;
constexpr std::uint32_t kControlled = 3;  // exclusively or not
constexpr std::chrono::milliseconds kPause{10};

bool IsControlled(ArvDevice* device) {
  ErrorSlot slot;
  std::uint32_t privilege = 0;
  return arv_device_read_register(device, kPrivilege, &privilege, slot.Take()) && (privilege & kControlled) != 0;
}

}  // namespace

void AwaitVerdict(ArvDevice* device, bool is_silent) {
  if (!ARV_IS_GV_DEVICE(device)) return;
  ArvGvDevice* const camera = ARV_GV_DEVICE(device);
  if (!is_silent && arv_gv_device_is_controller(camera) && IsControlled(device)) return;
  const auto deadline = std::chrono::steady_clock::now() + kLongestVerdict;
  // It gives up control when the report has ended.
  while (arv_gv_device_is_controller(camera) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace Bridge
