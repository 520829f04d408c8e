// system/vimba_system.cpp
// The simulated Vimba system: cameras on their links, start-up, handles.
#include "system/vimba_system.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace Simulator {
namespace {

// Made when the library is loaded: a module that is linked to the library may still use it while it is unloaded.
struct Holder {
  VimbaSystem* system = nullptr;
  // In a process that ends with the API started, threads still use the system.
  ~Holder() {
    if (system && !system->Started()) delete system;
  }
};

VmbCameraInfo_t InfoOf(const Camera& camera) {
  constexpr VmbAccessMode_t kOpenable = VmbAccessModeFull | VmbAccessModeRead;
  const CameraConfiguration& configuration = camera.Configuration();
  return {configuration.id.c_str(),
          configuration.name.c_str(),
          configuration.model.c_str(),
          configuration.serial.c_str(),
          camera.Claimed() ? static_cast<VmbAccessMode_t>(VmbAccessModeNone) : kOpenable,
          configuration.interface_id.c_str()};
}

}  // namespace

struct VimbaSystem::Access {
  static VimbaSystem* Make() { return new VimbaSystem; }
};

VimbaSystem& VimbaSystem::Instance() {
  static Holder holder{Access::Make()};
  return *holder.system;
}

namespace {
// Has the function above run when the library is loaded.
[[maybe_unused]] const VimbaSystem& made_at_load = VimbaSystem::Instance();
}  // namespace

World::World(const Configuration& configuration, const Camera::Surroundings& surroundings)
    : system(configuration.system) {
  for (const LinkSettings& link : configuration.links) links.emplace_back(link);
  for (std::size_t i = 0; i < configuration.cameras.size(); ++i) {
    const CameraConfiguration& camera = configuration.cameras[i];
    try {
      cameras.push_back(std::make_shared<Camera>(camera, links.at(camera.link), surroundings));
    } catch (const std::invalid_argument& error) {
      throw std::invalid_argument("cameras[" + std::to_string(i) + "]." + error.what());
    }
  }
}

void VimbaSystem::SetWorld(const Configuration& configuration) {
  const Camera::Surroundings surroundings{
      [this](const Camera& camera) { return m_faults.ForExposure(camera.Configuration().id); },
      [this](const Camera& camera, bool plugged) { PresenceChanged(camera, plugged); },
      [this](const Camera& camera, const Replug& replug) { PlugLater(camera, replug); }};
  auto world = NamingFile(configuration.file, [&] { return std::make_shared<World>(configuration, surroundings); });
  m_faults.Clear();
  m_faults.Add(configuration.faults);
  if (!configuration.records_calls) m_record.SetRecording(false);
  const BMutexLock lock(m_mutex);
  m_world = std::move(world);
  m_to_plug.clear();
}

void VimbaSystem::Configure(const Configuration& configuration) {
  const BMutexLock lifecycle(m_lifecycle);
  if (Started()) throw std::logic_error("the API is started; cameras can be configured after VmbShutdown only");
  SetWorld(configuration);
  m_record.Clear();
}

bool VimbaSystem::HasWorld() const {
  const BMutexLock lock(m_mutex);
  return m_world != nullptr;
}

void VimbaSystem::Prepare() {
  if (HasWorld()) return;
  const BMutexLock lifecycle(m_lifecycle);
  if (!HasWorld()) SetWorld(EnvironmentConfiguration());
}

VmbError_t VimbaSystem::PrepareForStartup() {
  try {
    Prepare();
    return VmbErrorSuccess;
  } catch (const std::exception& error) {
    if (!m_reported.exchange(true)) std::fprintf(stderr, "VimbaC simulator: %s\n", error.what());
    return VmbErrorOther;
  }
}

VmbError_t VimbaSystem::Startup() {
  const BMutexLock lifecycle(m_lifecycle);
  if (m_startups != 0) {
    ++m_startups;
    return VmbErrorSuccess;
  }
  const BMutexLock lock(m_mutex);
  m_notifier = std::make_shared<Notifier>();
  m_features = std::make_shared<SystemFeatures>(m_world->system, m_notifier);
  ++m_startups;
  return VmbErrorSuccess;
}

void VimbaSystem::Shutdown() {
  if (OnLibraryThread()) return;
  const BMutexLock lifecycle(m_lifecycle);
  if (m_startups == 0 || --m_startups != 0) return;
  std::vector<std::shared_ptr<Session>> sessions;
  std::shared_ptr<Notifier> notifier;
  std::shared_ptr<SystemFeatures> features;
  {
    const BMutexLock lock(m_mutex);
    sessions = m_sessions.All();
    m_sessions.Clear();
    notifier.swap(m_notifier);
    features.swap(m_features);
  }
  for (const auto& session : sessions) {
    m_record.ForgetHandle(session->Handle());
    session->Close();
  }
  notifier->Stop();
}

bool VimbaSystem::OnLibraryThread() const {
  const std::shared_ptr<Notifier> notifier = CurrentNotifier();
  if (notifier && notifier->OnThread()) return true;
  const auto sessions = Sessions();
  return std::any_of(sessions.begin(), sessions.end(), [](const auto& session) { return session->OnThread(); });
}

std::shared_ptr<SystemFeatures> VimbaSystem::Features() const {
  const BMutexLock lock(m_mutex);
  return m_features;
}

std::shared_ptr<Notifier> VimbaSystem::CurrentNotifier() const {
  const BMutexLock lock(m_mutex);
  return m_notifier;
}

std::vector<std::shared_ptr<Session>> VimbaSystem::Sessions() const {
  const BMutexLock lock(m_mutex);
  return m_sessions.All();
}

std::vector<std::shared_ptr<Camera>> VimbaSystem::AllCameras() const {
  const BMutexLock lock(m_mutex);
  return m_world ? m_world->cameras : std::vector<std::shared_ptr<Camera>>{};
}

std::vector<VmbCameraInfo_t> VimbaSystem::CameraInfos() {
  PlugWhatIsDue();
  std::vector<VmbCameraInfo_t> infos;
  for (const auto& camera : AllCameras()) {
    if (camera->Plugged()) infos.push_back(InfoOf(*camera));
  }
  return infos;
}

std::optional<VmbCameraInfo_t> VimbaSystem::CameraInfo(const char* name) {
  PlugWhatIsDue();
  const std::shared_ptr<Camera> camera = FindCamera(name);
  if (!camera || !camera->Plugged()) return std::nullopt;
  return InfoOf(*camera);
}

std::shared_ptr<Camera> VimbaSystem::FindCamera(std::string_view name) const {
  const auto cameras = AllCameras();
  std::shared_ptr<Camera> absent;
  for (const std::shared_ptr<Camera>& camera : cameras) {
    if (!camera->IsCalled(name)) continue;
    if (camera->Plugged()) return camera;
    if (!absent) absent = camera;
  }
  return absent;
}

VmbError_t VimbaSystem::Open(const char* name, VmbAccessMode_t access, VmbHandle_t& handle) {
  PlugWhatIsDue();
  const std::shared_ptr<Camera> camera = FindCamera(name);
  if (!camera || !camera->Plugged()) return VmbErrorNotFound;
  VmbHandle_t fresh = nullptr;
  {
    const BMutexLock lock(m_mutex);
    fresh = m_sessions.NextHandle();
  }
  const bool full = access == VmbAccessModeFull;
  if (full ? !camera->Claim(fresh) : camera->Claimed()) return VmbErrorInvalidAccess;
  const auto session = std::make_shared<Session>(fresh, camera, access);
  const BMutexLock lock(m_mutex);
  // Shut down meanwhile: the session is closed at the end of this function.
  if (!m_features) return VmbErrorApiNotStarted;
  m_sessions.Add(fresh, session);
  m_record.NameHandle(fresh, camera->Configuration().id);
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
  m_record.ForgetHandle(handle);
  session->Close();
  if (const auto notifier = CurrentNotifier()) notifier->Drop(handle);
  return VmbErrorSuccess;
}

std::shared_ptr<Session> VimbaSystem::FindSession(VmbHandle_t handle) const {
  const BMutexLock lock(m_mutex);
  return m_sessions.Find(handle);
}

std::shared_ptr<Session> VimbaSystem::FullSessionOf(const Camera& camera) const {
  for (const auto& session : Sessions()) {
    if (&session->Device() == &camera && session->HasFullAccess() && !session->Alive()) return session;
  }
  return nullptr;
}

std::size_t VimbaSystem::OpenHandles(const Camera& camera) const {
  const auto sessions = Sessions();
  return static_cast<std::size_t>(std::count_if(sessions.begin(), sessions.end(),
                                                [&](const auto& session) { return &session->Device() == &camera; }));
}

VmbError_t VimbaSystem::Watch(VmbHandle_t handle, const char* feature, VmbInvalidationCallback callback,
                              void* context) {
  const std::shared_ptr<Notifier> notifier = CurrentNotifier();
  const std::shared_ptr<SystemFeatures> features = Features();
  if (!notifier || !features) return VmbErrorApiNotStarted;
  if (handle == gVimbaHandle) return features->Watch(feature, callback, context);
  const std::shared_ptr<Session> session = FindSession(handle);
  if (!session) return VmbErrorBadHandle;
  if (const VmbError_t error = session->Alive()) return error;
  return session->Device().Watch(handle, feature, callback, context, notifier);
}

void VimbaSystem::PlugLater(const Camera& camera, const Replug& replug) {
  const std::string& returns = replug.camera.empty() ? camera.Configuration().id : replug.camera;
  const BMutexLock lock(m_mutex);
  m_to_plug.push_back({Clock::now() + replug.after, returns});
}

void VimbaSystem::PlugWhatIsDue() {
  std::vector<ToPlug> due;
  {
    const BMutexLock lock(m_mutex);
    const auto is_later = [now = Clock::now()](const ToPlug& one) { return one.due > now; };
    const auto first_due = std::partition(m_to_plug.begin(), m_to_plug.end(), is_later);
    due.assign(first_due, m_to_plug.end());
    m_to_plug.erase(first_due, m_to_plug.end());
  }
  for (const ToPlug& one : due) {
    if (const std::shared_ptr<Camera> camera = FindCamera(one.camera)) camera->Plug();
  }
}

void VimbaSystem::PresenceChanged(const Camera& camera, bool plugged) {
  const auto features = Features();
  if (!features) return;
  features->Announce(camera.Configuration().id,
                     plugged ? VimbaLibrary::CameraEvent::kDetected : VimbaLibrary::CameraEvent::kMissing);
}

// A part may set another one going that was already found idle. So nothing is idle unless there was no activity while
// all parts were asked.
bool VimbaSystem::Idle() const {
  const auto notifier = CurrentNotifier();
  const auto sessions = Sessions();
  const auto activity = [&] {
    return std::accumulate(sessions.begin(), sessions.end(), notifier ? notifier->Activity() : 0,
                           [](std::uint64_t sum, const auto& session) { return sum + session->Activity(); });
  };
  const std::uint64_t before = activity();
  return (!notifier || notifier->Idle()) &&
         std::all_of(sessions.begin(), sessions.end(), [](const auto& session) { return session->Idle(); }) &&
         activity() == before;
}

}  // namespace Simulator
