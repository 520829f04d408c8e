// system/vimba_system.h
// The Vimba system over real cameras: start-up, cameras, handles.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "bmutex.h"
#include "camera/claims.h"
#include "camera/session.h"
#include "library/handle_table.h"
#include "library/notifier.h"
#include "library/system_features.h"
#include "system/camera_directory.h"
#include "system/discovery.h"

namespace Bridge {

// [any thread] but where a function says otherwise.
//
// A thread takes this library's locks in this order and may leave some out:
//   1. m_lifecycle
//   2. the lock of the system's features, then of a search for cameras
//   3. the lock of a camera's stream
//   4. the lock of its features
//   5. m_mutex, the lock of the claims, or of a capture queue
// No lock at all is held while a callback of the caller runs.
class VimbaSystem {
 public:
  // The only one of this library.
  static VimbaSystem& Instance();

  VmbError_t PrepareForStartup() { return VmbErrorSuccess; }
  VmbError_t Startup();
  // Returns when no callback runs and no thread of this library is left. In a callback, which it could never outlast,
  // it does nothing.
  void Shutdown();
  bool Started() const { return m_startups != 0; }

  // The texts live until the system is shut down.
  std::vector<VmbCameraInfo_t> CameraInfos() const;
  std::optional<VmbCameraInfo_t> CameraInfo(const char* name) const;

  VmbError_t Open(const char* name, VmbAccessMode_t access, VmbHandle_t& handle);
  VmbError_t Close(VmbHandle_t handle);
  std::shared_ptr<Session> FindSession(VmbHandle_t handle) const;

  // The body gets the features of the system or of the opened camera.
  template <class Body>
  VmbError_t ReadFeatures(VmbHandle_t handle, Body body) const {
    if (handle == gVimbaHandle) {
      const auto running = Running();
      return running ? running->features.Read(body) : VmbErrorApiNotStarted;
    }
    const std::shared_ptr<Session> session = FindSession(handle);
    if (!session) return VmbErrorBadHandle;
    if (const VmbError_t error = session->Alive()) return error;
    return session->WithFeatures([&](const Features& features) { return body(features); });
  }
  template <class Body>
  VmbError_t WriteFeatures(VmbHandle_t handle, Body body) {
    if (handle == gVimbaHandle) return WriteSystem(body);
    const std::shared_ptr<Session> session = FindSession(handle);
    if (!session) return VmbErrorBadHandle;
    if (const VmbError_t error = session->Alive()) return error;
    if (!session->HasFullAccess()) return VmbErrorInvalidAccess;
    return session->WithFeatures(body);
  }
  VmbError_t Watch(VmbHandle_t handle, const char* feature, VmbInvalidationCallback callback, void* context);

 private:
  // What there is between the first start-up and the last shut-down.
  struct Run {
    Run();
    std::shared_ptr<VimbaLibrary::Notifier> notifier = std::make_shared<VimbaLibrary::Notifier>();
    mutable CameraDirectory cameras;
    std::shared_ptr<Claims> claims = std::make_shared<Claims>();
    VimbaLibrary::SystemFeatures features;
  };

  VimbaSystem() = default;
  std::shared_ptr<Run> Running() const;
  std::vector<std::shared_ptr<Session>> Sessions() const;
  bool OnLibraryThread() const;
  template <class Body>
  VmbError_t WriteSystem(Body body) {
    const auto running = Running();
    if (!running) return VmbErrorApiNotStarted;
    const VmbError_t error = running->features.Write(body);
    FollowDiscovery(*running);
    return error;
  }
  // Starts or ends the search that repeats, as the system's features say.
  void FollowDiscovery(Run& run);

  // Held through the whole of start-up and shut-down, so that they take turns.
  BMutex m_lifecycle;
  std::atomic<int> m_startups{0};

  mutable BMutex m_mutex;
  std::shared_ptr<Run> m_run KEL_GUARDED_BY(m_mutex);
  std::unique_ptr<Discovery> m_discovery KEL_GUARDED_BY(m_mutex);
  VimbaLibrary::HandleTable<Session> m_sessions KEL_GUARDED_BY(m_mutex);
};

}  // namespace Bridge
