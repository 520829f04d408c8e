// cameras_test.cpp
// Listing, asking about, opening and closing cameras.
#include <atomic>
#include <future>
#include <vector>

#include "camera_under_test.h"

namespace {

struct CameraList : StartedTest {};
struct CameraInfo : StartedTest {};
struct CameraOpen : StartedTest {
  VmbHandle_t handle = nullptr;
};
struct CameraClose : CameraTest {};

std::uint32_t Listed() {
  VmbUint32_t found = 0;
  EXPECT_EQ(VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);
  return found;
}

VmbCameraInfo_t InfoOf(const std::string& camera) {
  VmbCameraInfo_t info{};
  EXPECT_EQ(VmbCameraInfoQuery(camera.c_str(), &info, sizeof info), VmbErrorSuccess);
  return info;
}

TEST_F(CameraList, FillsOneRecordACamera) {
  const std::uint32_t cameras = Listed();
  ASSERT_GE(cameras, 1u);
  std::vector<VmbCameraInfo_t> list(cameras + 1);
  VmbUint32_t found = 0;

  EXPECT_EQ(VmbCamerasList(list.data(), cameras + 1, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);

  EXPECT_EQ(found, cameras);
  for (std::uint32_t i = 0; i < cameras; ++i) {
    for (const char* text : {list[i].cameraIdString, list[i].cameraName, list[i].modelName, list[i].serialString,
                             list[i].interfaceIdString}) {
      ASSERT_NE(text, nullptr) << "record " << i;
    }
    EXPECT_STRNE(list[i].cameraIdString, "") << "record " << i;
  }
  EXPECT_EQ(list[cameras].cameraIdString, nullptr);
}

TEST_F(CameraList, FillsWhatFitsAndAnswersMoreData) {
  const std::uint32_t cameras = Listed();
  ASSERT_GE(cameras, 1u);
  std::vector<VmbCameraInfo_t> list(cameras);
  VmbUint32_t found = 0;

  EXPECT_EQ(VmbCamerasList(list.data(), cameras - 1, &found, sizeof(VmbCameraInfo_t)), VmbErrorMoreData);

  EXPECT_EQ(found, cameras);
  EXPECT_EQ(list[cameras - 1].cameraIdString, nullptr);
  for (std::uint32_t i = 0; i + 1 < cameras; ++i) EXPECT_NE(list[i].cameraIdString, nullptr) << "record " << i;
}

TEST_F(CameraInfo, IsThatOfTheList) {
  const std::uint32_t cameras = Listed();
  std::vector<VmbCameraInfo_t> list(cameras);
  VmbUint32_t found = 0;
  EXPECT_EQ(VmbCamerasList(list.data(), cameras, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);

  for (const VmbCameraInfo_t& listed : list) {
    const VmbCameraInfo_t info = InfoOf(listed.cameraIdString);
    EXPECT_STREQ(info.cameraIdString, listed.cameraIdString);
    EXPECT_STREQ(info.modelName, listed.modelName);
    EXPECT_STREQ(info.serialString, listed.serialString);
    EXPECT_STREQ(info.interfaceIdString, listed.interfaceIdString);
  }
}

TEST_F(CameraInfo, PermitsFullAccessUnlessTheCameraIsOpen) {
  const std::string id = CameraUnderTest();
  {
    const CameraHandle camera(id);
    EXPECT_EQ(InfoOf(id).permittedAccess, VmbAccessModeNone);
  }

  EXPECT_EQ(InfoOf(id).permittedAccess & VmbAccessModeFull, VmbAccessModeFull);
}

TEST_F(CameraInfo, OfAnUnknownCameraIsNotFound) {
  VmbCameraInfo_t info{};

  EXPECT_EQ(VmbCameraInfoQuery("DEV_1", &info, sizeof info), VmbErrorNotFound);
}

TEST_F(CameraOpen, TakesTheSerialNumberToo) {
  const std::string id = CameraUnderTest();
  const std::string serial = InfoOf(id).serialString;

  const CameraHandle camera(serial);

  EXPECT_EQ(InfoOf(id).permittedAccess, VmbAccessModeNone);
}

TEST_F(CameraOpen, OfAnUnknownCameraIsNotFound) {
  EXPECT_EQ(VmbCameraOpen("203.0.113.1", VmbAccessModeFull, &handle), VmbErrorNotFound);
  EXPECT_EQ(VmbCameraOpen("", VmbAccessModeFull, &handle), VmbErrorNotFound);

  EXPECT_EQ(handle, nullptr);
}

TEST_F(CameraOpen, IsRefusedWhileTheCameraIsOpenWithFullAccess) {
  const std::string id = CameraUnderTest();
  const std::string serial = InfoOf(id).serialString;
  {
    const CameraHandle first(id);
    EXPECT_EQ(VmbCameraOpen(serial.c_str(), VmbAccessModeFull, &handle), VmbErrorInvalidAccess);
    EXPECT_EQ(VmbCameraOpen(id.c_str(), VmbAccessModeRead, &handle), VmbErrorInvalidAccess);
  }

  const CameraHandle second(id);

  EXPECT_EQ(handle, nullptr);
}

TEST_F(CameraOpen, WithReadAccessNeitherWritesNorCaptures) {
  const CameraHandle reader(CameraUnderTest(), VmbAccessModeRead);

  EXPECT_EQ(VmbFeatureIntSet(reader, "Width", kWidth), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbFeatureCommandRun(reader, "AcquisitionStart"), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbCaptureStart(reader), VmbErrorInvalidAccess);
}

TEST_F(CameraOpen, WithReadAccessWorksForSeveralAtOnce) {
  const CameraHandle first(CameraUnderTest(), VmbAccessModeRead);
  const CameraHandle second(CameraUnderTest(), VmbAccessModeRead);

  EXPECT_EQ(IntOf(first, "Width"), IntOf(second, "Width"));
}

TEST_F(CameraOpen, RefusesAccessModesOtherThanFullAndRead) {
  const std::string id = CameraUnderTest();

  EXPECT_EQ(VmbCameraOpen(id.c_str(), VmbAccessModeConfig, &handle), VmbErrorNotSupported);
  EXPECT_EQ(VmbCameraOpen(id.c_str(), VmbAccessModeLite, &handle), VmbErrorNotSupported);
  EXPECT_EQ(VmbCameraOpen(id.c_str(), VmbAccessModeNone, &handle), VmbErrorInvalidValue);
}

TEST_F(CameraClose, KeepsTheCamerasFeatures) {
  SetInt(camera, "Width", kWidth / 2);
  EXPECT_EQ(VmbCameraClose(camera), VmbErrorSuccess);

  const CameraHandle again(CameraUnderTest());

  EXPECT_EQ(IntOf(again, "Width"), kWidth / 2);
}

TEST_F(CameraClose, ReturnsAfterTheRunningCallback) {
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

TEST_F(CameraClose, FromAFrameCallbackIsAnInvalidCall) {
  VmbError_t answer = VmbErrorSuccess;
  FrameRing ring(camera, 1);
  ring.on_frame = [&](VmbFrame_t&) { answer = VmbCameraClose(camera); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);

  EXPECT_EQ(answer, VmbErrorInvalidCall);
  EXPECT_EQ(IntOf(camera, "Width"), kWidth);
}

}  // namespace
