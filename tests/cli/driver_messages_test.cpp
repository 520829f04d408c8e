// driver_messages_test.cpp
// Which camera a message of the driver is about.
#include "kelcam/messages/driver_messages.h"

#include "gtest/gtest.h"

namespace {

using Kelcam::IsAbout;

constexpr const char* kIdentifier = "Vimba_Manta_1";
constexpr const char* kSnap = "Camera 1 (Vimba_Manta_1) : Thread ID = 7 : Snap\n   1 :       0.0 (  0.0) : Start\n";

TEST(MessageIsAbout, TheCameraInItsTitle) {
  EXPECT_TRUE(IsAbout(kSnap, kIdentifier));
  EXPECT_FALSE(IsAbout(kSnap, "Vimba_Manta_2"));
}

TEST(MessageIsAbout, NoOtherCameraWhoseIdentifierBeginsOrEndsAlike) {
  EXPECT_FALSE(IsAbout(kSnap, "Vimba_Manta_11"));
  EXPECT_FALSE(IsAbout(kSnap, "Vimba_Manta"));
  EXPECT_FALSE(IsAbout(kSnap, "Manta_1"));
}

TEST(MessageIsAbout, EachCameraWithoutATitleOfOne) {
  EXPECT_TRUE(IsAbout("CameraDiscoveryCallback\n   1 : Camera ident (DiscoveryCameraIdent): DEV_1\n", kIdentifier));
  EXPECT_TRUE(IsAbout("Camera (IP: 192.0.2.1): - InitByAddr failed", kIdentifier));
}

TEST(MessageIsAbout, AnyCameraWhoseIdentifierIsNotKnown) { EXPECT_TRUE(IsAbout(kSnap, "")); }

TEST(MessageIsAbout, TheCameraWhateverItsIdentifierHolds) {
  EXPECT_TRUE(IsAbout("Camera ) (Vimba_) : Thread ID = 1_)) : Thread ID = 7 : Snap\n", "Vimba_) : Thread ID = 1_)"));
  EXPECT_TRUE(IsAbout("Camera \u65e5 (Vimba_a\n_\u65e5) : Thread ID = 7 : Snap\n", "Vimba_a\n_\u65e5"));
  // A text further down is no title.
  EXPECT_FALSE(IsAbout("Camera 2 (Vimba_x (Vimba_Manta_1) : Thread ID = 3) : Thread ID = 7 : Snap\n", kIdentifier));
}

}  // namespace
