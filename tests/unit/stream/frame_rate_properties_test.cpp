// frame_rate_properties_test.cpp
// The frame rate and the fast mode, of random cameras, profiles and exposures.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "bimagingdevicecontrol.h"
#include "stream/frame_rate.h"
#include "support/host_output.h"
#include "support/random_cases.h"
#include "unit/scripted/scripted_library.h"
#include "vimba/vimba_camera.h"

namespace {

using Texts = std::vector<std::wstring>;

// An exposure that is what it is.
class FixedShutter final : public BImagingDeviceControl {
 public:
  explicit FixedShutter(int value) : BImagingDeviceControl(NBoard::eShutter), m_value(value) {}

  int Value() override { return m_value; }
  bool SetValue(int) override { return false; }
  void SetMinValue(int) override {}
  void SetMaxValue(int) override {}
  void SetDefaultValue(int) override {}
  bool GetRange(int&, int&) override { return false; }
  bool SetToDefault() override { return false; }
  bool IsAvailable() const override { return true; }
  WString UnitString() const override { return {}; }
  double ToRealValue(int value) const override { return value; }
  int FromRealValue(double value) const override { return static_cast<int>(value); }

 private:
  int m_value;
};

// Rates are whole numbers, so that their texts are plain.
struct Asked {
  std::optional<int> camera_limit;
  int profile_limit = 0;
  int shutter = 0;
  int max_shutter = 0;

  bool IsCapped() const { return profile_limit > 0 && *camera_limit > profile_limit; }
  int Rate() const { return IsCapped() ? profile_limit : *camera_limit; }
  bool IsFast() const { return camera_limit && shutter <= max_shutter; }
  // Between title and end.
  Texts Lines() const {
    if (!camera_limit) return {L"AcquisitionFrameRateLimit failure : -3"};
    Texts lines{L"AcquisitionFrameRateLimit = " + std::to_wstring(*camera_limit) + L".0000"};
    if (IsCapped()) {
      lines.push_back(L"AcquisitionFrameRateLimit (defined camera INI file) = " + std::to_wstring(profile_limit) +
                      L".0000");
    }
    if (!IsFast()) lines.emplace_back(L"current shutter > max_shutter_for_fast. FramesPerSecond() returns false");
    return lines;
  }
};

struct FrameRates : RandomCases {
  HostOutput output;

  Asked Draw() {
    constexpr int kFastest = 1'000;
    Asked asked;
    if (!random.OneIn(6)) asked.camera_limit = random.Between(1, kFastest);
    asked.profile_limit = random.OneIn(3) ? random.Between(-1, 0) : random.Between(1, kFastest);
    if (asked.camera_limit && random.OneIn(4)) asked.profile_limit = *asked.camera_limit + random.Between(-1, 1);
    asked.shutter = random.Between(0, kFastest);
    asked.max_shutter = random.OneIn(3) ? asked.shutter + random.Between(-1, 1) : random.Between(-1, kFastest);
    return asked;
  }
};

TEST_F(FrameRates, AreCappedByTheProfileAndFastOnlyForShortExposures) {
  constexpr int kQuestions = 2'000;
  constexpr double kUntouched = -7.0;
  for (int i = 0; i < kQuestions; ++i) {
    const Asked asked = Draw();
    Library().Reset();
    if (asked.camera_limit) {
      Library().SetFloat("AcquisitionFrameRateLimit", *asked.camera_limit);
    } else {
      Library().Fail("VmbFeatureFloatGet", VmbErrorNotFound);
    }
    const VimbaCamera camera;
    FrameRate rate(camera);
    rate.SetCameraFrequency(asked.profile_limit);
    rate.SetMaxShutterForFast(asked.max_shutter);
    FixedShutter shutter(asked.shutter);
    double frames_per_second = kUntouched;
    output.Clear();

    ASSERT_EQ(rate.FramesPerSecond(&shutter, frames_per_second), asked.IsFast()) << "question " << i;

    ASSERT_EQ(frames_per_second, asked.camera_limit ? asked.Rate() : kUntouched) << "question " << i;
    const Texts lines = LinesOf(output.Diagnostics(L"FramesPerSecond()").at(0));
    ASSERT_EQ(Texts(lines.begin() + 1, lines.end() - 1), asked.Lines()) << "question " << i;
  }
}

}  // namespace
