// library/system_features.cpp
// The features of the Vimba system: transport layer, discovery, discovery events.
#include "library/system_features.h"

#include <iterator>
#include <utility>

namespace VimbaLibrary {
namespace {

constexpr char kGeVTLIsPresent[] = "GeVTLIsPresent";
constexpr char kGeVDiscoveryAllOnce[] = "GeVDiscoveryAllOnce";
constexpr char kGeVDiscoveryAllAuto[] = "GeVDiscoveryAllAuto";
constexpr char kGeVDiscoveryAllOff[] = "GeVDiscoveryAllOff";
constexpr char kGeVDiscoveryAllDuration[] = "GeVDiscoveryAllDuration";
constexpr char kGeVDiscoveryStatus[] = "GeVDiscoveryStatus";
constexpr char kDiscoveryCameraEvent[] = "DiscoveryCameraEvent";
constexpr char kDiscoveryCameraIdent[] = "DiscoveryCameraIdent";
constexpr char kElapsed[] = "Elapsed";

constexpr EnumEntry kCameraEvents[] = {{"Missing", 0}, {"Detected", 1}, {"Reachable", 2}, {"Unreachable", 3}};

EnumNode StatusEntries() {
  EnumNode node;
  for (const std::string_view name : kDiscoveryStatusNames) {
    node.entries.push_back({name, static_cast<std::int64_t>(node.entries.size())});
  }
  return node;
}

}  // namespace

SystemFeatures::SystemFeatures(const SystemConfiguration& configuration, std::shared_ptr<Notifier> notifier)
    : m_notifier(std::move(notifier)), m_map(Rows(configuration), [] { return false; }) {
  SetStatus(configuration.discovery_status);
}

std::vector<Feature> SystemFeatures::Rows(const SystemConfiguration& configuration) {
  // Commands run while the features are locked.
  const auto status = [this](DiscoveryStatus value) {
    return CommandNode{[this, value]() KEL_REQUIRES(m_mutex) { SetStatus(value); }};
  };
  const auto search = configuration.search ? configuration.search : [] {};
  const auto elapsed = [this] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_started).count();
  };
  return {{kGeVTLIsPresent, Access::kReadOnly, BoolNode{configuration.gige_present}},
          {kGeVDiscoveryStatus, Access::kReadOnly, StatusEntries()},
          {kGeVDiscoveryAllOnce, Access::kReadWrite, CommandNode{search}},
          {kGeVDiscoveryAllAuto, Access::kReadWrite, status(DiscoveryStatus::kAutomatic)},
          {kGeVDiscoveryAllOff, Access::kReadWrite, status(DiscoveryStatus::kOff)},
          {kGeVDiscoveryAllDuration, Access::kReadWrite, IntegerNode{{0, 10'000}, 150}},
          {kDiscoveryCameraEvent, Access::kReadOnly, EnumNode{{std::begin(kCameraEvents), std::end(kCameraEvents)}}},
          {kDiscoveryCameraIdent, Access::kReadOnly, StringNode{}},
          {kElapsed, Access::kReadOnly, FloatNode{{0.0, 1e12}, {0.0}, nullptr, {}, elapsed}}};
}

void SystemFeatures::SetStatus(DiscoveryStatus status) {
  m_map.Own<EnumNode>(kGeVDiscoveryStatus).selected = static_cast<std::size_t>(status);
}

VmbError_t SystemFeatures::Watch(const std::string& feature, VmbInvalidationCallback callback, void* context) {
  const BMutexLock lock(m_mutex);
  if (!m_map.Has(feature)) return VmbErrorNotFound;
  m_watchers.push_back({feature, callback, context});
  return VmbErrorSuccess;
}

bool SystemFeatures::DiscoversByItself() const {
  const BMutexLock lock(m_mutex);
  const auto status = static_cast<DiscoveryStatus>(m_map.Own<EnumNode>(kGeVDiscoveryStatus).selected);
  return status == DiscoveryStatus::kAutomatic;
}

void SystemFeatures::Announce(const std::string& camera_id, CameraEvent event) {
  const BMutexLock lock(m_mutex);
  const auto status = static_cast<DiscoveryStatus>(m_map.Own<EnumNode>(kGeVDiscoveryStatus).selected);
  if (status != DiscoveryStatus::kAutomatic) return;
  const auto take_values = [this, camera_id, event] {
    const BMutexLock values_lock(m_mutex);
    m_map.Own<StringNode>(kDiscoveryCameraIdent).value = camera_id;
    m_map.Own<EnumNode>(kDiscoveryCameraEvent).selected = static_cast<std::size_t>(event);
  };
  m_notifier->Post({gVimbaHandle, {}, nullptr, nullptr, take_values});
  for (const Watcher& watcher : m_watchers) {
    if (watcher.feature != kDiscoveryCameraEvent && watcher.feature != kDiscoveryCameraIdent) continue;
    m_notifier->Post({gVimbaHandle, watcher.feature, watcher.callback, watcher.context, {}});
  }
}

}  // namespace VimbaLibrary
