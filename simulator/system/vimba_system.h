// system/vimba_system.h
// The simulated Vimba system: cameras on their links, start-up, handles.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bmutex.h"
#include "camera/camera.h"
#include "control/call_record.h"
#include "control/configuration.h"
#include "control/faults.h"
#include "engine/link.h"
#include "library/handle_table.h"
#include "library/notifier.h"
#include "library/system_features.h"
#include "system/session.h"

namespace Simulator {

using VimbaLibrary::Notifier;
using VimbaLibrary::SystemFeatures;

// What one configuration describes. The constructor throws as Camera's does, with the camera's index in front of the
// message about a configured value.
struct World {
  World(const Configuration& configuration, const Camera::Surroundings& surroundings);
  // Links stay where they are: cameras refer to them.
  std::deque<Link> links;
  SystemConfiguration system;
  std::vector<std::shared_ptr<Camera>> cameras;
};

// [any thread] but where a function says otherwise.
//
// A thread takes the simulator's locks in this order and may leave some out:
//   1. m_lifecycle
//   2. m_mutex
//   3. the features' lock of a camera or of the system
//   4. the lock of a camera's acquisition
//   5. the lock of its capture queue
// Under every other lock (link, faults, record of calls, notifier, scene) no further one is taken. No lock at all is
// held while a callback of the caller runs.
class VimbaSystem {
 public:
  // The only one of this library.
  static VimbaSystem& Instance();

  // Forgets faults and calls and replaces the cameras. Throws as World does, for a configuration from a file
  // std::runtime_error that names it; std::logic_error while the API is started.
  void Configure(const Configuration& configuration);
  // The cameras of the environment's configuration, unless there are cameras already. Throws as
  // EnvironmentConfiguration and Configure do.
  void Prepare();

  // As Prepare. A failure is Other; the first one prints its reason on standard error.
  VmbError_t PrepareForStartup();
  VmbError_t Startup();
  // Returns when no callback runs and no thread is left. In a callback, which it could never outlast, it does nothing.
  void Shutdown();
  bool Started() const { return m_startups != 0; }

  // Plugs in what a fault has unplugged for a time that is over. It happens when somebody looks for cameras, so that
  // it needs no thread, which nothing would end.
  void PlugWhatIsDue();
  // What callers see of the cameras that are plugged in. The texts are the cameras'.
  std::vector<VmbCameraInfo_t> CameraInfos();
  std::optional<VmbCameraInfo_t> CameraInfo(const char* name);
  std::vector<std::shared_ptr<Camera>> AllCameras() const;
  // By any of its names; null when there is none. Of several the first one that is plugged in, else the first.
  std::shared_ptr<Camera> FindCamera(std::string_view name) const;

  VmbError_t Open(const char* name, VmbAccessMode_t access, VmbHandle_t& handle);
  VmbError_t Close(VmbHandle_t handle);
  std::shared_ptr<Session> FindSession(VmbHandle_t handle) const;
  // The opening with full access of a camera; null when there is none.
  std::shared_ptr<Session> FullSessionOf(const Camera& camera) const;
  std::size_t OpenHandles(const Camera& camera) const;

  // The body gets the features of the system or of the opened camera.
  template <class Body>
  VmbError_t ReadFeatures(VmbHandle_t handle, Body body) const {
    if (handle == gVimbaHandle) {
      const auto features = Features();
      return features ? features->Read(body) : VmbErrorApiNotStarted;
    }
    const std::shared_ptr<Session> session = FindSession(handle);
    if (!session) return VmbErrorBadHandle;
    if (const VmbError_t error = session->Alive()) return error;
    return session->Device().Read(body);
  }
  template <class Body>
  VmbError_t WriteFeatures(VmbHandle_t handle, Body body) {
    if (handle == gVimbaHandle) {
      const auto features = Features();
      return features ? features->Write(body) : VmbErrorApiNotStarted;
    }
    const std::shared_ptr<Session> session = FindSession(handle);
    if (!session) return VmbErrorBadHandle;
    if (const VmbError_t error = session->Alive()) return error;
    if (!session->HasFullAccess()) return VmbErrorInvalidAccess;
    return session->Device().Write(body);
  }
  VmbError_t Watch(VmbHandle_t handle, const char* feature, VmbInvalidationCallback callback, void* context);

  bool Idle() const;
  Faults& FaultSet() { return m_faults; }
  CallRecord& Record() { return m_record; }

 private:
  // Makes the only one.
  struct Access;

  VimbaSystem() = default;
  bool HasWorld() const;
  bool OnLibraryThread() const;
  std::shared_ptr<SystemFeatures> Features() const;
  std::shared_ptr<Notifier> CurrentNotifier() const;
  std::vector<std::shared_ptr<Session>> Sessions() const;
  void SetWorld(const Configuration& configuration) KEL_REQUIRES(m_lifecycle);
  void PresenceChanged(const Camera& camera, bool plugged);
  void PlugLater(const Camera& camera, const Replug& replug);

  Faults m_faults;
  CallRecord m_record;
  // Held through the whole of start-up, shut-down and configuration, so that they take turns.
  BMutex m_lifecycle;
  std::atomic<int> m_startups{0};
  std::atomic<bool> m_reported{false};

  struct ToPlug {
    Clock::time_point due;
    std::string camera;
  };

  mutable BMutex m_mutex;
  std::shared_ptr<World> m_world KEL_GUARDED_BY(m_mutex);
  std::shared_ptr<Notifier> m_notifier KEL_GUARDED_BY(m_mutex);
  std::shared_ptr<SystemFeatures> m_features KEL_GUARDED_BY(m_mutex);
  VimbaLibrary::HandleTable<Session> m_sessions KEL_GUARDED_BY(m_mutex);
  std::vector<ToPlug> m_to_plug KEL_GUARDED_BY(m_mutex);
};

}  // namespace Simulator
