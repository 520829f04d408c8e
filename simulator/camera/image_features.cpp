// camera/image_features.cpp
// Feature rows of a camera: identity, image format, acquisition, light.
#include <iterator>
#include <utility>

#include "camera/camera_features.h"
#include "camera/feature_names.h"
#include "camera/pixel_format.h"

namespace Simulator {
namespace {

Feature Text(const char* name, std::string value) { return {name, Access::kReadOnly, StringNode{std::move(value)}}; }

EnumNode AutoMode() { return {{{AutoEntry::kOff, 0}, {AutoEntry::kOnce, 1}, {AutoEntry::kContinuous, 2}}}; }

}  // namespace

std::vector<Feature> CameraFeatures::IdentityRows() const {
  using namespace FeatureName;
  const CameraConfiguration& camera = m_configuration;
  // A variable: g++ 12 for Windows fails to compile a list of this depth within the one below.
  const std::vector<double> temperatures{camera.sensor_temperature_celsius, camera.main_temperature_celsius};
  return {Text(kDeviceVendorName, camera.vendor),
          Text(kDeviceModelName, camera.model),
          Text(kDeviceID, camera.device_id),
          Text(kDeviceUserID, ""),
          Text(kDeviceFirmwareVersion, camera.firmware),
          Text(kGevCurrentIPAddress, camera.ip),
          Text(kGevDeviceMACAddress, camera.mac),
          {kDeviceTemperatureSelector, Access::kReadWrite, EnumNode{{{"Sensor", 0}, {"Main", 1}}}},
          {kDeviceTemperature, Access::kReadOnly,
           FloatNode{{kMinTemperatureCelsius, kMaxTemperatureCelsius}, temperatures, kDeviceTemperatureSelector}}};
}

std::vector<Feature> CameraFeatures::ImageFormatRows() {
  using namespace FeatureName;
  constexpr std::int64_t kMinSize = 8;
  const std::int64_t width = m_configuration.sensor_width;
  const std::int64_t height = m_configuration.sensor_height;
  EnumNode formats;
  for (const std::string& name : m_configuration.formats) {
    const PixelFormat* const format = FindPixelFormat(name);
    formats.entries.push_back({format->name, format->code});
  }
  const auto constant = [](const char* name, std::int64_t value) {
    return Feature{name, Access::kReadOnly, IntegerNode{{value, value}, value}};
  };
  const auto derived = [](const char* name, std::int64_t max, std::function<std::int64_t()> read) {
    return Feature{name, Access::kReadOnly, IntegerNode{{0, max}, 0, {}, std::move(read)}};
  };
  // A size has the whole binned sensor as its range, but must fit at the present offset.
  const auto size = [&](const char* name, std::int64_t value, const char* offset, int (CameraFeatures::*max)() const) {
    return Feature{name, Access::kIdle,
                   IntegerNode{{},
                               value,
                               [this, max] {
                                 return IntegerRange{kMinSize, (this->*max)()};
                               },
                               {},
                               [this, offset, max](std::int64_t wanted) {
                                 return wanted + m_map.Integer(offset) <= (this->*max)();
                               }}};
  };
  const auto offset = [&](const char* name, const char* size_name, int (CameraFeatures::*max)() const) {
    return Feature{name, Access::kIdle, IntegerNode{{}, 0, [this, size_name, max] {
                                                      return IntegerRange{0, (this->*max)() - m_map.Integer(size_name)};
                                                    }}};
  };
  const char* const sensor = m_configuration.colour ? "Bayer" : "Mono";
  return {{kSensorType, Access::kReadOnly, EnumNode{{{sensor, m_configuration.colour ? 1 : 0}}}},
          constant(kSensorBits, m_configuration.sensor_bits),
          constant(kSensorWidth, width),
          constant(kSensorHeight, height),
          derived(kWidthMax, width, [this] { return WidthMax(); }),
          derived(kHeightMax, height, [this] { return HeightMax(); }),
          size(kWidth, width, kOffsetX, &CameraFeatures::WidthMax),
          size(kHeight, height, kOffsetY, &CameraFeatures::HeightMax),
          offset(kOffsetX, kWidth, &CameraFeatures::WidthMax),
          offset(kOffsetY, kHeight, &CameraFeatures::HeightMax),
          {kPixelFormat, Access::kIdle, std::move(formats)},
          derived(kPayloadSize, width * height * 3, [this] { return PayloadSize(); })};
}

std::vector<Feature> CameraFeatures::BinningRows() {
  using namespace FeatureName;
  const bool missing = m_configuration.max_binning == 0;
  const IntegerNode node{{1, missing ? 1 : m_configuration.max_binning}, 1};
  const auto shrink = [this] { ShrinkToSensor(); };
  return {{kBinningHorizontal, Access::kIdle, node, shrink, missing},
          {kBinningVertical, Access::kIdle, node, shrink, missing}};
}

std::vector<Feature> CameraFeatures::AcquisitionRows() {
  using namespace FeatureName;
  using namespace AcquisitionModeEntry;
  constexpr double kMinRateHz = 0.01;
  constexpr double kDefaultRateHz = 10.0;
  const auto limit = [this] { return FrameRateLimitHz(); };
  return {{kAcquisitionMode, Access::kReadWrite, EnumNode{{{kContinuous, 0}, {kSingleFrame, 1}, {kMultiFrame, 2}}}},
          {kAcquisitionFrameCount, Access::kReadWrite, IntegerNode{{1, 65535}, 1}},
          {kAcquisitionStart, Access::kReadWrite, CommandNode{m_commands.start}},
          {kAcquisitionStop, Access::kReadWrite, CommandNode{m_commands.stop}},
          {kAcquisitionAbort, Access::kReadWrite, CommandNode{m_commands.abort}},
          {kAcquisitionFrameRateAbs, Access::kReadWrite,
           FloatNode{{},
                     {kDefaultRateHz},
                     nullptr,
                     [limit] {
                       return FloatRange{kMinRateHz, limit()};
                     }}},
          {kAcquisitionFrameRateLimit, Access::kReadOnly, FloatNode{{0.0, 1e6}, {0.0}, nullptr, {}, limit}}};
}

std::vector<Feature> CameraFeatures::LightRows() const {
  using namespace FeatureName;
  constexpr Microseconds kMinExposure{30.0};
  constexpr Microseconds kMaxExposure = std::chrono::seconds(60);
  constexpr FloatRange kExposureRange{kMinExposure.count(), kMaxExposure.count()};
  constexpr FloatRange kGainRangeDb{0.0, 40.0};
  constexpr FloatRange kBalanceRange{0.8, 3.0};
  // A monochrome camera has no white balance.
  const bool mono = !m_configuration.colour;
  return {{kExposureMode, Access::kReadWrite, EnumNode{{{"Timed", 1}}}},
          {kExposureAuto, Access::kReadWrite, AutoMode()},
          {kExposureTimeAbs, Access::kReadWrite,
           FloatNode{kExposureRange, {kDefaultExposure.count()}, nullptr, {}, {}, kExposureAuto}},
          {kGainAuto, Access::kReadWrite, AutoMode()},
          {kGain, Access::kReadWrite, FloatNode{kGainRangeDb, {0.0}, nullptr, {}, {}, kGainAuto}},
          {kBalanceWhiteAuto, Access::kReadWrite, AutoMode(), {}, mono},
          {kBalanceRatioSelector, Access::kReadWrite, EnumNode{{{"Red", 0}, {"Blue", 1}}}, {}, mono},
          {kBalanceRatioAbs,
           Access::kReadWrite,
           FloatNode{kBalanceRange, {1.0, 1.0}, kBalanceRatioSelector, {}, {}, kBalanceWhiteAuto},
           {},
           mono}};
}

}  // namespace Simulator
