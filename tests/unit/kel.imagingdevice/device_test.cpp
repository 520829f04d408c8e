// device_test.cpp
// What a device answers unless its driver answers otherwise.
#include <gtest/gtest.h>

#include "support/plain_device.h"

namespace {

TEST(Device, HasNoSnapTimeAtFirst) { EXPECT_EQ(PlainDevice().LastSnapTime(), 0.0); }

TEST(Device, ReportsTheSnapTimeThatItsDriverNoted) {
  PlainDevice device;

  device.NoteSnapTime(12.5);

  EXPECT_EQ(device.LastSnapTime(), 12.5);
}

TEST(Device, CannotFocus) { EXPECT_FALSE(PlainDevice().AutoFocusOnce()); }

}  // namespace
