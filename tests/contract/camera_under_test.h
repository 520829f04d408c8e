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

// Has the API started or not. It stays so from one suite to the next: starting it may take a search for cameras.
void HaveApiStarted(bool started);

// The API is not started. Skips tests that are not for the library that answers.
struct ContractTest : testing::Test {
  static void SetUpTestSuite() { HaveApiStarted(false); }
  void SetUp() override;
};

// The API is started.
struct StartedTest : ContractTest {
  static void SetUpTestSuite() { HaveApiStarted(true); }
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
