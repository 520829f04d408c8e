// camera_opening.cpp
// Finding and opening the camera that a profile names: by serial number, by unique id or by address.
#include "camera/camera_opening.h"

#include <algorithm>
#include <chrono>
#include <tuple>
#include <utility>

#include "bcamprofilekeys.h"
#include "camera/camera_identifier.h"
#include "camera/camera_search.h"
#include "diagnostics/platform.h"
#include "imagingdevice.h"
#include "iprofile.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_camera.h"
#include "vimba/vimba_features.h"

namespace {

constexpr int kAttempts = 10;
constexpr int kAddressAttempts = 2;
constexpr std::chrono::milliseconds kPauseAfterFailure{200};
// Until a camera whose host has died may be opened by another.
constexpr std::chrono::milliseconds kHeartbeatTimeout{5000};

void Show(const WString& text) { ImagingDevice::ShowInfo(text.c_str(), nullptr); }

// Which of the ways to open a camera the profile asks for.
struct InitMethod {
  WString method;
  // Not empty: search by serial number.
  WString serial_number;
  // Not empty: open by unique id.
  WString unique_id;

  explicit InitMethod(const IProfile& profile) {
    profile.ReadString(CamProfileKey::kInitMethod, method);
    if (method.IEquals(L"Serial")) {
      profile.ReadString(CamProfileKey::kSerialNumber, serial_number);
    } else if (!method.IEquals(L"IP")) {
      profile.ReadString(CamProfileKey::kCameraIdentifier, unique_id);
    }
  }
};

// Tries the cameras whose serial number occurs in the wanted one, in their order, until one opens.
bool OpenOneOf(const CameraRecords& records, const WString& serial_number, VimbaCamera& camera) {
  return std::any_of(records.begin(), records.end(), [&](const VmbCameraInfo_t& record) {
    if (!serial_number.IIncludes(ToWString(record.serialString))) return false;
    const char* narrow_id = record.cameraIdString ? record.cameraIdString : "";
    const WString id = ToWString(narrow_id);
    VmbHandle_t handle = nullptr;
    if (VmbCameraOpen(narrow_id, VmbAccessModeFull, &handle) == VmbErrorSuccess) {
      camera.Adopt(handle);
      camera.SetNames(id, IdentifierOf(record));
      Show(WString::Format(L"Camera (Uid: %s): InitBySerial success", id));
      return true;
    }
    Show(WString::Format(L"Camera (UniqueId - %s): - InitBySerial failed (%s)", id, serial_number));
    SleepFor(kPauseAfterFailure);
    return false;
  });
}

bool OpenBySerial(const WString& serial_number, VimbaCamera& camera) {
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    CameraRecords records = FetchCameraRecords();
    if (OpenOneOf(records, serial_number, camera)) return true;
    if (attempt < kAttempts) LeaveUnreleased(std::move(records));
  }
  return false;
}

// A camera that can be opened but not identified is closed again: the next try opens it anew.
VmbHandle_t OpenAndQuery(const WString& id, VmbCameraInfo_t& record) {
  const BString narrow_id = ToBString(id);
  VmbHandle_t handle = nullptr;
  if (VmbCameraOpen(narrow_id.c_str(), VmbAccessModeFull, &handle) != VmbErrorSuccess) return nullptr;
  if (VmbCameraInfoQuery(narrow_id.c_str(), &record, sizeof record) == VmbErrorSuccess) return handle;
  std::ignore = VmbCameraClose(handle);
  return nullptr;
}

bool OpenByUniqueId(const WString& unique_id, VimbaCamera& camera) {
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    VmbCameraInfo_t record{};
    if (const VmbHandle_t handle = OpenAndQuery(unique_id, record)) {
      camera.Adopt(handle);
      camera.SetNames(unique_id, IdentifierOf(record));
      Show(WString::Format(L"Camera (Uid: %s): InitByUid success", unique_id));
      return true;
    }
    Show(WString::Format(L"Camera (UniqueId - %s): - InitByUid failed", unique_id));
    SleepFor(kPauseAfterFailure);
  }
  return false;
}

bool OpenByAddress(const IProfile& profile, VimbaCamera& camera) {
  WString address;
  if (!profile.ReadString(CamProfileKey::kIp, address)) return false;
  for (int attempt = 1; attempt <= kAddressAttempts; ++attempt) {
    VmbCameraInfo_t record{};
    if (const VmbHandle_t handle = OpenAndQuery(address, record)) {
      camera.Adopt(handle);
      camera.SetNames(ToWString(record.cameraIdString), IdentifierOf(record));
      Show(WString::Format(L"Camera (IP: %s): InitByAddr success", address));
      return true;
    }
    Show(WString::Format(L"Camera (IP: %s): - InitByAddr failed", address));
    SleepFor(kPauseAfterFailure);
  }
  return false;
}

}  // namespace

bool OpenCamera(const IProfile& profile, const WString& text, VimbaCamera& camera) {
  Show(L"Initialize " + text);
  const InitMethod init(profile);
  const bool by_serial = !init.serial_number.IsEmpty();
  Show(WString::Format(L"InitMethod: %s (%s)", init.method, by_serial ? init.serial_number : init.unique_id));
  const bool open = (by_serial && OpenBySerial(init.serial_number, camera)) ||
                    (!init.unique_id.IsEmpty() && OpenByUniqueId(init.unique_id, camera)) ||
                    OpenByAddress(profile, camera);
  if (open) {
    std::ignore = Vimba::SetInt(camera.Handle(), Feature::kGevHeartbeatTimeout, kHeartbeatTimeout.count());
  }
  return open;
}
