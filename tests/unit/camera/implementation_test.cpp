// implementation_test.cpp
// A camera's implementation object before it has opened anything.
#include "camera/vimba_imaging_device_impl.h"

#include <gtest/gtest.h>

#include "support/host_output.h"

namespace {

TEST(Implementation, HasItsStartValuesBeforeItIsOpened) {
  const BVimbaImagingDeviceImpl implementation;
  bool rotated = true;

  EXPECT_FALSE(implementation.IsOpen());
  EXPECT_EQ(BSize{}, implementation.ImageSize(rotated));
  EXPECT_FALSE(rotated);
  EXPECT_FALSE(implementation.IsColor());
  EXPECT_STREQ(L"", implementation.Identifier());
  EXPECT_STREQ(L"Vimba", implementation.ApiName());
  EXPECT_EQ(-1, implementation.MaxShutterForFast());
  EXPECT_EQ(100, implementation.ColorBlueBalance());
  EXPECT_EQ(100, implementation.ColorRedBalance());
  EXPECT_EQ(nullptr, implementation.Trigger());
}

TEST(Implementation, WithoutAProfileOpensNothingAndSaysNothing) {
  const HostOutput output;
  EXPECT_FALSE(BVimbaImagingDeviceImpl().Initialize(nullptr));
  EXPECT_TRUE(output.Messages().empty());
}

TEST(Implementation, IsNeverFastBeforeItIsOpened) {
  double frames_per_second = 7.0;
  EXPECT_FALSE(BVimbaImagingDeviceImpl().FramesPerSecond(frames_per_second));
  EXPECT_EQ(7.0, frames_per_second);
}

}  // namespace
