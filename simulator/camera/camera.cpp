// camera/camera.cpp
// One simulated camera on the link, opened or not.
#include "camera/camera.h"

#include <algorithm>
#include <cctype>
#include <tuple>
#include <utility>

namespace Simulator {
namespace {

std::shared_ptr<const Scene> MakeScene(const CameraConfiguration& camera) {
  switch (camera.scene) {
    case SceneKind::kChart:
      return MakeChartScene(camera.sensor_width, camera.sensor_height, camera.colour, camera.bayer_order);
    case SceneKind::kPicture:
      return MakePictureScene(camera.picture, camera.sensor_width, camera.sensor_height, camera.colour);
    case SceneKind::kNumbers:
      return MakeNumberScene();
    case SceneKind::kNone:
      break;
  }
  return nullptr;
}

std::string HexDigits(std::string_view mac) {
  std::string digits;
  for (const char character : mac) {
    if (character == ':' || character == '-') continue;
    digits += static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  }
  return digits;
}

}  // namespace

Camera::Camera(CameraConfiguration configuration, Link& link, Surroundings surroundings)
    : m_configuration(std::move(configuration)),
      m_link(link),
      m_surroundings(std::move(surroundings)),
      m_scene(MakeScene(m_configuration)),
      m_clock(m_configuration.ticks_per_second),
      m_plugged(m_configuration.plugged),
      m_features(PoweredUp()) {}

// The commands run with the features locked, as every access to features does.
AcquisitionCommands Camera::Commands() {
  const auto forward = [this](void (Acquisition::*command)()) {
    return [this, command]() KEL_REQUIRES(m_mutex) {
      if (m_acquisition) (m_acquisition->*command)();
    };
  };
  return {forward(&Acquisition::Start), forward(&Acquisition::Stop), forward(&Acquisition::Abort),
          forward(&Acquisition::SoftwareTrigger),
          [this]() KEL_REQUIRES(m_mutex) { return m_acquisition && m_acquisition->Running(); }};
}

std::unique_ptr<CameraFeatures> Camera::PoweredUp() {
  return std::make_unique<CameraFeatures>(m_configuration, m_link.Settings().mtu_bytes, m_clock, m_counters,
                                          Commands());
}

bool Camera::IsCalled(std::string_view name) const {
  const CameraConfiguration& camera = m_configuration;
  return name == camera.id || name == camera.serial || name == camera.ip || HexDigits(name) == HexDigits(camera.mac);
}

bool Camera::Plugged() const { return m_plugged; }

void Camera::Unplug() {
  {
    const BMutexLock lock(m_mutex);
    if (!m_plugged.exchange(false)) return;
    ++m_power_cycle;
    m_owner = nullptr;
    if (m_acquisition) m_acquisition->Abort();
    m_acquisition = nullptr;
    m_watchers.clear();
  }
  m_surroundings.presence_changed(*this, false);
}

void Camera::Plug() {
  {
    const BMutexLock lock(m_mutex);
    if (m_plugged) return;
    m_clock.Reset();
    m_counters.Reset();
    m_features = PoweredUp();
    m_plugged = true;
  }
  m_surroundings.presence_changed(*this, true);
}

bool Camera::Claim(VmbHandle_t owner) {
  VmbHandle_t nobody = nullptr;
  return m_owner.compare_exchange_strong(nobody, owner);
}

void Camera::Release(VmbHandle_t owner) { std::ignore = m_owner.compare_exchange_strong(owner, nullptr); }

SensorParts Camera::Parts() {
  return {m_scene,
          m_clock,
          m_counters,
          m_link,
          m_configuration.packet_loss,
          m_configuration.seed,
          [this] { return m_surroundings.frame_faults(*this); },
          [this](const std::optional<Replug>& replug) {
            if (!m_plugged) return;
            Unplug();
            if (replug) m_surroundings.unplugged_for(*this, *replug);
          },
          [this](const PictureMeans& means) { FollowPicture(means); }};
}

void Camera::Attach(Acquisition& acquisition) {
  const BMutexLock lock(m_mutex);
  m_acquisition = &acquisition;
  acquisition.Apply(m_features->Settings());
}

void Camera::Detach(Acquisition& acquisition) {
  const BMutexLock lock(m_mutex);
  if (m_acquisition == &acquisition) m_acquisition = nullptr;
}

void Camera::FollowPicture(const PictureMeans& means) {
  const BMutexLock lock(m_mutex);
  m_features->FollowPicture(means);
  FeaturesChanged();
}

void Camera::FeaturesChanged() {
  if (m_acquisition) m_acquisition->Apply(m_features->Settings());
  for (Watcher& watcher : m_watchers) {
    std::string now = m_features->Map().Describe(watcher.feature);
    if (now == watcher.seen) continue;
    watcher.seen = std::move(now);
    watcher.notifier->Post({watcher.handle, watcher.feature, watcher.callback, watcher.context, {}});
  }
}

VmbError_t Camera::Watch(VmbHandle_t handle, const std::string& feature, VmbInvalidationCallback callback,
                         void* context, std::shared_ptr<Notifier> notifier) {
  const BMutexLock lock(m_mutex);
  const FeatureMap& map = m_features->Map();
  if (!map.Has(feature)) return VmbErrorNotFound;
  m_watchers.push_back({handle, feature, callback, context, std::move(notifier), map.Describe(feature)});
  return VmbErrorSuccess;
}

void Camera::Unwatch(VmbHandle_t handle) {
  const BMutexLock lock(m_mutex);
  m_watchers.erase(std::remove_if(m_watchers.begin(), m_watchers.end(),
                                  [&](const Watcher& watcher) { return watcher.handle == handle; }),
                   m_watchers.end());
}

void Camera::InputEdge(int line, bool rising) {
  const BMutexLock lock(m_mutex);
  if (m_acquisition) m_acquisition->InputEdge(line, rising);
}

bool Camera::Running() const {
  const BMutexLock lock(m_mutex);
  return m_acquisition && m_acquisition->Running();
}

std::map<std::string, std::string> Camera::FeatureValues() const {
  const BMutexLock lock(m_mutex);
  return m_features->Map().Values();
}

}  // namespace Simulator
