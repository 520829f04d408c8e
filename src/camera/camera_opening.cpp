// camera_opening.cpp
// Finding and opening the camera that the profile names: by serial number, by unique id or by address.
#include <algorithm>

#include "camera/camera_identifier.h"
#include "camera/camera_search.h"
#include "camera/profile_keys.h"
#include "camera/vimba_imaging_device_impl.h"
#include "diagnostics/platform.h"
#include "imagingdevice.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_features.h"

namespace {

constexpr int kAttempts = 10;
constexpr int kAddressAttempts = 2;
constexpr std::uint32_t kPauseAfterFailure = 200;  // milliseconds
// Milliseconds until a camera whose host has died may be opened by another.
constexpr std::int64_t kHeartbeatTimeout = 5000;

void Show(const WString& text) { ImagingDevice::ShowInfo(text.c_str(), nullptr); }

// Which of the ways to open a camera the profile asks for.
struct InitMethod {
  WString method;
  WString serial_number;  // not empty: search by serial number
  WString unique_id;      // not empty: open by unique id

  explicit InitMethod(const IProfile& profile) {
    profile.ReadString(ProfileKey::kInitMethod, method);
    if (method.IEquals(L"Serial")) {
      profile.ReadString(ProfileKey::kSerialNumber, serial_number);
    } else if (!method.IEquals(L"IP")) {
      profile.ReadString(ProfileKey::kCameraIdentifier, unique_id);
    }
  }
};

}  // namespace

bool BVimbaImagingDeviceImpl::OpenCamera(const WString& text) {
  Show(L"Initialize " + text);
  const InitMethod init(*Profile());
  const bool by_serial = !init.serial_number.IsEmpty();
  Show(WString::Format(L"InitMethod: %s (%s)", init.method, by_serial ? init.serial_number : init.unique_id));
  const bool open = (by_serial && OpenBySerial(init.serial_number)) ||
                    (!init.unique_id.IsEmpty() && OpenByUniqueId(init.unique_id)) || OpenByAddress();
  if (open) Vimba::SetInt(m_camera, Feature::kGevHeartbeatTimeout, kHeartbeatTimeout);
  return open;
}

bool BVimbaImagingDeviceImpl::OpenBySerial(const WString& serial_number) {
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    std::unique_ptr<CameraRecords> records = FetchCameraRecords();
    if (OpenOneOf(*records, serial_number)) return true;
    if (attempt < kAttempts) LeaveUnreleased(std::move(records));
  }
  return false;
}

bool BVimbaImagingDeviceImpl::OpenOneOf(const std::vector<VmbCameraInfo_t>& cameras, const WString& serial_number) {
  return std::any_of(cameras.begin(), cameras.end(), [&](const VmbCameraInfo_t& camera) {
    if (!serial_number.IIncludes(ToWString(camera.serialString))) return false;
    const char* narrow_id = camera.cameraIdString ? camera.cameraIdString : "";
    const WString id = ToWString(narrow_id);
    VmbHandle_t handle = nullptr;
    if (VmbCameraOpen(narrow_id, VmbAccessModeFull, &handle) == VmbErrorSuccess) {
      Adopt(handle, id, camera);
      Show(WString::Format(L"Camera (Uid: %s): InitBySerial success", id));
      return true;
    }
    Show(WString::Format(L"Camera (UniqueId - %s): - InitBySerial failed (%s)", id, serial_number));
    SleepMilliseconds(kPauseAfterFailure);
    return false;
  });
}

bool BVimbaImagingDeviceImpl::OpenByUniqueId(const WString& unique_id) {
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    VmbCameraInfo_t camera{};
    if (const VmbHandle_t handle = OpenAndQuery(unique_id, camera)) {
      Adopt(handle, unique_id, camera);
      Show(WString::Format(L"Camera (Uid: %s): InitByUid success", unique_id));
      return true;
    }
    Show(WString::Format(L"Camera (UniqueId - %s): - InitByUid failed", unique_id));
    SleepMilliseconds(kPauseAfterFailure);
  }
  return false;
}

bool BVimbaImagingDeviceImpl::OpenByAddress() {
  WString address;
  if (!Profile()->ReadString(ProfileKey::kIp, address)) return false;
  for (int attempt = 1; attempt <= kAddressAttempts; ++attempt) {
    VmbCameraInfo_t camera{};
    if (const VmbHandle_t handle = OpenAndQuery(address, camera)) {
      Adopt(handle, ToWString(camera.cameraIdString), camera);
      Show(WString::Format(L"Camera (IP: %s): InitByAddr success", address));
      return true;
    }
    Show(WString::Format(L"Camera (IP: %s): - InitByAddr failed", address));
    SleepMilliseconds(kPauseAfterFailure);
  }
  return false;
}

// A camera that can be opened but not identified is closed again: the next try opens it anew.
VmbHandle_t BVimbaImagingDeviceImpl::OpenAndQuery(const WString& id, VmbCameraInfo_t& camera) {
  const BString narrow_id = ToBString(id);
  VmbHandle_t handle = nullptr;
  if (VmbCameraOpen(narrow_id.c_str(), VmbAccessModeFull, &handle) != VmbErrorSuccess) return nullptr;
  if (VmbCameraInfoQuery(narrow_id.c_str(), &camera, sizeof camera) == VmbErrorSuccess) return handle;
  VmbCameraClose(handle);
  return nullptr;
}

void BVimbaImagingDeviceImpl::Adopt(VmbHandle_t handle, const WString& unique_id, const VmbCameraInfo_t& camera) {
  m_camera = handle;
  m_unique_id = unique_id;
  m_identifier = IdentifierOf(camera);
}
