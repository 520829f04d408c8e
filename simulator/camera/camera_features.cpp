// camera/camera_features.cpp
// What follows from several features of a camera: sizes, times, the settings of the next exposure.
#include "camera/camera_features.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "camera/feature_names.h"
#include "camera/pixel_format.h"

namespace Simulator {
namespace {

constexpr std::string_view kOff = "Off";
constexpr std::string_view kOn = "On";

struct SourceRow {
  const char* entry;
  FrameStart start;
  int line;
};
constexpr SourceRow kSources[] = {{"Freerun", FrameStart::kFreerun, 0},  {"Line1", FrameStart::kLine, 1},
                                  {"Line2", FrameStart::kLine, 2},       {"Line3", FrameStart::kLine, 3},
                                  {"Line4", FrameStart::kLine, 4},       {"FixedRate", FrameStart::kFixedRate, 0},
                                  {"Software", FrameStart::kSoftware, 0}};

struct EdgeRow {
  const char* entry;
  Edge edge;
};
constexpr EdgeRow kEdges[] = {{"RisingEdge", Edge::kRising},
                              {"FallingEdge", Edge::kFalling},
                              {"AnyEdge", Edge::kAny},
                              {"LevelHigh", Edge::kLevelHigh},
                              {"LevelLow", Edge::kLevelLow}};

template <class Row, std::size_t kSize>
EnumNode EntriesOf(const Row (&rows)[kSize], std::size_t selected) {
  EnumNode node{{}, selected};
  for (std::size_t i = 0; i < kSize; ++i) node.entries.push_back({rows[i].entry, static_cast<std::int64_t>(i)});
  return node;
}

template <class Row, std::size_t kSize>
const Row& RowOf(const Row (&rows)[kSize], const EnumEntry& entry) {
  return *std::find_if(std::begin(rows), std::end(rows), [&](const Row& row) { return entry.name == row.entry; });
}

}  // namespace

CameraFeatures::CameraFeatures(const CameraConfiguration& configuration, std::int64_t mtu_bytes, CameraClock& clock,
                               const Counters& counters, AcquisitionCommands commands)
    : m_configuration(configuration),
      m_mtu_bytes(mtu_bytes),
      m_clock(clock),
      m_counters(counters),
      m_commands(std::move(commands)),
      m_map(AllRows(), m_commands.running) {
  ApplyConfiguration();
}

std::vector<Feature> CameraFeatures::AllRows() {
  std::vector<Feature> all;
  std::vector<Feature> groups[] = {IdentityRows(), ImageFormatRows(), BinningRows(), AcquisitionRows(), TriggerRows(),
                                   LightRows(),    TimestampRows(),   StreamRows(),  StatisticRows()};
  for (std::vector<Feature>& rows : groups) std::move(rows.begin(), rows.end(), std::back_inserter(all));
  return all;
}

std::vector<Feature> CameraFeatures::TriggerRows() const {
  using namespace FeatureName;
  constexpr Microseconds kMaxDelay = std::chrono::seconds(60);
  return {{kTriggerSelector, Access::kReadWrite, EnumNode{{{"FrameStart", 0}}}},
          {kTriggerMode, Access::kReadWrite, EnumNode{{{kOff, 0}, {kOn, 1}}}},
          {kTriggerSource, Access::kReadWrite, EntriesOf(kSources, 0)},
          {kTriggerActivation, Access::kReadWrite, EntriesOf(kEdges, 0)},
          {kTriggerDelayAbs, Access::kReadWrite, FloatNode{{0.0, kMaxDelay.count()}, {0.0}}},
          {kTriggerSoftware, Access::kReadWrite, CommandNode{m_commands.software_trigger}}};
}

TriggerSettings CameraFeatures::Trigger() const {
  using namespace FeatureName;
  TriggerSettings trigger;
  if (m_map.Entry(kTriggerMode).name == kOn) {
    const SourceRow& source = RowOf(kSources, m_map.Entry(kTriggerSource));
    trigger.start = source.start;
    trigger.line = source.line;
  }
  trigger.edge = RowOf(kEdges, m_map.Entry(kTriggerActivation)).edge;
  trigger.delay = ClockDuration(Microseconds(m_map.Float(kTriggerDelayAbs)));
  if (trigger.start == FrameStart::kFixedRate) {
    trigger.period = ClockDuration(Seconds(1.0 / m_map.Float(kAcquisitionFrameRateAbs)));
  } else if (trigger.start == FrameStart::kLine) {
    trigger.period = ClockDuration(m_configuration.line_period);
  }
  return trigger;
}

int CameraFeatures::WidthMax() const {
  return m_configuration.sensor_width / static_cast<int>(m_map.Integer(FeatureName::kBinningHorizontal));
}

int CameraFeatures::HeightMax() const {
  return m_configuration.sensor_height / static_cast<int>(m_map.Integer(FeatureName::kBinningVertical));
}

std::size_t CameraFeatures::ImageBytes() const {
  const int bytes_per_pixel = FindPixelFormat(m_map.Entry(FeatureName::kPixelFormat).name)->bytes_per_pixel;
  return static_cast<std::size_t>(m_map.Integer(FeatureName::kWidth) * m_map.Integer(FeatureName::kHeight) *
                                  bytes_per_pixel);
}

std::int64_t CameraFeatures::PayloadSize() const {
  if (!m_configuration.payload_widest) return static_cast<std::int64_t>(ImageBytes());
  int widest = 0;
  for (const std::string& format : m_configuration.formats) {
    widest = std::max(widest, FindPixelFormat(format)->bytes_per_pixel);
  }
  return m_map.Integer(FeatureName::kWidth) * m_map.Integer(FeatureName::kHeight) * widest;
}

Microseconds CameraFeatures::ExposureTime() const { return Microseconds(m_map.Float(FeatureName::kExposureTimeAbs)); }

Seconds CameraFeatures::ReadoutTime() const {
  return static_cast<double>(m_map.Integer(FeatureName::kHeight)) * m_configuration.line_time;
}

Seconds CameraFeatures::StreamTime() const {
  return Seconds(static_cast<double>(ImageBytes()) /
                 static_cast<double>(m_map.Integer(FeatureName::kStreamBytesPerSecond)));
}

double CameraFeatures::FrameRateLimitHz() const {
  return Seconds(1.0) / std::max({Seconds(ExposureTime()), ReadoutTime(), StreamTime()});
}

// After larger binning, what no longer fits shrinks and moves.
void CameraFeatures::ShrinkToSensor() {
  using namespace FeatureName;
  const auto shrink = [&](const char* size, const char* offset, std::int64_t max) {
    auto& size_value = m_map.Own<IntegerNode>(size).value;
    auto& offset_value = m_map.Own<IntegerNode>(offset).value;
    size_value = std::min(size_value, max);
    offset_value = std::min(offset_value, max - size_value);
  };
  shrink(kWidth, kOffsetX, WidthMax());
  shrink(kHeight, kOffsetY, HeightMax());
}

CaptureSettings CameraFeatures::Settings() const {
  using namespace FeatureName;
  const auto pixels = [&](const char* name) { return static_cast<int>(m_map.Integer(name)); };
  const auto& balance = m_map.Own<FloatNode>(kBalanceRatioAbs).values;
  CaptureSettings settings;
  Shot& shot = settings.shot;
  shot.pixel_format = FindPixelFormat(m_map.Entry(kPixelFormat).name)->code;
  shot.offset_x = pixels(kOffsetX);
  shot.offset_y = pixels(kOffsetY);
  shot.width = pixels(kWidth);
  shot.height = pixels(kHeight);
  shot.binning_x = pixels(kBinningHorizontal);
  shot.binning_y = pixels(kBinningVertical);
  shot.exposure = ExposureTime();
  shot.gain_db = m_map.Float(kGain);
  shot.balance_red = balance[0];
  shot.balance_blue = balance[1];
  shot.seed = m_configuration.seed;
  shot.noise = m_configuration.noise;
  settings.image_bytes = ImageBytes();
  settings.automatic = AnyAutomatic();
  settings.trigger = Trigger();
  const std::string_view mode = m_map.Entry(kAcquisitionMode).name;
  settings.frame_limit = mode == AcquisitionModeEntry::kSingleFrame  ? 1
                         : mode == AcquisitionModeEntry::kMultiFrame ? m_map.Integer(kAcquisitionFrameCount)
                                                                     : 0;
  settings.instant = m_configuration.timing == Timing::kInstant;
  if (!settings.instant) {
    settings.exposure = ClockDuration(ExposureTime());
    settings.readout = ClockDuration(ReadoutTime());
    settings.stream = ClockDuration(StreamTime());
  }
  settings.stream_bytes_per_s = static_cast<double>(m_map.Integer(kStreamBytesPerSecond));
  settings.packet_bytes = static_cast<std::size_t>(m_map.Integer(kGVSPPacketSize) - kPacketHeaderBytes);
  return settings;
}

}  // namespace Simulator
