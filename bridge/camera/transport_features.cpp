// camera/transport_features.cpp
// Features of the network side: packet size, rate, heartbeat.
#include "camera/transport_features.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "aravis/errors.h"

namespace Bridge {
namespace {

using VimbaLibrary::FloatRange;
using VimbaLibrary::IntegerRange;

// From the GigE Vision standard: the pause between two packets of the first stream channel, in ticks of the camera's
// clock.
constexpr std::uint64_t kPauseRegister = 0x0d08;

// A packet's size has the IP, UDP and GVSP headers in it (20 + 8 + 8 bytes). On the cable come the Ethernet header,
// check sum, preamble and gap (14 + 4 + 8 + 12 bytes).
constexpr double kHeaderBytes = 36.0;
constexpr double kCableBytes = 38.0;
// Gigabit Ethernet. A faster camera would make a longer pause than it needs: its rate comes out below the wanted one.
constexpr double kCableBytesPerS = 125e6;

class ThroughputLimit final : public StreamRate {
 public:
  ThroughputLimit(ArvDevice* device, std::unique_ptr<NativeFeature> limit)
      : m_limit(std::move(limit)), m_mode(NativeFeature::Find(device, "DeviceLinkThroughputLimitMode")) {}

  VmbError_t Get(std::int64_t& bytes_per_s) const override { return m_limit->GetInteger(bytes_per_s); }
  VmbError_t Set(std::int64_t bytes_per_s) override {
    if (m_mode) {
      if (const VmbError_t error = m_mode->SetEnum("On")) return error;
    }
    IntegerRange range;
    if (const VmbError_t error = m_limit->IntegerRangeOf(range)) return error;
    // Down to a whole step: the limit must not be exceeded.
    return m_limit->SetInteger(bytes_per_s - (bytes_per_s - range.min) % range.step);
  }
  VmbError_t Range(IntegerRange& range) const override {
    const VmbError_t error = m_limit->IntegerRangeOf(range);
    // Set rounds.
    if (!error) range.step = 1;
    return error;
  }

 private:
  const std::unique_ptr<NativeFeature> m_limit;
  const std::unique_ptr<NativeFeature> m_mode;
};

class PacketPause final : public StreamRate {
 public:
  PacketPause(ArvGvDevice* device, std::uint64_t ticks_per_s)
      : m_device(device), m_ticks_per_s(static_cast<double>(ticks_per_s)) {}

  VmbError_t Get(std::int64_t& bytes_per_s) const override {
    double packet_bytes = 0.0;
    if (const VmbError_t error = PacketBytes(packet_bytes)) return error;
    ErrorSlot error;
    std::uint32_t ticks = 0;
    arv_device_read_register(ARV_DEVICE(m_device), kPauseRegister, &ticks, error.Take());
    if (error.Code()) return error.Code();
    const double s = static_cast<double>(ticks) / m_ticks_per_s + (packet_bytes + kCableBytes) / kCableBytesPerS;
    const double rate = std::floor((packet_bytes - kHeaderBytes) / s);
    bytes_per_s = std::clamp(static_cast<std::int64_t>(rate), kRange.min, kRange.max);
    // The pause is a whole number of ticks: what was asked for is told, not what came of it, as long as that is all.
    if (m_wanted != 0 && TicksFor(m_wanted, packet_bytes) == ticks) bytes_per_s = m_wanted;
    return VmbErrorSuccess;
  }
  VmbError_t Set(std::int64_t bytes_per_s) override {
    double packet_bytes = 0.0;
    if (const VmbError_t error = PacketBytes(packet_bytes)) return error;
    ErrorSlot error;
    arv_device_write_register(ARV_DEVICE(m_device), kPauseRegister, TicksFor(bytes_per_s, packet_bytes), error.Take());
    if (!error.Code()) m_wanted = bytes_per_s;
    return error.Code();
  }
  VmbError_t Range(IntegerRange& range) const override {
    range = kRange;
    return VmbErrorSuccess;
  }
  void PacketSizeChanged() override {
    if (m_wanted != 0) std::ignore = Set(m_wanted);
  }

 private:
  VmbError_t PacketBytes(double& bytes) const {
    ErrorSlot error;
    const guint size = arv_gv_device_get_packet_size(m_device, error.Take());
    if (error.Code()) return error.Code();
    if (size <= kHeaderBytes) return VmbErrorInternalFault;
    bytes = size;
    return VmbErrorSuccess;
  }
  // Up to a whole tick: the rate must not be exceeded.
  std::uint32_t TicksFor(std::int64_t bytes_per_s, double packet_bytes) const {
    const double s = (packet_bytes - kHeaderBytes) / static_cast<double>(bytes_per_s) -
                     (packet_bytes + kCableBytes) / kCableBytesPerS;
    const double ticks = std::ceil(std::max(s, 0.0) * m_ticks_per_s);
    return static_cast<std::uint32_t>(std::min(ticks, static_cast<double>(std::numeric_limits<std::uint32_t>::max())));
  }

  ArvGvDevice* const m_device;
  const double m_ticks_per_s;
  // 0: nothing was asked for.
  std::int64_t m_wanted = 0;
};

bool IsBytesPerSecond(const std::string& unit) {
  // The standard's own unit has no other name in a description that leaves it out.
  return unit.empty() || unit == "Bps" || unit == "B/s" || unit == "bytes/s";
}

}  // namespace

VmbError_t Register::GetInteger(std::int64_t& value) const {
  ErrorSlot error;
  std::uint32_t read = 0;
  arv_device_read_register(m_device, m_address, &read, error.Take());
  if (!error.Code()) value = read;
  return error.Code();
}

VmbError_t Register::SetInteger(std::int64_t value) {
  if (value < m_range.min || value > m_range.max) return VmbErrorInvalidValue;
  ErrorSlot error;
  arv_device_write_register(m_device, m_address, static_cast<std::uint32_t>(value), error.Take());
  return error.Code();
}

VmbError_t Register::IntegerRangeOf(IntegerRange& range) const {
  range = m_range;
  return VmbErrorSuccess;
}

std::shared_ptr<StreamRate> StreamRate::Of(ArvDevice* device) {
  auto limit = NativeFeature::Find(device, "DeviceLinkThroughputLimit");
  if (limit && limit->Type() == FeatureType::kInteger && IsBytesPerSecond(limit->Unit())) {
    return std::make_shared<ThroughputLimit>(device, std::move(limit));
  }
  if (!ARV_IS_GV_DEVICE(device)) return nullptr;
  ErrorSlot error;
  const std::uint64_t ticks_per_s = arv_gv_device_get_timestamp_tick_frequency(ARV_GV_DEVICE(device), error.Take());
  if (error.Code() || ticks_per_s == 0) return nullptr;
  return std::make_shared<PacketPause>(ARV_GV_DEVICE(device), ticks_per_s);
}

VmbError_t StreamBytesPerSecond::SetInteger(std::int64_t value) {
  IntegerRange range;
  if (const VmbError_t error = m_rate->Range(range)) return error;
  return value < range.min || value > range.max ? VmbError_t{VmbErrorInvalidValue} : m_rate->Set(value);
}

PacketSize::PacketSize(std::unique_ptr<NativeFeature> native, const AcquisitionState& state,
                       std::shared_ptr<StreamRate> rate)
    : m_native(std::move(native)), m_state(state), m_rate(std::move(rate)) {}

VmbError_t PacketSize::SetInteger(std::int64_t value) {
  if (m_state.Streaming()) return VmbErrorInvalidAccess;
  if (const VmbError_t error = m_native->SetInteger(value)) return error;
  if (m_rate) m_rate->PacketSizeChanged();
  return VmbErrorSuccess;
}

VmbError_t ComputedFloat::FloatRangeOf(FloatRange& range) const {
  double value = 0.0;
  const VmbError_t error = m_compute(value);
  if (!error) range = {value, value};
  return error;
}

VmbError_t ComputedInteger::GetInteger(std::int64_t& value) const {
  value = m_compute();
  return VmbErrorSuccess;
}

VmbError_t ComputedInteger::IntegerRangeOf(IntegerRange& range) const {
  range = {0, std::numeric_limits<std::int64_t>::max(), 1};
  return VmbErrorSuccess;
}

}  // namespace Bridge
