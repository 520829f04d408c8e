// vimba_initialization.cpp
// The started Vimba system, as an object: as long as it lives, the system is up.
#include "vimba/vimba_initialization.h"

#include <new>
#include <tuple>

#include "diagnostics/log_collector.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_features.h"

namespace {

// The value of the discovery status at which cameras are searched for all the time without being asked to.
constexpr std::int64_t kDiscoveryRunsByItself = 1;

bool TransportLayerIsPresent(BLogCollector& log) {
  bool present = false;
  const VmbError_t code = Vimba::GetBool(gVimbaHandle, Feature::kGeVTLIsPresent, present);
  if (code != VmbErrorSuccess) {
    log << L"VmbFeatureBoolGet( GeVTLIsPresent ) returns error : " << code << L'\n';
    return false;
  }
  log << L"GeVTLIsPresent = " << std::boolalpha << present << L'\n';
  return present;
}

bool DiscoverCameras(BLogCollector& log) {
  const VmbError_t code = Vimba::RunCommand(gVimbaHandle, Feature::kGeVDiscoveryAllOnce);
  if (code == VmbErrorSuccess) return true;
  log << L"VmbFeatureCommandRun( GeVDiscoveryAllOnce ) returns error : " << code << L'\n';
  return false;
}

void StartAutomaticDiscovery() {
  BString status;
  VmbInt64_t value = 0;
  if (Vimba::GetEnum(gVimbaHandle, Feature::kGeVDiscoveryStatus, status) == VmbErrorSuccess &&
      VmbFeatureEnumAsInt(gVimbaHandle, Feature::kGeVDiscoveryStatus, status.c_str(), &value) == VmbErrorSuccess &&
      value != kDiscoveryRunsByItself) {
    std::ignore = Vimba::RunCommand(gVimbaHandle, Feature::kGeVDiscoveryAllAuto);
  }
}

// The callback is never taken back: it ends with the system. Without it the system serves all the same.
void SetUpDiscovery(BLogCollector& log) {
  StartAutomaticDiscovery();
  BString status("Unknwon");
  std::ignore = Vimba::GetEnum(gVimbaHandle, Feature::kGeVDiscoveryStatus, status);
  log << L"Vimba GigE discovery status = " << ToWString(status).Str() << L'\n';
  const VmbError_t code =
      VmbFeatureInvalidationRegister(gVimbaHandle, Feature::kDiscoveryCameraEvent, CameraDiscoveryCallback, nullptr);
  if (code != VmbErrorSuccess) {
    log << L"Failure while registering a callback for feature invalidation signaling. Return value = " << code << L'\n';
  } else {
    log << L"Succesfully registering a callback for feature invalidation signaling" << L'\n';
  }
}

void ReportCamera(VmbHandle_t handle) {
  BLogCollector log(L"CameraDiscoveryCallback");
  BString camera("failure");
  std::ignore = Vimba::GetString(handle, Feature::kDiscoveryCameraIdent, camera);
  log << L"Camera ident (DiscoveryCameraIdent): " << ToWString(camera).Str() << L'\n';
  BString reason;
  if (Vimba::GetEnum(handle, Feature::kDiscoveryCameraEvent, reason) == VmbErrorSuccess) {
    log << L"Reason (DiscoveryCameraEvent): " << ToWString(reason).Str() << L'\n';
  }
}

}  // namespace

BSmartRef<VimbaInitialization> VimbaInitialization::Open(VimbaInitialization* open_system) {
  BLogCollector log(L"Vimba Initialization");
  if (open_system) return open_system;
  // Made first: without memory for it nothing has been started.
  BSmartRef<VimbaInitialization> system(new VimbaInitialization);
  const VmbError_t code = VmbStartup();
  if (code != VmbErrorSuccess) {
    log << L"Vimba Startup fails : " << code << L'\n';
    return nullptr;
  }
  system->m_started = true;
  log << L"Vimba Startup ok" << L'\n';
  if (!TransportLayerIsPresent(log) || !DiscoverCameras(log)) return nullptr;
  SetUpDiscovery(log);
  return system;
}

VimbaInitialization::~VimbaInitialization() {
  if (m_started) VmbShutdown();
}

// Without memory the report stays short. Nothing may leave a callback: the library could not catch it.
void CameraDiscoveryCallback(VmbHandle_t handle, const char* /*name*/, void* /*user_context*/) noexcept {
  try {
    ReportCamera(handle);
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
  }
}
