// vimba_features_test.cpp
// The typed calls: what they ask, what they hand on, and that a failure leaves the result as it was.
#include "vimba/vimba_features.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VimbaC.h"
#include "support/open_camera_handle.h"
#include "vimba/vimba_version.h"

namespace {

using Calls = std::vector<std::string>;

TEST(VimbaFeatures, HandOnWhatTheCameraAnswers) {
  OpenCameraHandle camera(SimulatedCamera().Range("Gain", 1.5, 20.5));
  std::int64_t width = 0;
  std::int64_t min = 0;
  std::int64_t max = 0;
  double gain = 0.0;
  double low = 0.0;
  double high = 0.0;
  BString format;
  bool present = false;

  EXPECT_EQ(Vimba::SetInt(camera.Handle(), "Width", 32), 0);
  EXPECT_EQ(Vimba::GetInt(camera.Handle(), "Width", width), 0);
  EXPECT_EQ(Vimba::GetIntRange(camera.Handle(), "Width", min, max), 0);
  EXPECT_EQ(Vimba::SetFloat(camera.Handle(), "Gain", 3.5), 0);
  EXPECT_EQ(Vimba::GetFloat(camera.Handle(), "Gain", gain), 0);
  EXPECT_EQ(Vimba::GetFloatRange(camera.Handle(), "Gain", low, high), 0);
  EXPECT_EQ(Vimba::GetEnum(camera.Handle(), "PixelFormat", format), 0);
  EXPECT_EQ(Vimba::GetBool(gVimbaHandle, "GeVTLIsPresent", present), 0);

  EXPECT_EQ(width, 32);
  EXPECT_EQ(max, SimulatedCamera::kWidth);
  EXPECT_EQ(gain, 3.5);
  EXPECT_EQ(low, 1.5);
  EXPECT_EQ(high, 20.5);
  EXPECT_EQ(format.Str(), "Mono8");
  EXPECT_TRUE(present);
}

TEST(VimbaFeatures, ThatFailGiveTheCodeAndLeaveTheResultAsItWas) {
  OpenCameraHandle camera;
  std::int64_t integer = 7;
  std::int64_t max = 8;
  double number = 7.5;
  double high = 8.5;
  BString text("before");
  bool flag = true;

  EXPECT_EQ(Vimba::GetInt(camera.Handle(), "None", integer), VmbErrorNotFound);
  EXPECT_EQ(Vimba::GetIntRange(camera.Handle(), "None", integer, max), VmbErrorNotFound);
  EXPECT_EQ(Vimba::GetFloat(camera.Handle(), "None", number), VmbErrorNotFound);
  EXPECT_EQ(Vimba::GetFloatRange(camera.Handle(), "None", number, high), VmbErrorNotFound);
  EXPECT_EQ(Vimba::GetEnum(camera.Handle(), "None", text), VmbErrorNotFound);
  EXPECT_EQ(Vimba::GetString(camera.Handle(), "None", text), VmbErrorNotFound);
  EXPECT_EQ(Vimba::GetBool(camera.Handle(), "None", flag), VmbErrorNotFound);

  EXPECT_EQ(integer, 7);
  EXPECT_EQ(max, 8);
  EXPECT_EQ(number, 7.5);
  EXPECT_EQ(high, 8.5);
  EXPECT_EQ(text.Str(), "before");
  EXPECT_TRUE(flag);
}

TEST(VimbaFeatures, ThatAreWrittenGiveTheCameraItsCode) {
  OpenCameraHandle camera;

  EXPECT_EQ(Vimba::SetInt(camera.Handle(), "None", 1), VmbErrorNotFound);
  EXPECT_EQ(Vimba::SetFloat(camera.Handle(), "Width", 1.0), VmbErrorWrongType);
  EXPECT_EQ(Vimba::SetEnum(camera.Handle(), "TriggerSource", "Nowhere"), VmbErrorInvalidValue);
  EXPECT_EQ(Vimba::RunCommand(nullptr, "AcquisitionStop"), VmbErrorBadHandle);
}

TEST(VimbaFeatures, ATextIsReadWithTheLengthThatTheCameraDeclares) {
  OpenCameraHandle camera;
  BString model;

  EXPECT_EQ(Vimba::GetString(camera.Handle(), "DeviceModelName", model), 0);

  EXPECT_EQ(camera->Calls(), (Calls{R"(VmbFeatureStringMaxlengthQuery("DeviceModelName"))",
                                    R"(VmbFeatureStringGet("DeviceModelName", 64))"}));
  EXPECT_EQ(model.Str(), "Manta G-507B (E0022705)");
}

TEST(WaitUntilDone, PausesBeforeEachQuery) {
  OpenCameraHandle camera;
  camera->Fault({{"call", "VmbFeatureCommandIsDone"}, {"count", 2}, {"done", false}});
  std::vector<std::size_t> queries_before_pause;

  Vimba::WaitUntilDone(camera.Handle(), "TriggerSoftware",
                       [&] { queries_before_pause.push_back(camera->Calls().size()); });

  EXPECT_EQ(queries_before_pause, (std::vector<std::size_t>{0, 1, 2}));
  EXPECT_EQ(camera->Calls().size(), 3U);
}

TEST(WaitUntilDone, EndsWhenTheQueryFails) {
  OpenCameraHandle camera;

  Vimba::WaitUntilDone(camera.Handle(), "None", [] {});

  EXPECT_EQ(camera->Calls(), Calls{R"(VmbFeatureCommandIsDone("None"))"});
}

TEST(VimbaVersion, IsTextAndNeedsNoStartedSystem) {
  SimulatedCameras cameras{SimulatedCamera()};
  VmbVersionInfo_t version{};
  ASSERT_EQ(VmbVersionQuery(&version, sizeof version), 0);

  EXPECT_EQ(VimbaVersionText().Str(), L"VimbaC " + std::to_wstring(version.major) + L"." +
                                          std::to_wstring(version.minor) + L"." + std::to_wstring(version.patch));
}

TEST(VimbaVersion, ThatCannotBeToldIsEmpty) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbVersionQuery", "", VmbErrorInternalFault);

  EXPECT_EQ(VimbaVersionText().Str(), L"");
}

}  // namespace
