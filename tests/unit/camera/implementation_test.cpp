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
  EXPECT_EQ(implementation.ImageSize(rotated), BSize{});
  EXPECT_FALSE(rotated);
  EXPECT_FALSE(implementation.IsColor());
  EXPECT_STREQ(implementation.Identifier(), L"");
  EXPECT_STREQ(implementation.ApiName(), L"Vimba");
  EXPECT_EQ(implementation.MaxShutterForFast(), -1);
  EXPECT_EQ(implementation.ColorBlueBalance(), 100);
  EXPECT_EQ(implementation.ColorRedBalance(), 100);
  EXPECT_EQ(implementation.Trigger(), nullptr);
}

TEST(Implementation, WithoutAProfileOpensNothingAndSaysNothing) {
  const HostOutput output;
  EXPECT_FALSE(BVimbaImagingDeviceImpl().Initialize(nullptr));
  EXPECT_TRUE(output.Messages().empty());
}

TEST(Implementation, IsNeverFastBeforeItIsOpened) {
  double frames_per_second = 7.0;
  EXPECT_FALSE(BVimbaImagingDeviceImpl().FramesPerSecond(frames_per_second));
  EXPECT_EQ(frames_per_second, 7.0);
}

}  // namespace
