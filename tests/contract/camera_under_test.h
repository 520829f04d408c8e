// camera_under_test.h
// The fixtures of the suite: the API started, a camera opened. Nothing is known of the camera but what every camera
// has.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "VimbaC.h"
#include "support/frame_ring.h"

// The camera that KEL_CONTRACT_CAMERA names; otherwise the first in the list. The API must be started.
std::string CameraUnderTest();

// Skips tests that are not for the library that answers.
struct ContractTest : testing::Test {
  void SetUp() override;
};

// The API is started once for all tests of a suite: a library may have to search for its cameras.
struct StartedTest : ContractTest {
  static void SetUpTestSuite() { EXPECT_EQ(VmbStartup(), VmbErrorSuccess); }
  static void TearDownTestSuite() { VmbShutdown(); }
};

// A picture that is small and that every camera can make.
inline constexpr int kWidth = 128;
inline constexpr int kHeight = 96;

// The camera opened, idle, not triggered, with the picture above.
struct CameraTest : StartedTest {
  CameraTest();

  CameraHandle camera;
};

// Stops the camera and sets the above.
void MakeReady(VmbHandle_t camera);
