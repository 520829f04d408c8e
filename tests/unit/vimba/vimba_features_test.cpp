// vimba_features_test.cpp
// The typed calls: what they ask, what they hand on, and that a failure leaves the result as it was.
#include "vimba/vimba_features.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

  EXPECT_EQ(0, Vimba::SetInt(camera.Handle(), "Width", 32));
  EXPECT_EQ(0, Vimba::GetInt(camera.Handle(), "Width", width));
  EXPECT_EQ(0, Vimba::GetIntRange(camera.Handle(), "Width", min, max));
  EXPECT_EQ(0, Vimba::SetFloat(camera.Handle(), "Gain", 3.5));
  EXPECT_EQ(0, Vimba::GetFloat(camera.Handle(), "Gain", gain));
  EXPECT_EQ(0, Vimba::GetFloatRange(camera.Handle(), "Gain", low, high));
  EXPECT_EQ(0, Vimba::GetEnum(camera.Handle(), "PixelFormat", format));
  EXPECT_EQ(0, Vimba::GetBool(gVimbaHandle, "GeVTLIsPresent", present));

  EXPECT_EQ(32, width);
  EXPECT_EQ(SimulatedCamera::kWidth, max);
  EXPECT_EQ(3.5, gain);
  EXPECT_EQ(1.5, low);
  EXPECT_EQ(20.5, high);
  EXPECT_EQ("Mono8", format.Str());
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

  EXPECT_EQ(VmbErrorNotFound, Vimba::GetInt(camera.Handle(), "None", integer));
  EXPECT_EQ(VmbErrorNotFound, Vimba::GetIntRange(camera.Handle(), "None", integer, max));
  EXPECT_EQ(VmbErrorNotFound, Vimba::GetFloat(camera.Handle(), "None", number));
  EXPECT_EQ(VmbErrorNotFound, Vimba::GetFloatRange(camera.Handle(), "None", number, high));
  EXPECT_EQ(VmbErrorNotFound, Vimba::GetEnum(camera.Handle(), "None", text));
  EXPECT_EQ(VmbErrorNotFound, Vimba::GetString(camera.Handle(), "None", text));
  EXPECT_EQ(VmbErrorNotFound, Vimba::GetBool(camera.Handle(), "None", flag));

  EXPECT_EQ(7, integer);
  EXPECT_EQ(8, max);
  EXPECT_EQ(7.5, number);
  EXPECT_EQ(8.5, high);
  EXPECT_EQ("before", text.Str());
  EXPECT_TRUE(flag);
}

TEST(VimbaFeatures, ThatAreWrittenGiveTheCameraItsCode) {
  OpenCameraHandle camera;

  EXPECT_EQ(VmbErrorNotFound, Vimba::SetInt(camera.Handle(), "None", 1));
  EXPECT_EQ(VmbErrorWrongType, Vimba::SetFloat(camera.Handle(), "Width", 1.0));
  EXPECT_EQ(VmbErrorInvalidValue, Vimba::SetEnum(camera.Handle(), "TriggerSource", "Nowhere"));
  EXPECT_EQ(VmbErrorBadHandle, Vimba::RunCommand(nullptr, "AcquisitionStop"));
}

TEST(VimbaFeatures, ATextIsReadWithTheLengthThatTheCameraDeclares) {
  OpenCameraHandle camera;
  BString model;

  EXPECT_EQ(0, Vimba::GetString(camera.Handle(), "DeviceModelName", model));

  EXPECT_EQ(
      (Calls{R"(VmbFeatureStringMaxlengthQuery("DeviceModelName"))", R"(VmbFeatureStringGet("DeviceModelName", 64))"}),
      camera->Calls());
  EXPECT_EQ("Manta G-507B (E0022705)", model.Str());
}

TEST(WaitUntilDone, PausesBeforeEachQuery) {
  OpenCameraHandle camera;
  camera->Fault({{"call", "VmbFeatureCommandIsDone"}, {"count", 2}, {"done", false}});
  std::vector<std::size_t> queries_before_pause;

  Vimba::WaitUntilDone(camera.Handle(), "TriggerSoftware",
                       [&] { queries_before_pause.push_back(camera->Calls().size()); });

  EXPECT_EQ((std::vector<std::size_t>{0, 1, 2}), queries_before_pause);
  EXPECT_EQ(3U, camera->Calls().size());
}

TEST(WaitUntilDone, EndsWhenTheQueryFails) {
  OpenCameraHandle camera;

  Vimba::WaitUntilDone(camera.Handle(), "None", [] {});

  EXPECT_EQ(Calls{R"(VmbFeatureCommandIsDone("None"))"}, camera->Calls());
}

TEST(VimbaVersion, IsTextAndNeedsNoStartedSystem) {
  SimulatedCameras cameras{SimulatedCamera()};
  VmbVersionInfo_t version{};
  ASSERT_EQ(0, VmbVersionQuery(&version, sizeof version));

  EXPECT_EQ(L"VimbaC " + std::to_wstring(version.major) + L"." + std::to_wstring(version.minor) + L"." +
                std::to_wstring(version.patch),
            VimbaVersionText().Str());
}

TEST(VimbaVersion, ThatCannotBeToldIsEmpty) {
  SimulatedCameras cameras{SimulatedCamera()};
  cameras.FailCall("VmbVersionQuery", "", VmbErrorInternalFault);

  EXPECT_EQ(L"", VimbaVersionText().Str());
}

}  // namespace
