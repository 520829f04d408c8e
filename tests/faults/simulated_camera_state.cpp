// simulated_camera_state.cpp
// What the simulated camera of the sweeps says of itself, past the API.
#include "simulated_camera_state.h"

#include <tuple>

#include "bbaseaoi.h"
#include "bimagingdevice.h"
#include "support/simulated_cameras.h"
#include "support/simulator_text.h"
#include "vimba_simulator.h"

namespace {

// "Line2", which the module triggers by.
constexpr int kTriggerLine = 2;

nlohmann::json State() { return nlohmann::json::parse(SimulatorText(VimbaSimState))["cameras"][SimulatedCamera::kId]; }

}  // namespace

std::uint64_t ExposedSoFar() { return VimbaSimExposed(SimulatedCamera::kId); }

std::string PixelFormatNow() { return State()["features"]["PixelFormat"]; }

std::int64_t LatchedTime() {
  const std::string text = State()["features"]["GevTimestampValue"];
  return std::stoll(text);
}

void SendEdge() {
  std::ignore = VimbaSimSetLine(SimulatedCamera::kId, kTriggerLine, 1);
  std::ignore = VimbaSimSetLine(SimulatedCamera::kId, kTriggerLine, 0);
}

bool ComesAndGoes() {
  constexpr char kThirdCamera[] = "DEV_000F31000003";
  constexpr std::uint32_t kWithinMs = 10'000;
  return VimbaSimUnplug(kThirdCamera) == 0 && VimbaSimWaitIdle(kWithinMs) == 0 && VimbaSimPlug(kThirdCamera) == 0 &&
         VimbaSimWaitIdle(kWithinMs) == 0;
}

// A monochrome camera's frames are copied row by row whatever they are.
bool IsCopied(const std::string& pixel_format, int image_kind, const BImagingDevice& device) {
  if (pixel_format == "RGB8Packed") return image_kind == BBaseAoi::eMono8 && !device.IsColor();
  if (pixel_format == "YUV422Packed") return image_kind == BBaseAoi::eRgb || !device.IsColor();
  return true;
}
