// camera/transport_features.cpp
// Feature rows of a camera: clock, stream, statistics; and what the configuration changes in all rows.
#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "camera/camera_features.h"
#include "camera/feature_names.h"
#include "library/value_text.h"

namespace Simulator {

using VimbaLibrary::QuotedText;
using VimbaLibrary::ValueText;

std::vector<Feature> CameraFeatures::TimestampRows() {
  using namespace FeatureName;
  constexpr std::int64_t kMaxTicks = INT64_MAX;
  const std::int64_t frequency = m_clock.TicksPerSecond();
  return {
      {kGevTimestampTickFrequency, Access::kReadOnly, IntegerNode{{frequency, frequency}, frequency}},
      {kGevTimestampValue, Access::kReadOnly, IntegerNode{{0, kMaxTicks}, 0, {}, [this] { return m_latched_ticks; }}},
      {kGevTimestampControlLatch, Access::kReadWrite,
       CommandNode{[this] { m_latched_ticks = static_cast<std::int64_t>(m_clock.TicksAt(Clock::now())); }}},
      {kGevTimestampControlReset, Access::kReadWrite, CommandNode{[this] { m_clock.Reset(); }}}};
}

std::vector<Feature> CameraFeatures::StreamRows() {
  using namespace FeatureName;
  return {{kGevHeartbeatTimeout, Access::kReadWrite, IntegerNode{{500, 10'000}, 3000}},
          {kStreamBytesPerSecond, Access::kReadWrite, IntegerNode{{1'000'000, 124'000'000}, 115'000'000}},
          {kGVSPPacketSize, Access::kIdle, IntegerNode{{500, 9000, 4}, 1500}},
          {kGVSPAdjustPacketSize, Access::kReadWrite,
           CommandNode{[this] { AdjustPacketSize(); }, [this] { return Clock::now() >= m_packet_size_adjusted; }}}};
}

void CameraFeatures::AdjustPacketSize() {
  if (m_commands.running()) return;
  // The node exists even when API calls do not find the feature.
  auto& node = m_map.Own<IntegerNode>(FeatureName::kGVSPPacketSize);
  const IntegerRange& range = node.fixed;
  const std::int64_t found = std::min(m_configuration.negotiated_packet_bytes, m_mtu_bytes);
  const std::int64_t wanted = std::clamp(found, range.min, range.max);
  node.value = wanted - (wanted - range.min) % range.step;
  const bool instant = m_configuration.timing == Timing::kInstant;
  m_packet_size_adjusted =
      Clock::now() + (instant ? Clock::duration{} : ClockDuration(m_configuration.packet_size_adjustment));
}

std::vector<Feature> CameraFeatures::StatisticRows() const {
  using namespace FeatureName;
  constexpr std::int64_t kMaxCount = INT64_MAX;
  const auto count = [](const char* name, const std::atomic<std::uint64_t>& counter) {
    return Feature{name, Access::kReadOnly, IntegerNode{{0, kMaxCount}, 0, {}, [&counter] {
                                                          return static_cast<std::int64_t>(counter.load());
                                                        }}};
  };
  const Counters& counters = m_counters;
  return {count(kStatFrameDelivered, counters.delivered),
          count(kStatFrameDropped, counters.dropped),
          count(kStatPacketReceived, counters.packets_received),
          count(kStatPacketMissed, counters.packets_lost),
          {kStatFrameRate, Access::kReadOnly,
           FloatNode{{0.0, 1e6}, {0.0}, nullptr, {}, [&counters] { return counters.frames_per_s.load(); }}}};
}

namespace {

// How far a configuration may widen the range of a feature that the simulator calculates with, in the feature's own
// unit. The others have no limit: the simulator only reports some of them, and ranges that depend on other features can
// only be narrowed.
struct WidestRange {
  const char* feature;
  double min;
  double max;
};
constexpr Microseconds kLongestTime = std::chrono::hours(1);
constexpr WidestRange kWidestRanges[] = {
    // 0 would stand for an acquisition without end.
    {FeatureName::kAcquisitionFrameCount, 1.0, 1e9},
    {FeatureName::kBalanceRatioAbs, 0.01, 100.0},
    {FeatureName::kBinningHorizontal, 1.0, kMaxBinning},
    {FeatureName::kBinningVertical, 1.0, kMaxBinning},
    // With a shorter one the limit of the frame rate would leave its own range.
    {FeatureName::kExposureTimeAbs, 1.0, kLongestTime.count()},
    // A packet has room for at least one byte of the image.
    {FeatureName::kGVSPPacketSize, static_cast<double>(kPacketHeaderBytes + 1), static_cast<double>(kMaxPacketBytes)},
    // With more gain the noise would leave the range of numbers.
    {FeatureName::kGain, -100.0, 100.0},
    // At the lowest rate the largest image takes some weeks, which the clock can still count in nanoseconds.
    {FeatureName::kStreamBytesPerSecond, 1e3, 1e12},
    {FeatureName::kTriggerDelayAbs, 0.0, kLongestTime.count()}};

void CheckBounds(const std::string& name, const RangeOverride& change) {
  const auto* const widest = std::find_if(std::begin(kWidestRanges), std::end(kWidestRanges),
                                          [&](const WidestRange& row) { return name == row.feature; });
  if (widest == std::end(kWidestRanges)) return;
  const auto check = [&](const char* bound, const std::optional<double>& value) {
    if (!value || (*value >= widest->min && *value <= widest->max)) return;
    throw std::invalid_argument("ranges." + name + "." + bound + ": " + ValueText(*value) + " is no number from " +
                                ValueText(widest->min) + " to " + ValueText(widest->max));
  };
  check("min", change.min);
  check("max", change.max);
}

std::int64_t Whole(const std::optional<double>& value, std::int64_t otherwise) {
  return value ? static_cast<std::int64_t>(*value) : otherwise;
}

IntegerRange Narrowed(const IntegerRange& range, const RangeOverride& change) {
  return {std::max(range.min, Whole(change.min, range.min)), std::min(range.max, Whole(change.max, range.max)),
          Whole(change.step, range.step)};
}

FloatRange Narrowed(const FloatRange& range, const RangeOverride& change) {
  return {std::max(range.min, change.min.value_or(range.min)), std::min(range.max, change.max.value_or(range.max))};
}

void Change(IntegerNode& node, const RangeOverride& change) {
  if (node.range) {
    node.range = [inner = std::move(node.range), change] { return Narrowed(inner(), change); };
  } else {
    node.fixed = {Whole(change.min, node.fixed.min), Whole(change.max, node.fixed.max),
                  Whole(change.step, node.fixed.step)};
  }
}

void Change(FloatNode& node, const RangeOverride& change) {
  if (node.range) {
    node.range = [inner = std::move(node.range), change] { return Narrowed(inner(), change); };
  } else {
    node.fixed = {change.min.value_or(node.fixed.min), change.max.value_or(node.fixed.max)};
  }
}

template <class Range>
Range Filled(const Range& range) {
  if (range.min <= range.max) return range;
  throw std::invalid_argument("the minimum " + ValueText(range.min) + " is above the maximum " + ValueText(range.max));
}

// Brings the power-up value into a changed range.
void Settle(IntegerNode& node) {
  const IntegerRange range = Filled(node.range ? node.range() : node.fixed);
  node.value = std::clamp(node.value, range.min, range.max);
  node.value -= (node.value - range.min) % range.step;
}

void Settle(FloatNode& node) {
  const FloatRange range = Filled(node.range ? node.range() : node.fixed);
  for (double& value : node.values) value = std::clamp(value, range.min, range.max);
}

std::string TextOf(const FeatureSetting& setting) {
  if (const auto* text = std::get_if<std::string>(&setting)) return QuotedText(text->c_str());
  if (const auto* integer = std::get_if<std::int64_t>(&setting)) return ValueText(*integer);
  return ValueText(std::get<double>(setting));
}

}  // namespace

void CameraFeatures::ApplyConfiguration() {
  for (const auto& [name, change] : m_configuration.ranges) ApplyRange(name, change);
  for (const auto& [name, setting] : m_configuration.features) ApplySetting(name, setting);
  for (const std::string& name : m_configuration.missing) {
    Feature* feature = m_map.Row(name);
    if (!feature) throw std::invalid_argument("missing: there is no feature " + name);
    feature->missing = true;
  }
}

void CameraFeatures::ApplyRange(const std::string& name, const RangeOverride& change) {
  Feature* feature = m_map.Row(name);
  if (!feature) throw std::invalid_argument("ranges." + name + ": there is no such feature");
  CheckBounds(name, change);
  try {
    if (auto* integer = std::get_if<IntegerNode>(&feature->node)) {
      Change(*integer, change);
      Settle(*integer);
    } else if (auto* number = std::get_if<FloatNode>(&feature->node)) {
      Change(*number, change);
      Settle(*number);
    } else {
      throw std::invalid_argument("the feature has no range");
    }
  } catch (const std::invalid_argument& error) {
    throw std::invalid_argument("ranges." + name + ": " + error.what());
  }
  // Settling may have changed the value: features that depend on it follow, as after a write.
  if (feature->written) feature->written();
}

void CameraFeatures::ApplySetting(const std::string& name, const FeatureSetting& setting) {
  VmbError_t error = VmbErrorSuccess;
  if (const auto* text = std::get_if<std::string>(&setting)) {
    error = m_map.SetEnum(name, *text);
  } else if (const auto* integer = std::get_if<std::int64_t>(&setting)) {
    error = m_map.SetInteger(name, *integer);
    if (error == VmbErrorWrongType) error = m_map.SetFloat(name, static_cast<double>(*integer));
  } else {
    error = m_map.SetFloat(name, std::get<double>(setting));
  }
  if (error) {
    throw std::invalid_argument("features." + name + ": the camera refuses " + TextOf(setting) + " with error " +
                                std::to_string(error));
  }
}

}  // namespace Simulator
