// scene/camera_scene.cpp
// The scene that a camera sees of any subject.
#include "scene/camera_scene.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "scene/chart_subject.h"
#include "scene/picture_subject.h"
#include "scene/pixel_layout.h"
#include "scene/sensor_response.h"
#include "scene/tone_curve.h"

namespace Simulator {
namespace {

constexpr int kLargestSide = 32768;
// The picture in use and one more, so that a camera may change between two formats.
constexpr std::size_t kStillsKept = 2;

// The responses of the samples that follow each other in a row, over and over. Mosaics repeat after two samples, RGB
// after three.
constexpr std::size_t kCycleLength = 6;
using Cycle = std::array<const ChannelResponse*, kCycleLength>;

class Development {
 public:
  Development(const Shot& shot, bool colour) : m_shot(shot) {
    const double exposure = shot.exposure / kDefaultExposure;
    const double gain = GainFactor(shot.gain_db);
    const int averaged = shot.binning_x * shot.binning_y;
    m_channels[0] = MakeChannelResponse(exposure, colour ? gain * shot.balance_red : gain, averaged);
    m_channels[1] = MakeChannelResponse(exposure, gain, averaged);
    m_channels[2] = MakeChannelResponse(exposure, colour ? gain * shot.balance_blue : gain, averaged);
  }

  // Codes of row `y` become samples, one each.
  void DevelopRow(const StillKind& kind, int y, const std::uint8_t* codes, std::uint8_t* out) const {
    const Cycle cycle = CycleOf(kind, m_shot.offset_y + y);
    const NoiseRow noise(m_shot.noise, m_shot.seed, m_shot.frame_number, m_shot.offset_y + y);
    const std::size_t count = static_cast<std::size_t>(m_shot.width) * static_cast<std::size_t>(kind.Channels());
    // Segments are cut where the cycle begins anew.
    constexpr std::size_t kStep = NoiseRow::kSegment / kCycleLength * kCycleLength;
    for (std::size_t start = 0; start < count; start += kStep) {
      DevelopSegment(cycle, noise.Segment(start / kStep), std::min(kStep, count - start), codes + start, out + start);
    }
  }

 private:
  Cycle CycleOf(const StillKind& kind, int row) const {
    Cycle cycle;
    for (std::size_t i = 0; i < cycle.size(); ++i) {
      const int column = m_shot.offset_x + static_cast<int>(i);
      const std::size_t channel = kind.samples == Samples::kRgb ? i % 3
                                  : kind.samples == Samples::kMosaic
                                      ? static_cast<std::size_t>(MosaicChannel(kind.bayer_order, column, row))
                                      : 1;
      cycle[i] = &m_channels[channel];
    }
    return cycle;
  }

  static void DevelopSegment(const Cycle& cycle, const std::int16_t* noise, std::size_t count,
                             const std::uint8_t* codes, std::uint8_t* out) {
    std::size_t i = 0;
    for (; i + cycle.size() <= count; i += cycle.size()) {
      for (std::size_t k = 0; k < cycle.size(); ++k) out[i + k] = Sample(*cycle[k], codes[i + k], noise[i + k]);
    }
    for (std::size_t k = 0; i < count; ++i, ++k) out[i] = Sample(*cycle[k], codes[i], noise[i]);
  }

  const Shot& m_shot;
  std::array<ChannelResponse, 3> m_channels;
};

void CheckSensorSize(int sensor_width, int sensor_height) {
  if (sensor_width < 1 || sensor_height < 1 || sensor_width > kLargestSide || sensor_height > kLargestSide) {
    throw std::invalid_argument("a sensor of " + std::to_string(sensor_width) + " x " + std::to_string(sensor_height) +
                                " pixels: each side is 1 to " + std::to_string(kLargestSide));
  }
}

}  // namespace

CameraScene::CameraScene(std::unique_ptr<const Subject> subject, int sensor_width, int sensor_height, bool colour)
    : m_subject(std::move(subject)), m_sensor_width(sensor_width), m_sensor_height(sensor_height), m_colour(colour) {}

void CameraScene::Render(const Shot& shot, std::uint8_t* out) const {
  const PixelLayout layout = PixelLayout::Of(shot.pixel_format);
  if (shot.binning_x < 1 || shot.binning_y < 1) throw std::invalid_argument("a binning below 1");
  if (shot.width < 1 || shot.height < 1) return;
  const StillKind kind{m_colour ? layout.samples : Samples::kLuminance, layout.bayer_order, shot.binning_x,
                       shot.binning_y};
  const std::shared_ptr<const Still> still = StillOf(kind);
  const std::vector<Still> moving = MovingWindows(shot, kind);
  const Development development(shot, m_colour);
  const auto width = static_cast<std::size_t>(shot.width);
  std::vector<std::uint8_t> codes(width * static_cast<std::size_t>(kind.Channels()));
  std::vector<std::uint8_t> samples(codes.size());
  for (int y = 0; y < shot.height; ++y, out += width * layout.bytes_per_pixel) {
    // Rows outside the sensor would keep what the row before left.
    const int row = shot.offset_y + y;
    if (row < 0 || row >= still->window.height) std::fill(codes.begin(), codes.end(), std::uint8_t{0});
    still->CopyRow(shot.offset_x, row, shot.width, codes.data());
    for (const Still& window : moving) window.CopyRow(shot.offset_x, row, shot.width, codes.data());
    development.DevelopRow(kind, y, codes.data(), samples.data());
    layout.PackRow(samples.data(), kind.Channels(), width, out);
  }
}

std::shared_ptr<const Still> CameraScene::StillOf(const StillKind& kind) const {
  const BMutexLock lock(m_mutex);
  const auto found =
      std::find_if(m_stills.begin(), m_stills.end(), [&kind](const auto& still) { return still->kind == kind; });
  std::shared_ptr<const Still> still = found != m_stills.end() ? *found : nullptr;
  if (still) {
    m_stills.erase(found);
  } else {
    if (m_stills.size() == kStillsKept) m_stills.erase(m_stills.begin());
    still = std::make_shared<const Still>(DrawStill(*m_subject, {}, kind, SensorOf(kind)));
  }
  m_stills.push_back(still);
  return still;
}

std::vector<Still> CameraScene::MovingWindows(const Shot& shot, const StillKind& kind) const {
  const Window seen = WindowAround(
      {static_cast<double>(shot.offset_x) * kind.binning_x, static_cast<double>(shot.offset_y) * kind.binning_y,
       (static_cast<double>(shot.offset_x) + shot.width - 0.5) * kind.binning_x,
       (static_cast<double>(shot.offset_y) + shot.height - 0.5) * kind.binning_y},
      kind, SensorOf(kind));
  const std::vector<MovingPart> parts = m_subject->MovingParts(shot.frame_number, shot.time);
  std::vector<Still> windows;
  for (const MovingPart& part : parts) {
    const Window window = WindowAround(part.box, kind, seen);
    // All parts are drawn in each window: on a tiny sensor they meet.
    if (window.width > 0 && window.height > 0) windows.push_back(DrawStill(*m_subject, parts, kind, window));
  }
  return windows;
}

Window CameraScene::SensorOf(const StillKind& kind) const {
  return {0, 0, m_sensor_width / kind.binning_x, m_sensor_height / kind.binning_y};
}

std::shared_ptr<const Scene> MakeChartScene(int sensor_width, int sensor_height, bool colour, BayerOrder bayer_order) {
  CheckSensorSize(sensor_width, sensor_height);
  return std::make_shared<CameraScene>(std::make_unique<ChartSubject>(sensor_width, sensor_height, colour, bayer_order),
                                       sensor_width, sensor_height, colour);
}

std::shared_ptr<const Scene> MakePictureScene(const std::string& utf8_path, int sensor_width, int sensor_height,
                                              bool colour) {
  CheckSensorSize(sensor_width, sensor_height);
  return std::make_shared<CameraScene>(std::make_unique<PictureSubject>(utf8_path, sensor_width, sensor_height),
                                       sensor_width, sensor_height, colour);
}

}  // namespace Simulator
