// camera/camera.h
// One simulated camera on the link, opened or not.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bmutex.h"
#include "camera/camera_configuration.h"
#include "camera/camera_features.h"
#include "engine/acquisition.h"
#include "engine/camera_clock.h"
#include "engine/counters.h"
#include "library/notifier.h"

namespace Simulator {

using VimbaLibrary::Notifier;

// Its features keep their values when it is closed and when the API shuts down. Plugging it in is a power-up.
// [any thread]
class Camera {
 public:
  // What the world around a camera does for it. [any thread]
  struct Surroundings {
    // The faults that are due for the exposure that begins now.
    std::function<FrameOverride(const Camera&)> frame_faults;
    // Runs without a lock after unplugging and plugging.
    std::function<void(const Camera&, bool plugged)> presence_changed;
    // A fault has unplugged the camera, and this comes back.
    std::function<void(const Camera&, const Replug&)> unplugged_for;
  };

  // Throws std::invalid_argument for an impossible configuration and std::runtime_error for a picture that cannot be
  // read.
  Camera(CameraConfiguration configuration, Link& link, Surroundings surroundings);
  Camera(const Camera&) = delete;
  Camera& operator=(const Camera&) = delete;

  const CameraConfiguration& Configuration() const { return m_configuration; }
  // By camera id, serial number, IP address or MAC address (with or without separators, in capitals or not).
  bool IsCalled(std::string_view name) const;

  bool Plugged() const;
  void Unplug();
  void Plug();

  // Full access belongs to one opening at a time.
  bool Claim(VmbHandle_t owner);
  void Release(VmbHandle_t owner);
  bool Claimed() const { return m_owner != nullptr; }
  // Grows with every unplugging: a handle that is older than the last one stays dead.
  std::uint64_t PowerCycle() const { return m_power_cycle; }

  SensorParts Parts();
  // The acquisition commands go to the acquisition that is attached: that of the opening with full access.
  void Attach(Acquisition& acquisition);
  void Detach(Acquisition& acquisition);

  template <class Body>
  VmbError_t Read(Body body) const {
    const BMutexLock lock(m_mutex);
    return body(m_features->Map());
  }
  template <class Body>
  VmbError_t Write(Body body) {
    const BMutexLock lock(m_mutex);
    const VmbError_t error = body(m_features->Map());
    if (!error) FeaturesChanged();
    return error;
  }

  // Calls back on the notifier's thread whenever the feature's value or range changes.
  VmbError_t Watch(VmbHandle_t handle, const std::string& feature, VmbInvalidationCallback callback, void* context,
                   std::shared_ptr<Notifier> notifier);
  void Unwatch(VmbHandle_t handle);

  void InputEdge(int line, bool rising);
  const Counters& Counted() const { return m_counters; }
  bool Running() const;
  std::map<std::string, std::string> FeatureValues() const;

 private:
  struct Watcher {
    VmbHandle_t handle;
    std::string feature;
    VmbInvalidationCallback callback;
    void* context;
    std::shared_ptr<Notifier> notifier;
    // What the feature last was, as FeatureMap::Describe writes it.
    std::string seen;
  };

  AcquisitionCommands Commands();
  std::unique_ptr<CameraFeatures> PoweredUp();
  void FollowPicture(const PictureMeans& means);
  void FeaturesChanged() KEL_REQUIRES(m_mutex);

  const CameraConfiguration m_configuration;
  Link& m_link;
  const Surroundings m_surroundings;
  const std::shared_ptr<const Scene> m_scene;
  CameraClock m_clock;
  Counters m_counters;
  std::atomic<VmbHandle_t> m_owner{nullptr};
  std::atomic<std::uint64_t> m_power_cycle{0};
  std::atomic<bool> m_plugged;

  mutable BMutex m_mutex;
  Acquisition* m_acquisition KEL_GUARDED_BY(m_mutex) = nullptr;
  std::unique_ptr<CameraFeatures> m_features KEL_GUARDED_BY(m_mutex);
  std::vector<Watcher> m_watchers KEL_GUARDED_BY(m_mutex);
};

}  // namespace Simulator
