// camera/automatics.cpp
// Automatic exposure, gain and white balance.
#include <algorithm>
#include <cmath>
#include <vector>

#include "camera/camera_features.h"
#include "camera/feature_names.h"

namespace Simulator {
namespace {

// The mean of linear light that a picture is brought to, and how near is near enough.
constexpr double kBrightness = 0.2;
constexpr double kTolerance = 0.03;
// The largest factor that one picture may cause: a black or a white one does not show how far to go.
constexpr double kMostAtOnce = 8.0;

double Correction(double wanted, double found) {
  return std::clamp(wanted / std::max(found, 1e-6), 1.0 / kMostAtOnce, kMostAtOnce);
}

bool Near(double correction) { return std::abs(correction - 1.0) <= kTolerance; }

}  // namespace

bool CameraFeatures::IsAutomatic(const char* mode) const { return m_map.Own<EnumNode>(mode).selected != 0; }

bool CameraFeatures::AnyAutomatic() const {
  using namespace FeatureName;
  return IsAutomatic(kExposureAuto) || IsAutomatic(kGainAuto) || IsAutomatic(kBalanceWhiteAuto);
}

// Returns the factor that the range did not allow; 1 when it allowed all.
double CameraFeatures::Correct(const char* name, std::size_t index, double wanted) {
  auto& node = m_map.Own<FloatNode>(name);
  node.values[index] = std::clamp(wanted, node.fixed.min, node.fixed.max);
  return node.values[index] == wanted ? 1.0 : wanted / node.values[index];
}

void CameraFeatures::EndOnce(const char* mode) {
  auto& node = m_map.Own<EnumNode>(mode);
  if (node.entries[node.selected].name == AutoEntry::kOnce) node.selected = 0;
}

void CameraFeatures::FollowPicture(const PictureMeans& means) {
  using namespace FeatureName;
  double missing = Correction(kBrightness, means.Brightness());
  const bool bright_enough = Near(missing);
  if (IsAutomatic(kExposureAuto)) {
    const double left = Correct(kExposureTimeAbs, 0, m_map.Float(kExposureTimeAbs) * missing);
    if (bright_enough || left != 1.0) EndOnce(kExposureAuto);
    missing = left;
  }
  if (IsAutomatic(kGainAuto)) {
    const double wanted = m_map.Float(kGain) + 20.0 * std::log10(missing);
    Correct(kGain, 0, wanted);
    if (bright_enough || wanted != m_map.Float(kGain)) EndOnce(kGainAuto);
  }
  if (IsAutomatic(kBalanceWhiteAuto)) FollowColour(means);
}

void CameraFeatures::FollowColour(const PictureMeans& means) {
  using namespace FeatureName;
  const double red = Correction(means.green, means.red);
  const double blue = Correction(means.green, means.blue);
  const std::vector<double> now = m_map.Own<FloatNode>(kBalanceRatioAbs).values;
  const double red_left = Correct(kBalanceRatioAbs, 0, now[0] * red);
  const double blue_left = Correct(kBalanceRatioAbs, 1, now[1] * blue);
  const bool at_the_end = red_left != 1.0 || blue_left != 1.0;
  if ((Near(red) && Near(blue)) || at_the_end) EndOnce(kBalanceWhiteAuto);
}

}  // namespace Simulator
