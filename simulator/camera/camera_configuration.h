// camera/camera_configuration.h
// What one simulated camera is: everything that does not change while it is on the link.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "scene/bayer_order.h"
#include "scene/times.h"

namespace Simulator {

// The pixels of a sensor's side.
inline constexpr int kMinSensorSide = 8;
inline constexpr int kMaxSensorSide = 32768;
// The smallest sensor, binned so, still has a pixel.
inline constexpr int kMaxBinning = kMinSensorSide;
inline constexpr std::int64_t kMaxPacketBytes = 65535;
inline constexpr double kMinTemperatureCelsius = -40.0;
inline constexpr double kMaxTemperatureCelsius = 120.0;

// Replaces single ends of a feature's range.
struct RangeOverride {
  std::optional<double> min;
  std::optional<double> max;
  std::optional<double> step;
};

using FeatureSetting = std::variant<std::int64_t, double, std::string>;

enum class Timing {
  // Exposure, read-out and stream take their time.
  kReal,
  // They take no time, and a free-running camera waits for a queued frame.
  kInstant
};

enum class SceneKind { kChart, kPicture, kNumbers, kNone };

struct CameraConfiguration {
  std::string id;
  std::string name = "Manta";
  std::string model;
  std::string serial;
  std::string ip;
  std::string mac;
  std::string vendor = "Simulated";
  std::string firmware = "00.01.54.21000";
  std::string device_id;
  std::string interface_id = "SimulatedLink";

  int sensor_width = 0;
  int sensor_height = 0;
  int sensor_bits = 12;
  bool colour = false;
  BayerOrder bayer_order = BayerOrder::kRggb;
  // Names of kPixelFormats; the first is set at power-up.
  std::vector<std::string> formats;
  // PayloadSize is that of the widest format, whichever is set.
  bool payload_widest = false;
  // Largest binning in each direction; 0: the camera has no binning features.
  int max_binning = kMaxBinning;

  std::map<std::string, RangeOverride> ranges;
  std::vector<std::string> missing;
  // Written, in this order, at power-up.
  std::vector<std::pair<std::string, FeatureSetting>> features;

  Timing timing = Timing::kReal;
  // How long a line is read out.
  Microseconds line_time{20.0};
  // A signal on the input lines: the edge that triggers comes so often; zero: there is none.
  Milliseconds line_period{0.0};
  std::int64_t ticks_per_second = 1'000'000'000;
  // How long GVSPAdjustPacketSize runs, and the size that it finds.
  Milliseconds packet_size_adjustment{50.0};
  std::int64_t negotiated_packet_bytes = 8228;
  double packet_loss = 0.0;
  std::uint64_t seed = 1;
  // Without noise equal scenes give equal pictures.
  bool noise = true;
  double sensor_temperature_celsius = 41.5;
  double main_temperature_celsius = 46.25;

  // Whether it is there from the beginning.
  bool plugged = true;

  // The index of its link.
  std::size_t link = 0;

  SceneKind scene = SceneKind::kChart;
  // The file of a picture, UTF-8.
  std::string picture;
};

}  // namespace Simulator
