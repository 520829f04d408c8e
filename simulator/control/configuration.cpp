// control/configuration.cpp
// The simulator's JSON: cameras, system.
#include "control/configuration.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "camera/pixel_format.h"
#include "control/environment.h"
#include "control/fault_text.h"
#include "control/json_members.h"
#include "control/link_text.h"

namespace Simulator {
namespace {

std::vector<std::string> FormatsOf(const CameraConfiguration& camera) {
  using namespace PixelFormatName;
  // By their Bayer order.
  constexpr const char* kBayerFormats[] = {kBayerBG8, kBayerRG8, kBayerGB8, kBayerGR8};
  if (!camera.colour) return {kMono8};
  return {kBayerFormats[static_cast<std::size_t>(camera.bayer_order)], kMono8, kYuv422, kRgb8};
}

void ReadSensor(JsonMembers& sensor, CameraConfiguration& camera) {
  sensor.Integer("width", camera.sensor_width, kMinSensorSide, kMaxSensorSide);
  sensor.Integer("height", camera.sensor_height, kMinSensorSide, kMaxSensorSide);
  sensor.Integer("bits", camera.sensor_bits, 8, 16);
  std::vector<std::string_view> types(kBayerOrderNames.begin(), kBayerOrderNames.end());
  types.push_back("mono");
  int type = 0;
  if (!sensor.Choice("type", types, type)) return;
  camera.colour = type < static_cast<int>(kBayerOrderNames.size());
  if (camera.colour) camera.bayer_order = static_cast<BayerOrder>(type);
  camera.formats = FormatsOf(camera);
}

void ReadFormats(JsonMembers& members, CameraConfiguration& camera) {
  if (!members.Texts("formats", camera.formats)) return;
  if (camera.formats.empty()) members.Refuse("formats", "holds no format");
  for (const std::string& name : camera.formats) {
    const PixelFormat* format = FindPixelFormat(name);
    if (!format) members.Refuse("formats", "holds the unknown format " + name);
    if (format->colour && !camera.colour) members.Refuse("formats", "holds " + name + ", which needs a colour sensor");
  }
  const std::set<std::string> different(camera.formats.begin(), camera.formats.end());
  if (different.size() != camera.formats.size()) members.Refuse("formats", "holds a format twice");
}

void ReadRanges(JsonMembers& members, CameraConfiguration& camera) {
  const Json* ranges = members.Any("ranges");
  if (!ranges) return;
  JsonMembers all(*ranges, members.PathOf("ranges"));
  for (const auto& [name, value] : ranges->items()) {
    all.Object(name.c_str(), [&, &feature = name](JsonMembers& range) {
      RangeOverride& change = camera.ranges[feature];
      range.Number("min", change.min);
      range.Number("max", change.max);
      range.Number("step", change.step);
      if (change.step && *change.step < 1.0) range.Refuse("step", "is less than 1");
    });
  }
}

void ReadFeatures(JsonMembers& members, CameraConfiguration& camera) {
  const Json* features = members.Any("features");
  if (!features) return;
  JsonMembers all(*features, members.PathOf("features"));
  for (const auto& [name, value] : features->items()) {
    if (value.is_string()) {
      camera.features.emplace_back(name, value.get<std::string>());
    } else if (value.is_number_integer()) {
      camera.features.emplace_back(name, value.get<std::int64_t>());
    } else if (value.is_number()) {
      camera.features.emplace_back(name, value.get<double>());
    } else {
      all.Refuse(name.c_str(), "is neither text nor number");
    }
  }
}

void ReadScene(JsonMembers& members, CameraConfiguration& camera) {
  const Json* scene = members.Any("scene");
  if (!scene) return;
  if (scene->is_object()) {
    camera.scene = SceneKind::kPicture;
    members.Object("scene", [&](JsonMembers& picture) {
      if (!picture.Text("picture", camera.picture))
        throw std::invalid_argument(picture.PathOf("picture") + ": is missing");
    });
    return;
  }
  int kind = 0;
  constexpr std::array kKinds{SceneKind::kChart, SceneKind::kNumbers, SceneKind::kNone};
  members.Choice("scene", {"chart", "numbers", "none"}, kind);
  camera.scene = kKinds[static_cast<std::size_t>(kind)];
}

void ReadTiming(JsonMembers& members, Timing& timing) {
  int kind = 0;
  if (members.Choice("timing", {"real", "instant"}, kind)) timing = kind == 0 ? Timing::kReal : Timing::kInstant;
}

void ReadIdentity(JsonMembers& members, CameraConfiguration& camera) {
  const bool has_id = members.Text("id", camera.id);
  if (has_id && camera.id.empty()) members.Refuse("id", "is empty");
  const std::pair<const char*, std::string CameraConfiguration::*> texts[] = {
      {"name", &CameraConfiguration::name},
      {"model", &CameraConfiguration::model},
      {"serial", &CameraConfiguration::serial},
      {"ip", &CameraConfiguration::ip},
      {"mac", &CameraConfiguration::mac},
      {"vendor", &CameraConfiguration::vendor},
      {"firmware", &CameraConfiguration::firmware},
      {"deviceId", &CameraConfiguration::device_id},
      {"interface", &CameraConfiguration::interface_id}};
  for (const auto& [name, member] : texts) members.Text(name, camera.*member);
}

void ReadBehaviour(JsonMembers& members, CameraConfiguration& camera) {
  int payload = 0;
  if (members.Choice("payload", {"format", "widest"}, payload)) camera.payload_widest = payload == 1;
  members.Integer("binning", camera.max_binning, 0, kMaxBinning);
  members.Texts("missing", camera.missing);
  ReadTiming(members, camera.timing);
  members.Time("lineTime_us", camera.line_time, std::chrono::seconds(1));
  members.Time("linePeriod_ms", camera.line_period, std::chrono::seconds(1000));
  members.Integer("tickFrequency", camera.ticks_per_second, 1, 1'000'000'000);
  members.Object("packetSize", [&](JsonMembers& packet) {
    packet.Integer("negotiated", camera.negotiated_packet_bytes, 1, kMaxPacketBytes);
    packet.Time("adjust_ms", camera.packet_size_adjustment, std::chrono::seconds(1000));
  });
  members.Number("packetLoss", camera.packet_loss, 0.0, 1.0);
  members.Integer("seed", camera.seed, 0);
  members.Flag("noise", camera.noise);
  members.Flag("plugged", camera.plugged);
  members.Object("temperature", [&](JsonMembers& temperature) {
    temperature.Number("sensor", camera.sensor_temperature_celsius, kMinTemperatureCelsius, kMaxTemperatureCelsius);
    temperature.Number("main", camera.main_temperature_celsius, kMinTemperatureCelsius, kMaxTemperatureCelsius);
  });
}

CameraConfiguration ReadCamera(JsonMembers& members, Timing timing, const std::vector<LinkSettings>& links) {
  const std::vector<CameraConfiguration> built_in = BuiltInCameras();
  std::vector<std::string_view> ids;
  ids.reserve(built_in.size());
  for (const CameraConfiguration& camera : built_in) ids.push_back(camera.id);
  int like = 0;
  members.Choice("like", ids, like);
  CameraConfiguration camera = built_in[static_cast<std::size_t>(like)];
  camera.timing = timing;
  ReadIdentity(members, camera);
  members.Object("sensor", [&](JsonMembers& sensor) { ReadSensor(sensor, camera); });
  ReadFormats(members, camera);
  ReadRanges(members, camera);
  ReadFeatures(members, camera);
  ReadBehaviour(members, camera);
  ReadScene(members, camera);
  std::vector<std::string_view> names;
  names.reserve(links.size());
  for (const LinkSettings& one : links) names.push_back(one.name);
  int link = 0;
  members.Choice("link", names, link);
  camera.link = static_cast<std::size_t>(link);
  return camera;
}

void ReadSystem(JsonMembers& members, SystemConfiguration& system) {
  members.Flag("geVTLIsPresent", system.gige_present);
  int status = 0;
  if (members.Choice("discoveryStatus",
                     {VimbaLibrary::kDiscoveryStatusNames.begin(), VimbaLibrary::kDiscoveryStatusNames.end()},
                     status)) {
    system.discovery_status = static_cast<VimbaLibrary::DiscoveryStatus>(status);
  }
}

// What the simulator takes and has no use for: the schema is for editors, the description for lists of scenarios.
void ReadTextsForPeople(JsonMembers& members) {
  std::string text;
  members.Text("$schema", text);
  members.Text("description", text);
}

}  // namespace

Configuration ParseConfiguration(std::string_view json) {
  const Json text = ParseJson(json);
  JsonMembers members(text, "");
  ReadTextsForPeople(members);
  Configuration configuration;
  Timing timing = Timing::kReal;
  ReadTiming(members, timing);
  configuration.links = ReadLinks(members);
  std::set<std::string> ids;
  const bool given = members.Objects("cameras", [&](JsonMembers& camera) {
    configuration.cameras.push_back(ReadCamera(camera, timing, configuration.links));
    const std::string& id = configuration.cameras.back().id;
    if (!ids.insert(id).second) throw std::invalid_argument(camera.PathOf("id") + ": \"" + id + "\" is taken already");
  });
  if (!given) {
    configuration.cameras = BuiltInCameras();
    for (CameraConfiguration& camera : configuration.cameras) camera.timing = timing;
  }
  members.Flag("recordCalls", configuration.records_calls);
  members.Object("system", [&](JsonMembers& system) { ReadSystem(system, configuration.system); });
  members.Objects("faults", [&](JsonMembers& fault) { ReadFault(fault, configuration.faults); });
  members.RefuseOthers();
  return configuration;
}

Configuration EnvironmentConfiguration() {
  const std::optional<std::string> file = ConfigurationFile();
  if (!file) {
    Configuration configuration;
    configuration.cameras = BuiltInCameras();
    return configuration;
  }
  const std::string text = ReadTextFile(*file);
  Configuration configuration = NamingFile(*file, [&] { return ParseConfiguration(text); });
  configuration.file = *file;
  return configuration;
}

}  // namespace Simulator
