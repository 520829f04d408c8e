// camera_opening_test.cpp
// The texts of the list, and the names by which a camera is opened.
#include <gmock/gmock.h>

#include "simulated_link.h"

namespace {

using testing::ElementsAre;

std::vector<std::string> Texts(const VmbCameraInfo_t& info) {
  return {info.cameraIdString, info.cameraName, info.modelName, info.serialString, info.interfaceIdString};
}

std::vector<SimulatedCamera> TwoCameras() { return {SimulatedCamera(1), SimulatedCamera(2)}; }

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

class OpensBy : public testing::TestWithParam<const char*> {};

TEST_P(OpensBy, AnyOfItsNames) {
  const StartedCameras world{SimulatedCamera().With("mac", "00:0F:31:AB:CD:EF")};

  const OpenedHandle camera(GetParam());

  EXPECT_EQ(world.cameras.State()["openHandles"], 1);
}

INSTANTIATE_TEST_SUITE_P(CameraOpen, OpensBy,
                         testing::Values(SimulatedCamera::kId, SimulatedCamera::kSerial, SimulatedCamera::kIp,
                                         "00:0F:31:AB:CD:EF", "00-0f-31-ab-cd-ef", "000F31ABCDEF"));

}  // namespace
