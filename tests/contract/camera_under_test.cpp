// camera_under_test.cpp
// The fixtures of the suite: the API started, a camera opened. Nothing is known of the camera but what every camera
// has.
#include "camera_under_test.h"

#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <tuple>
#include <vector>

#include "differences.h"

namespace {

std::optional<StartedApi> g_api;

struct ShutDownAtTheEnd : testing::Environment {
  void TearDown() override { HaveApiStarted(false); }
};
[[maybe_unused]] testing::Environment* const environment = testing::AddGlobalTestEnvironment(new ShutDownAtTheEnd);

}  // namespace

void HaveApiStarted(bool started) {
  if (started == g_api.has_value()) return;
  if (started) {
    g_api.emplace();
  } else {
    g_api.reset();
  }
}

std::string CameraUnderTest() {
  if (const char* const named = std::getenv("KEL_CONTRACT_CAMERA"); named && *named) return named;
  VmbUint32_t found = 0;
  EXPECT_EQ(VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);
  if (found == 0) throw std::runtime_error("there is no camera to test with");
  std::vector<VmbCameraInfo_t> cameras(found);
  EXPECT_EQ(VmbCamerasList(cameras.data(), found, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);
  return cameras.front().cameraIdString;
}

void ContractTest::SetUp() {
  if (const char* const reason = WhyNotForThisLibrary()) GTEST_SKIP() << reason;
}

CameraTest::CameraTest() : camera(CameraUnderTest()) { MakeReady(camera); }

void MakeReady(VmbHandle_t camera) {
  RunCommand(camera, "AcquisitionStop");
  SetEnum(camera, "TriggerMode", "Off");
  SetEnum(camera, "AcquisitionMode", "Continuous");
  SetInt(camera, "OffsetX", 0);
  SetInt(camera, "OffsetY", 0);
  SetInt(camera, "Width", kWidth);
  SetInt(camera, "Height", kHeight);
}
