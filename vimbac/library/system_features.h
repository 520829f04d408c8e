// library/system_features.h
// The features of the Vimba system: transport layer, discovery, discovery events.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bmutex.h"
#include "library/feature.h"
#include "library/notifier.h"

namespace VimbaLibrary {

enum class CameraEvent { kMissing, kDetected };

enum class DiscoveryStatus { kOff, kAutomatic };
// The entries of GeVDiscoveryStatus, by the values above.
inline constexpr std::array<std::string_view, 2> kDiscoveryStatusNames{"Off", "Automatic"};

struct SystemConfiguration {
  bool gige_present = true;
  DiscoveryStatus discovery_status = DiscoveryStatus::kOff;
  // Looks for cameras. Runs on the thread of the caller who asked for it, while the features are locked. Empty: they
  // are known without a search.
  std::function<void()> search = {};
};

// They live from one start of the API to its shut-down. [any thread]
class SystemFeatures {
 public:
  SystemFeatures(const SystemConfiguration& configuration, std::shared_ptr<Notifier> notifier);

  template <class Body>
  VmbError_t Read(Body body) const {
    const BMutexLock lock(m_mutex);
    return body(m_map);
  }
  template <class Body>
  VmbError_t Write(Body body) {
    const BMutexLock lock(m_mutex);
    return body(m_map);
  }
  bool DiscoversByItself() const;
  VmbError_t Watch(const std::string& feature, VmbInvalidationCallback callback, void* context);

  // Reports a camera to the watchers while discovery is automatic. The two event features take their values on the
  // notifier's thread right before the callbacks, so that each callback reads its own event.
  void Announce(const std::string& camera_id, CameraEvent event);

 private:
  struct Watcher {
    std::string feature;
    VmbInvalidationCallback callback;
    void* context;
  };

  std::vector<Feature> Rows(const SystemConfiguration& configuration);
  void SetStatus(DiscoveryStatus status) KEL_REQUIRES(m_mutex);

  const std::shared_ptr<Notifier> m_notifier;
  const std::chrono::steady_clock::time_point m_started = std::chrono::steady_clock::now();
  mutable BMutex m_mutex;
  FeatureMap m_map KEL_GUARDED_BY(m_mutex);
  std::vector<Watcher> m_watchers KEL_GUARDED_BY(m_mutex);
};

}  // namespace VimbaLibrary
