// profile_fuzz.cpp
// A camera profile of any bytes: a device is created from it, takes pictures and is released.
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "bbaseaoi.h"
#include "bcamprofile.h"
#include "driver/kel_camera_vimba.h"
#include "fuzz/file_of_bytes.h"
#include "fuzz/fuzz_input.h"
#include "nboard.h"
#include "support/simulated_cameras.h"
#include "support/simulator_text.h"
#include "vimba_simulator.h"

namespace {

using Fuzz::Expect;

constexpr std::uint32_t kTimeoutMs = 200;
const std::set<int> kSnapCodes = {BError::eSuccess,       BError::eAcquisitionFailed, BError::eTimeout,
                                  BError::eFrameTooSmall, BError::eAborted,           BError::eFrameInvalid};

// The first byte of an input chooses.
SimulatedCamera CameraNumber(int number) {
  switch (number) {
    case 1:
      return SimulatedCamera().Colour("RGGB").WidestPayload();
    case 2:
      return SimulatedCamera().Colour("GRBG").Sensor(61, 47);
    case 3:
      return SimulatedCamera().Colour("BGGR").With("binning", 0).Missing("DeviceTemperatureSelector");
    case 4:
      return SimulatedCamera().Sensor(37, 23).Missing("TriggerSource").Missing("Gain");
    case 5:
      return SimulatedCamera().Colour("GBRG").WidestPayload().Missing("BalanceRatioSelector").Missing("SensorType");
    default:
      return SimulatedCamera();
  }
}
constexpr int kCameras = 6;

void Configure(SimulatedCamera camera) {
  // A chart would take most of the time to draw.
  camera.With("scene", "none");
  const nlohmann::json configuration{{"cameras", {camera.Configuration()}}};
  Expect(VimbaSimConfigure(configuration.dump().c_str()) == 0, "no input leaves the library started");
}

// The profile of these bytes; null where they are none.
BSmartRef<BCamProfile> Open(const WString& file) {
  try {
    return new BCamProfile(file);
  } catch (const BError& error) {
    Expect(error.ErrorCode() == BError::eProfileMalformed, "a readable profile that is refused is malformed");
    return nullptr;
  }
}

// Null also for a rotation that the driver refuses.
BImagingDevice* Create(const BSmartRef<BCamProfile>& profile) {
  try {
    return CreateImagingDevice(profile);
  } catch (const BError& error) {
    Expect(error.ErrorCode() == BError::eBadRotation, "a creation throws for a bad rotation alone");
    return nullptr;
  }
}

// The area's size after a good picture: a turned one swaps the sides of a grey image.
BSize ExpectedSize(const BImagingDevice& device, int kind) {
  bool rotated = false;
  const BSize size = device.ImageSize(rotated);
  return rotated && kind == BBaseAoi::eMono8 ? BSize{size.height, size.width} : size;
}

void TakePicture(BImagingDevice& device, BBaseAoi::Kind kind, bool one_shot) {
  const BSmartRef<BBaseAoi> area(new BBaseAoi(kind, one_shot ? L"[p]" : L"[l]"));
  try {
    device.StartSnap(one_shot);
    if (!one_shot && device.Trigger()) device.Trigger()->Fire();
    const BError error = device.Snap(area.Get(), kTimeoutMs);
    Expect(kSnapCodes.count(error.ErrorCode()) == 1, "a snap answers one of its codes");
    const bool has_picture = !error.IsError() && kind != BBaseAoi::eNone;
    Expect(!has_picture || area->ImageSize() == ExpectedSize(device, kind), "a picture has the device's size");
    device.StopSnap();
  } catch (const BError& error) {
    Expect(error.ErrorCode() == BError::eAcquisitionFailed, "a start or stop throws 12103 alone");
  }
}

void Use(BImagingDevice& device) {
  Expect(device.IsOpen(), "a created device is open");
  double frames_per_second = 0.0;
  device.FramesPerSecond(frames_per_second);
  for (BImagingDeviceControl* control : {device.GainControl(), device.ShutterControl()}) {
    int min = 0;
    int max = 0;
    if (control && control->GetRange(min, max)) control->SetValue(control->Value() + 1);
  }
  TakePicture(device, BBaseAoi::eMono8, true);
  Expect(device.SetColorMode(true) || device.IsColor(), "a monochrome camera takes every colour mode");
  TakePicture(device, BBaseAoi::eRgb, false);
  TakePicture(device, BBaseAoi::eNone, true);
}

void ExpectNothingLeft() {
  const auto state = nlohmann::json::parse(SimulatorText(VimbaSimState));
  Expect(state["started"] == false, "Vimba is shut down with the last device");
  for (const auto& camera : state["cameras"]) {
    Expect(camera["openHandles"] == 0 && camera["announced"] == 0, "a released device leaves its camera closed");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::FileOfBytes kFile;
  Fuzz::Input input(data, size);
  Configure(CameraNumber(input.Number(0, kCameras - 1)));
  kFile.Write(input.Rest());
  const BSmartRef<BCamProfile> profile = Open(kFile.Name());
  if (!profile) return 0;
  BImagingDevice* device = Create(profile);
  if (device) {
    Use(*device);
    Expect(ReleaseImagingDevice(&device), "a created device can be released");
  }
  ExpectNothingLeft();
  Expect(Open(kFile.Name()).Get() != nullptr, "what the driver writes leaves a profile that can be read");
  return 0;
}
