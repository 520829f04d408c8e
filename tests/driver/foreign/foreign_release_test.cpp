// foreign_release_test.cpp
// A host that releases another driver's device here. A program of its own: the module's count of devices stays wrong.
#include <gtest/gtest.h>

#include "support/driver_module.h"
#include "support/plain_device.h"
#include "support/profile_file.h"
#include "support/simulated_cameras.h"

namespace {

TEST(ForeignRelease, ADeviceThatIsCreatedAfterwardsComesWithItsSystem) {
  SimulatedCameras cameras{SimulatedCamera()};
  ProfileFile profile;
  profile.Key("Camera_Identifier", SimulatedCamera::kId);
  BImagingDevice* foreign = new PlainDevice;
  EXPECT_TRUE(TheModule().release(&foreign));

  BImagingDevice* device = TheModule().create(profile.Open());

  ASSERT_NE(device, nullptr);
  EXPECT_TRUE(cameras.CallsOf("VmbShutdown").empty());
  device->StartSnap(true);
  EXPECT_EQ(device->Snap(nullptr, 2000), BError());
  device->StopSnap();
  EXPECT_TRUE(TheModule().release(&device));
}

}  // namespace
