// device_table_test.cpp
// The order of a device's and an implementation's operations.
#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "../table_place.h"
#include "bimagingdevice.h"
#include "bimagingdeviceimpl.h"

namespace {

using Places = std::vector<std::size_t>;

// The destructor comes first and takes the places 0 and 1.
Places AfterTheDestructor(std::size_t count) {
  Places places(count);
  std::iota(places.begin(), places.end(), 2);
  return places;
}

template <class... Members>
Places PlacesOf(Members... members) {
  return {TablePlace(members)...};
}

TEST(Device, KeepsItsThirtySixOperationsInTableOrder) {
  using D = BImagingDevice;
  const Places places = PlacesOf(
      &D::IsOpen, &D::TypeName, &D::Name, &D::ImageSize, &D::MaxShutterForFast, &D::FramesPerSecond, &D::SetColorMode,
      &D::HasWhiteBalance, &D::SetWhiteBalanceBlue, &D::SetWhiteBalanceRed, &D::ColorBlueBalance, &D::ColorRedBalance,
      &D::WhiteBalanceRange, &D::WhiteBalanceOnce, &D::LastSnapTime, &D::StartSnap, &D::Snap, &D::StopSnap, &D::Refresh,
      &D::GainControl, &D::OffsetControl, &D::GammaControl, &D::SharpnessControl, &D::ShutterControl,
      &D::BrightnessControl, &D::HueControl, &D::SaturationControl, &D::TemperatureControl, &D::Trigger, &D::IsColor,
      &D::AutoFocusOnce, &D::GetBandwidth, &D::SetBandwidth, &D::AddBandwidthPartner, &D::RemoveBandwidthPartner);

  EXPECT_EQ(places, AfterTheDestructor(35));
}

TEST(DeviceImplementation, KeepsItsOperationsInTableOrder) {
  using D = BImagingDeviceImpl;
  const Places places =
      PlacesOf(&D::ApiName, &D::Identifier, &D::ImageSize, &D::FramesPerSecond, &D::Control, &D::Initialize,
               &D::IsColor, &D::SetWhiteBalanceBlue, &D::SetWhiteBalanceRed, &D::ColorBlueBalance, &D::ColorRedBalance,
               &D::AllocateLockedMemory, &D::FreeLockedMemory, &D::IsOpen, &D::Trigger);

  EXPECT_EQ(places, AfterTheDestructor(15));
}

}  // namespace
