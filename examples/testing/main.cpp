// main.cpp
// A test of a host with simulated cameras: one picture loses packets and fails, the next one is good.
//   testing MODULE      ends with 0 if the host met what the test expects
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "bbaseaoi.h"
#include "driver_module.h"
#include "imagingdevice.h"
#include "vimba_simulator.h"

namespace {

constexpr std::uint32_t kTimeoutMs = 5000;
constexpr std::int32_t kNoError = 0;
constexpr std::int32_t kLostPacketsError = 12103;
constexpr char kProfileFile[] = "testing.ini";

constexpr char kCameras[] = R"({"cameras": [{"id": "DEV_TEST", "serial": "TEST-1",
    "sensor": {"width": 320, "height": 240}}]})";
// Frame 0 arrives with this status: incomplete.
constexpr char kLostPackets[] = R"({"frame": 0, "status": -1})";

void Expect(bool is_so, const std::string& what) {
  if (!is_so) throw std::runtime_error("expected: " + what);
}

void SetUpCamera() {
  Expect(VimbaSimConfigure(kCameras) == 0, std::string("cameras as described; ") + VimbaSimLastError());
  std::ofstream profile(kProfileFile);
  profile << "API = Vimba\nInit.Method = Serial\nSerial.Number = TEST-1\n";
}

// What your host does with a camera goes here.
std::int32_t TakePicture(BImagingDevice& device, BBaseAoi& area) {
  device.StartSnap(true);
  const BError error = device.Snap(&area, kTimeoutMs);
  device.StopSnap();
  return error.ErrorCode();
}

void TestLostPackets(const DriverModule& module) {
  SetUpCamera();
  BImagingDevice* device = module.create(new BCamProfile(ToWString(kProfileFile)));
  Expect(device, "the camera opens");
  const BSmartRef<BBaseAoi> area(new BBaseAoi(BBaseAoi::eMono8));
  Expect(VimbaSimAddFaults(kLostPackets) == 0, std::string("the fault as described; ") + VimbaSimLastError());
  const std::int32_t first = TakePicture(*device, *area);
  VimbaSimClearFaults();
  const std::int32_t second = TakePicture(*device, *area);
  module.release(&device);
  Expect(first == kLostPacketsError, "12103 for lost packets, not " + std::to_string(first));
  Expect(second == kNoError, "a good picture afterwards, not " + std::to_string(second));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: testing MODULE\n";
    return 2;
  }
  try {
    TestLostPackets(DriverModule(argv[1]));
    std::cout << "passed\n";
    return 0;
  } catch (const BError& error) {
    std::cerr << "error " << error.ErrorCode() << ": " << ToBString(error.Message()).c_str() << "\n";
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << "\n";
  }
  return 1;
}
