// camera/feature_map.cpp
// Which of a camera's features stands for which feature that callers ask for. docs/cameras.md has the table.
#include "camera/feature_map.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "aravis/errors.h"
#include "camera/acquisition_features.h"
#include "camera/mapped_features.h"
#include "camera/native_feature.h"
#include "camera/transport_features.h"

namespace Bridge {
namespace {

using VimbaLibrary::IntegerRange;

double Same(double value) { return value; }

struct UnitRow {
  std::string_view unit;
  Conversion conversion;
};

// A caller's exposure is in us. The naming convention for cameras says so of ExposureTime, too: no unit means that one.
constexpr UnitRow kTimes[] = {
    {"", {Same, Same}},
    {"us", {Same, Same}},
    {"µs", {Same, Same}},
    {"ns", {[](double ns) { return ns / 1e3; }, [](double us) { return us * 1e3; }}},
    {"ms", {[](double ms) { return ms * 1e3; }, [](double us) { return us / 1e3; }}},
    {"s", {[](double s) { return s * 1e6; }, [](double us) { return us / 1e6; }}},
};

double DecibelsOf(double factor) { return 20.0 * std::log10(factor); }
double FactorOf(double decibels) { return std::pow(10.0, decibels / 20.0); }

// A factor of nothing has no value in dB. From here on the sensor's noise would be all that is left: -60 dB.
constexpr double kLeastFactor = 1e-3;

// A caller's gain is in dB. Of gains the convention names no unit, so one without is not believed.
constexpr UnitRow kGains[] = {
    {"dB", {Same, Same}},
    {"x", {DecibelsOf, FactorOf, kLeastFactor}},
    {"times", {DecibelsOf, FactorOf, kLeastFactor}},
};

// A factor for one colour, by the convention: whole numbers are raw ones, of which nobody knows what stands for 1.
constexpr UnitRow kRatios[] = {
    {"", {Same, Same}},
    {"x", {Same, Same}},
};

constexpr UnitRow kRates[] = {
    {"", {Same, Same}},
    {"Hz", {Same, Same}},
    {"fps", {Same, Same}},
};

struct FloatRow {
  const char* caller;
  const char* camera;
  std::vector<UnitRow> units;
  bool whole_too;
};

// In the order in which they are tried.
std::vector<FloatRow> FloatRows() {
  const auto units = [](const auto& rows) { return std::vector<UnitRow>(std::begin(rows), std::end(rows)); };
  return {{"ExposureTimeAbs", "ExposureTimeAbs", units(kTimes), false},
          {"ExposureTimeAbs", "ExposureTime", units(kTimes), true},
          {"Gain", "Gain", units(kGains), true},
          {"BalanceRatioAbs", "BalanceRatioAbs", units(kRatios), false},
          {"BalanceRatioAbs", "BalanceRatio", units(kRatios), false},
          {"AcquisitionFrameRateAbs", "AcquisitionFrameRateAbs", units(kRates), false},
          {"AcquisitionFrameRateAbs", "AcquisitionFrameRate", units(kRates), false}};
}

struct EnumRow {
  const char* name;
  std::vector<RenamedEnum::Name> names;
};

std::vector<EnumRow> EnumRows() {
  return {{"PixelFormat", {{"RGB8Packed", "RGB8"}, {"YUV422Packed", "YUV422_8_UYVY"}}},
          {"DeviceTemperatureSelector", {{"Main", "Mainboard"}}}};
}

struct FixedRow {
  const char* name;
  const char* entry;
};

// A camera without the feature does this anyway.
constexpr FixedRow kFixed[] = {
    {"ExposureAuto", "Off"},
    {"GainAuto", "Off"},
    {"BalanceWhiteAuto", "Off"},
    {"ExposureMode", "Timed"},
};

// Cannot be changed while the camera sends.
constexpr const char* kHeld[] = {"Width", "Height", "BinningHorizontal", "BinningVertical"};

// From the GigE Vision standard. It allows less, but Aravis keeps a camera only once a second.
constexpr std::uint64_t kHeartbeatRegister = 0x0938;
constexpr IntegerRange kHeartbeatsMs{3'000, 0xffff'ffff, 1};

// The first byte of the camera's address is the highest of the number; 0 for one that is no IPv4 address.
std::int64_t AddressOf(ArvGvDevice* device) {
  constexpr gsize kBytes = 4;
  GInetAddress* const address =
      g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(arv_gv_device_get_device_address(device)));
  if (g_inet_address_get_native_size(address) != kBytes) return 0;
  const guint8* const bytes = g_inet_address_to_bytes(address);
  std::int64_t number = 0;
  for (gsize i = 0; i < kBytes; ++i) number = number << 8 | bytes[i];
  return number;
}

class Mapping {
 public:
  Mapping(ArvDevice* device, CameraClock& clock, AcquisitionState& state)
      : m_device(device), m_clock(clock), m_state(state) {}

  MappedFeatures Map() && {
    MapNumbers();
    MapEnumerations();
    MapAcquisition();
    MapTrigger();
    MapTransport();
    MapClock();
    return std::move(m_features);
  }

 private:
  using Native = std::unique_ptr<NativeFeature>;

  Native Find(const char* name) const { return NativeFeature::Find(m_device, name); }
  template <class Type, class... Arguments>
  void Add(const char* name, Arguments&&... arguments) {
    m_features[name] = std::make_unique<Type>(std::forward<Arguments>(arguments)...);
  }
  // In place of the camera's own, which callers would misread.
  void AddNone(const char* name) { m_features[name] = nullptr; }

  void MapNumbers() {
    for (const FloatRow& row : FloatRows()) {
      if (m_features.contains(row.caller) && m_features[row.caller]) continue;
      Native native = Find(row.camera);
      if (!native) continue;
      const bool number =
          native->Type() == FeatureType::kFloat || (row.whole_too && native->Type() == FeatureType::kInteger);
      const auto known = std::find_if(row.units.begin(), row.units.end(),
                                      [unit = native->Unit()](const UnitRow& each) { return each.unit == unit; });
      if (!number || known == row.units.end()) {
        AddNone(row.caller);
      } else {
        Add<ConvertedFloat>(row.caller, std::move(native), known->conversion);
      }
    }
  }

  void MapEnumerations() {
    for (EnumRow& row : EnumRows()) {
      if (Native native = Find(row.name); native && native->Type() == FeatureType::kEnum) {
        Add<RenamedEnum>(row.name, std::move(native), std::move(row.names));
      }
    }
    for (const FixedRow& row : kFixed) {
      if (!Find(row.name)) Add<FixedEnum>(row.name, row.entry);
    }
    if (Find("SensorType")) return;
    const Native formats = Find("PixelFormat");
    const std::vector<std::string> entries = formats ? formats->Entries() : std::vector<std::string>{};
    const bool mosaic = std::any_of(entries.begin(), entries.end(),
                                    [](const std::string& entry) { return entry.starts_with("Bayer"); });
    Add<FixedEnum>("SensorType", mosaic ? "Bayer" : "Mono", false);
  }

  void MapAcquisition() {
    for (const char* name : kHeld) {
      if (Native native = Find(name)) Add<HeldWhileAcquiring>(name, std::move(native), m_state);
    }
    if (const auto formats = m_features.find("PixelFormat"); formats != m_features.end()) {
      formats->second = std::make_unique<HeldWhileAcquiring>(std::move(formats->second), m_state);
    }
    const auto control = std::make_shared<AcquisitionControl>(m_device, m_state);
    if (!control->Complete()) return;
    Add<Command>("AcquisitionStart", [control] { return control->Start(); });
    Add<Command>("AcquisitionStop", [control] { return control->Stop(); });
  }

  void MapTrigger() {
    Native mode = Find("TriggerMode");
    Native source = Find("TriggerSource");
    if (!mode || !source || source->HasEntry(FreeRunningTrigger::kEntry)) return;
    const auto trigger = std::make_shared<FreeRunningTrigger>(std::move(mode), std::move(source));
    Add<TriggerMode>("TriggerMode", trigger);
    Add<TriggerSource>("TriggerSource", trigger);
  }

  void MapTransport() {
    std::shared_ptr<StreamRate> rate;
    if (!Find("StreamBytesPerSecond")) {
      rate = StreamRate::Of(m_device);
      if (rate) Add<StreamBytesPerSecond>("StreamBytesPerSecond", rate);
    }
    MapFrameRateLimit(rate);
    if (!ARV_IS_GV_DEVICE(m_device)) return;
    if (!Find("GevCurrentIPAddress")) {
      Add<ComputedInteger>("GevCurrentIPAddress", [device = ARV_GV_DEVICE(m_device)] { return AddressOf(device); });
    }
    Add<Register>("GevHeartbeatTimeout", m_device, kHeartbeatRegister, kHeartbeatsMs);
    Native size = Find("GVSPPacketSize");
    if (!size) size = Find("GevSCPSPacketSize");
    if (size) Add<PacketSize>("GVSPPacketSize", std::move(size), m_state, rate);
    if (Find("GVSPAdjustPacketSize")) return;
    Add<Command>("GVSPAdjustPacketSize", [device = ARV_GV_DEVICE(m_device), &state = m_state, rate] {
      if (state.Streaming()) return VmbError_t{VmbErrorInvalidAccess};
      ErrorSlot error;
      arv_gv_device_auto_packet_size(device, error.Take());
      if (!error.Code() && rate) rate->PacketSizeChanged();
      return error.Code();
    });
  }

  // What the camera can do, and what the link carries at the present rate. A camera whose rate is mapped may not know
  // of it in a limit of its own.
  void MapFrameRateLimit(std::shared_ptr<StreamRate> rate) {
    auto limit = std::shared_ptr<NativeFeature>(Find("AcquisitionFrameRateLimit"));
    if (limit && !rate) return;
    // In Hz, whatever the camera calls it; null when it has none.
    const auto mapped = m_features.find("AcquisitionFrameRateAbs");
    const Feature* const frames = mapped == m_features.end() ? nullptr : mapped->second.get();
    auto payload = std::shared_ptr<NativeFeature>(Find("PayloadSize"));
    if (!payload || (!frames && !rate)) return;
    Add<ComputedFloat>("AcquisitionFrameRateLimit", [limit, rate = std::move(rate), frames, payload](double& hz) {
      VimbaLibrary::FloatRange range{0.0, std::numeric_limits<double>::max()};
      if (limit) {
        if (const VmbError_t error = limit->GetFloat(range.max)) return error;
      } else if (frames) {
        if (const VmbError_t error = frames->FloatRangeOf(range)) return error;
      }
      hz = range.max;
      if (!rate) return VmbError_t{VmbErrorSuccess};
      std::int64_t bytes_per_s = 0;
      std::int64_t bytes = 0;
      if (const VmbError_t error = rate->Get(bytes_per_s)) return error;
      if (const VmbError_t error = payload->GetInteger(bytes)) return error;
      if (bytes > 0) hz = std::min(hz, static_cast<double>(bytes_per_s) / static_cast<double>(bytes));
      return VmbError_t{VmbErrorSuccess};
    });
  }

  void MapClock() {
    Add<Command>("GevTimestampControlLatch", [&clock = m_clock] { return clock.Latch(); });
    Add<ComputedInteger>("GevTimestampValue", [&clock = m_clock] { return clock.Latched(); });
  }

  ArvDevice* const m_device;
  CameraClock& m_clock;
  AcquisitionState& m_state;
  MappedFeatures m_features;
};

}  // namespace

MappedFeatures MapFeatures(ArvDevice* device, CameraClock& clock, AcquisitionState& state) {
  return Mapping(device, clock, state).Map();
}

}  // namespace Bridge
