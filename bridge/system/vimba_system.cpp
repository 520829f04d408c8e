// system/vimba_system.cpp
// The Vimba system over real cameras: start-up, cameras, handles.
#include "system/vimba_system.h"

#include <arv.h>

#include <algorithm>
#include <utility>

namespace Bridge {
namespace {

constexpr VmbAccessMode_t kOpenable = VmbAccessModeFull | VmbAccessModeRead;

VmbCameraInfo_t InfoOf(const CameraRecord& camera, const Claims& claims) {
  // Whether another program has the camera is known when it is opened, not before.
  const VmbAccessMode_t access = claims.Has(camera.id) ? VmbAccessMode_t{VmbAccessModeNone} : kOpenable;
  return {camera.id.c_str(),          camera.name.c_str(), camera.model.c_str(), camera.serial.c_str(), access,
          camera.interface_id.c_str()};
}

}  // namespace

VimbaSystem& VimbaSystem::Instance() {
  // Never destroyed: in a process that ends with the API started, threads still use it.
  static VimbaSystem* only = new VimbaSystem;
  return *only;
}

VimbaSystem::Run::Run()
    : features({true, VimbaLibrary::DiscoveryStatus::kOff, [this] { cameras.Search(); }}, notifier) {}

VmbError_t VimbaSystem::Startup() {
  const BMutexLock lifecycle(m_lifecycle);
  if (m_startups != 0) {
    ++m_startups;
    return VmbErrorSuccess;
  }
  // GigE Vision alone.
  arv_disable_interface("USB3Vision");
  arv_disable_interface("Fake");
  auto run = std::make_shared<Run>();
  const BMutexLock lock(m_mutex);
  m_run = std::move(run);
  ++m_startups;
  return VmbErrorSuccess;
}

void VimbaSystem::Shutdown() {
  if (OnLibraryThread()) return;
  const BMutexLock lifecycle(m_lifecycle);
  if (m_startups == 0 || --m_startups != 0) return;
  std::vector<std::shared_ptr<Session>> sessions;
  std::shared_ptr<Run> run;
  std::unique_ptr<Discovery> discovery;
  {
    const BMutexLock lock(m_mutex);
    sessions = m_sessions.All();
    m_sessions.Clear();
    run.swap(m_run);
    discovery.swap(m_discovery);
  }
  discovery.reset();
  for (std::shared_ptr<Session>& session : sessions) {
    session->Close();
    session.reset();
  }
  run->notifier->Stop();
  arv_shutdown();
}

std::shared_ptr<VimbaSystem::Run> VimbaSystem::Running() const {
  const BMutexLock lock(m_mutex);
  return m_run;
}

std::vector<std::shared_ptr<Session>> VimbaSystem::Sessions() const {
  const BMutexLock lock(m_mutex);
  return m_sessions.All();
}

bool VimbaSystem::OnLibraryThread() const {
  const auto run = Running();
  if (run && run->notifier->OnThread()) return true;
  const auto sessions = Sessions();
  return std::any_of(sessions.begin(), sessions.end(), [](const auto& session) { return session->OnThread(); });
}

std::vector<VmbCameraInfo_t> VimbaSystem::CameraInfos() const {
  std::vector<VmbCameraInfo_t> infos;
  const auto run = Running();
  if (!run) return infos;
  for (const auto& camera : run->cameras.All()) infos.push_back(InfoOf(*camera, *run->claims));
  return infos;
}

std::optional<VmbCameraInfo_t> VimbaSystem::CameraInfo(const char* name) const {
  const auto run = Running();
  const auto camera = run ? run->cameras.Find(name) : nullptr;
  return camera ? std::optional(InfoOf(*camera, *run->claims)) : std::nullopt;
}

VmbError_t VimbaSystem::Open(const char* name, VmbAccessMode_t access, VmbHandle_t& handle) {
  const auto run = Running();
  if (!run) return VmbErrorApiNotStarted;
  const auto camera = run->cameras.Find(name);
  if (!camera) return VmbErrorNotFound;
  std::unique_ptr<Claims::Claim> claim;
  if (access == VmbAccessModeFull) {
    claim = run->claims->Take(camera->id);
    if (!claim) return VmbErrorInvalidAccess;
  } else if (run->claims->Has(camera->id)) {
    return VmbErrorInvalidAccess;
  }
  VmbHandle_t fresh = nullptr;
  {
    const BMutexLock lock(m_mutex);
    fresh = m_sessions.NextHandle();
  }
  VmbError_t error = VmbErrorSuccess;
  const std::shared_ptr<Session> session = Session::Open(fresh, *camera, std::move(claim), error);
  if (error) return error;
  const BMutexLock lock(m_mutex);
  // Shut down meanwhile: the session is closed at the end of this function.
  if (m_run != run) return VmbErrorApiNotStarted;
  m_sessions.Add(fresh, session);
  handle = fresh;
  return VmbErrorSuccess;
}

VmbError_t VimbaSystem::Close(VmbHandle_t handle) {
  // Closing would wait for the callback that called it.
  if (FindSession(handle) && OnLibraryThread()) return VmbErrorInvalidCall;
  std::shared_ptr<Session> session;
  {
    const BMutexLock lock(m_mutex);
    session = m_sessions.Remove(handle);
  }
  if (!session) return VmbErrorBadHandle;
  session->Close();
  // Gives the camera up, unless another thread's call on it has not returned yet.
  session.reset();
  if (const auto run = Running()) run->notifier->Drop(handle);
  return VmbErrorSuccess;
}

std::shared_ptr<Session> VimbaSystem::FindSession(VmbHandle_t handle) const {
  const BMutexLock lock(m_mutex);
  return m_sessions.Find(handle);
}

VmbError_t VimbaSystem::Watch(VmbHandle_t handle, const char* feature, VmbInvalidationCallback callback,
                              void* context) {
  const auto run = Running();
  if (!run) return VmbErrorApiNotStarted;
  if (handle == gVimbaHandle) return run->features.Watch(feature, callback, context);
  const std::shared_ptr<Session> session = FindSession(handle);
  if (!session) return VmbErrorBadHandle;
  if (const VmbError_t error = session->Alive()) return error;
  // What a camera changes by itself nobody would notice here.
  return session->WithFeatures(
      [&](const Features& features) { return features.Has(feature) ? VmbErrorNotSupported : VmbErrorNotFound; });
}

void VimbaSystem::FollowDiscovery(Run& run) {
  std::unique_ptr<Discovery> ended;
  const bool wanted = run.features.DiscoversByItself();
  const BMutexLock lock(m_mutex);
  if (m_run.get() != &run || wanted == (m_discovery != nullptr)) return;
  if (!wanted) {
    // Its end waits for a search, so it comes after the lock.
    ended = std::move(m_discovery);
    return;
  }
  m_discovery = std::make_unique<Discovery>([&run] {
    const CameraDirectory::Changes changes = run.cameras.Search();
    for (const auto& camera : changes.gone) run.features.Announce(camera->id, VimbaLibrary::CameraEvent::kMissing);
    for (const auto& camera : changes.found) run.features.Announce(camera->id, VimbaLibrary::CameraEvent::kDetected);
  });
}

}  // namespace Bridge
