// camera_opening_test.cpp
// Listing, asking about, opening and closing cameras.
#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <tuple>

#include "frame_ring.h"

namespace {

using testing::ElementsAre;

std::vector<std::string> Texts(const VmbCameraInfo_t& info) {
  return {info.cameraIdString, info.cameraName, info.modelName, info.serialString, info.interfaceIdString};
}

std::vector<SimulatedCamera> TwoCameras() { return {SimulatedCamera(1), SimulatedCamera(2)}; }

TEST(CameraList, WithoutAListGivesTheNumber) {
  const StartedCameras world{TwoCameras()};
  VmbUint32_t found = 0;

  EXPECT_EQ(VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);

  EXPECT_EQ(found, 2u);
}

TEST(CameraList, FillsOneRecordACamera) {
  const StartedCameras world{TwoCameras()};
  VmbCameraInfo_t list[3]{};
  VmbUint32_t found = 0;

  EXPECT_EQ(VmbCamerasList(list, 3, &found, sizeof *list), VmbErrorSuccess);

  EXPECT_EQ(found, 2u);
  EXPECT_THAT(Texts(list[1]),
              ElementsAre("DEV_000F31000002", "Manta", "Manta G-507B (E0022705)", "50-0503340002", "SimulatedLink"));
  EXPECT_EQ(list[1].permittedAccess, VmbAccessModeFull | VmbAccessModeRead);
  EXPECT_EQ(list[2].cameraIdString, nullptr);
}

TEST(CameraList, FillsWhatFitsAndAnswersMoreData) {
  const StartedCameras world{TwoCameras()};
  VmbCameraInfo_t list[2]{};
  VmbUint32_t found = 0;

  EXPECT_EQ(VmbCamerasList(list, 1, &found, sizeof *list), VmbErrorMoreData);

  EXPECT_EQ(found, 2u);
  EXPECT_STREQ(list[0].cameraIdString, "DEV_000F31000001");
  EXPECT_EQ(list[1].cameraIdString, nullptr);
}

TEST(CameraInfo, OfAnOpenCameraPermitsNothing) {
  const StartedCameras world;
  const OpenedHandle camera;
  VmbCameraInfo_t info{};

  EXPECT_EQ(VmbCameraInfoQuery(SimulatedCamera::kSerial, &info, sizeof info), VmbErrorSuccess);

  EXPECT_STREQ(info.cameraIdString, SimulatedCamera::kId);
  EXPECT_EQ(info.permittedAccess, VmbAccessModeNone);
}

TEST(CameraInfo, OfAnUnknownCameraIsNotFound) {
  const StartedCameras world;
  VmbCameraInfo_t info{};

  EXPECT_EQ(VmbCameraInfoQuery("DEV_1", &info, sizeof info), VmbErrorNotFound);
}

class OpensBy : public testing::TestWithParam<const char*> {};

TEST_P(OpensBy, AnyOfItsNames) {
  const StartedCameras world{SimulatedCamera().With("mac", "00:0F:31:AB:CD:EF")};

  const OpenedHandle camera(GetParam());

  EXPECT_EQ(world.cameras.State()["openHandles"], 1);
}

INSTANTIATE_TEST_SUITE_P(CameraOpen, OpensBy,
                         testing::Values(SimulatedCamera::kId, SimulatedCamera::kSerial, SimulatedCamera::kIp,
                                         "00:0F:31:AB:CD:EF", "00-0f-31-ab-cd-ef", "000F31ABCDEF"));

TEST(CameraOpen, OfAnUnknownCameraIsNotFound) {
  const StartedCameras world;
  VmbHandle_t handle = nullptr;

  EXPECT_EQ(VmbCameraOpen("169.254.10.2", VmbAccessModeFull, &handle), VmbErrorNotFound);
  EXPECT_EQ(VmbCameraOpen("", VmbAccessModeFull, &handle), VmbErrorNotFound);

  EXPECT_EQ(handle, nullptr);
}

TEST(CameraOpen, IsRefusedWhileTheCameraIsOpenWithFullAccess) {
  const StartedCameras world;
  VmbHandle_t second = nullptr;
  {
    const OpenedHandle first;
    EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kIp, VmbAccessModeFull, &second), VmbErrorInvalidAccess);
    EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeRead, &second), VmbErrorInvalidAccess);
  }

  EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kIp, VmbAccessModeFull, &second), VmbErrorSuccess);
}

TEST(CameraOpen, WithReadAccessNeitherWritesNorCaptures) {
  const StartedCameras world;

  const OpenedHandle reader(SimulatedCamera::kId, VmbAccessModeRead);

  EXPECT_EQ(VmbFeatureIntSet(reader, "Width", 8), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbFeatureCommandRun(reader, "AcquisitionStart"), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbCaptureStart(reader), VmbErrorInvalidAccess);
}

TEST(CameraOpen, WithReadAccessWorksForSeveralAtOnce) {
  const StartedCameras world;

  const OpenedHandle first(SimulatedCamera::kId, VmbAccessModeRead);
  const OpenedHandle second(SimulatedCamera::kId, VmbAccessModeRead);

  EXPECT_EQ(IntOf(first, "Width"), SimulatedCamera::kWidth);
  EXPECT_EQ(IntOf(second, "Width"), SimulatedCamera::kWidth);
}

TEST(CameraOpen, RefusesAccessModesOtherThanFullAndRead) {
  const StartedCameras world;
  VmbHandle_t handle = nullptr;

  EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeConfig, &handle), VmbErrorNotSupported);
  EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeLite, &handle), VmbErrorNotSupported);
  EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeNone, &handle), VmbErrorInvalidValue);
}

TEST(CameraClose, ReturnsAfterTheRunningCallback) {
  const StartedCameras world;
  const OpenedHandle camera;
  std::promise<void> entered;
  std::atomic<bool> returned{false};
  FrameRing ring(camera, 1);
  ring.on_frame = [&](VmbFrame_t&) {
    entered.set_value();
    // The handle becomes unknown in VmbCameraClose, which from then on waits for this callback.
    VmbInt64_t width = 0;
    returned = Eventually([&] { return VmbFeatureIntGet(camera, "Width", &width) == VmbErrorBadHandle; });
  };
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  ASSERT_EQ(entered.get_future().wait_for(kDeadline), std::future_status::ready);

  EXPECT_EQ(VmbCameraClose(camera), VmbErrorSuccess);

  EXPECT_TRUE(returned);
}

TEST(CameraClose, KeepsTheCamerasFeatures) {
  const StartedCameras world;
  {
    const OpenedHandle camera;
    SetInt(camera, "Width", 32);
  }

  const OpenedHandle camera;

  EXPECT_EQ(IntOf(camera, "Width"), 32);
}

TEST(CameraClose, FromAFrameCallbackIsAnInvalidCall) {
  const StartedCameras world;
  const OpenedHandle camera;
  VmbError_t answer = VmbErrorSuccess;
  FrameRing ring(camera, 1);
  ring.on_frame = [&](VmbFrame_t&) { answer = VmbCameraClose(camera); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);

  EXPECT_EQ(answer, VmbErrorInvalidCall);
  EXPECT_EQ(IntOf(camera, "Width"), SimulatedCamera::kWidth);
}

}  // namespace
