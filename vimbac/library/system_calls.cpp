// library/system_calls.cpp
// VimbaC: version, start-up, cameras.
#include <algorithm>
#include <optional>
#include <vector>

#include "VimbaC.h"
#include "api/api_call.h"

using VimbaLibrary::ApiCall;
using VimbaLibrary::VimbaSystem;

namespace {

constexpr VmbVersionInfo_t kVersion{1, 8, 3};

}  // namespace

VmbError_t VmbVersionQuery(VmbVersionInfo_t* version, VmbUint32_t version_size_bytes) {
  return ApiCall(__func__)
      .WithoutStartup()
      .Out(version)
      .Size(version_size_bytes, sizeof *version)
      .Answer([&](VimbaSystem&) {
        *version = kVersion;
        return VmbErrorSuccess;
      });
}

VmbError_t VmbStartup() {
  // Comes first, because a configuration may have a fault for this very call.
  const VmbError_t prepared = VimbaSystem::Instance().PrepareForStartup();
  return ApiCall(__func__).WithoutStartup().Answer(
      [&](VimbaSystem& system) { return prepared ? prepared : system.Startup(); });
}

void VmbShutdown() {
  ApiCall(__func__).Run([](VimbaSystem& system) { system.Shutdown(); });
}

VmbError_t VmbCamerasList(VmbCameraInfo_t* list, VmbUint32_t list_length, VmbUint32_t* found,
                          VmbUint32_t info_size_bytes) {
  ApiCall call(__func__);
  call.Value(std::int64_t{list_length}).OutArray(list, list_length).Out(found).Size(info_size_bytes, sizeof *list);
  if (list_length != 0) call.Needs(list);
  return call.Answer([&](VimbaSystem& system) {
    const std::vector<VmbCameraInfo_t> cameras = system.CameraInfos();
    *found = static_cast<VmbUint32_t>(cameras.size());
    if (!list) return VmbErrorSuccess;
    const std::size_t filled = std::min<std::size_t>(list_length, cameras.size());
    std::copy_n(cameras.begin(), filled, list);
    return filled < cameras.size() ? VmbErrorMoreData : VmbErrorSuccess;
  });
}

VmbError_t VmbCameraInfoQuery(const char* id, VmbCameraInfo_t* info, VmbUint32_t info_size_bytes) {
  return ApiCall(__func__).Camera(id).Out(info).Size(info_size_bytes, sizeof *info).Answer([&](VimbaSystem& system) {
    const std::optional<VmbCameraInfo_t> camera = system.CameraInfo(id);
    if (!camera) return VmbErrorNotFound;
    *info = *camera;
    return VmbErrorSuccess;
  });
}

VmbError_t VmbCameraOpen(const char* id, VmbAccessMode_t access, VmbHandle_t* camera) {
  return ApiCall(__func__).Camera(id).Value(std::int64_t{access}).Out(camera).Answer([&](VimbaSystem& system) {
    if (access == VmbAccessModeConfig || access == VmbAccessModeLite) return VmbError_t{VmbErrorNotSupported};
    if (access != VmbAccessModeFull && access != VmbAccessModeRead) return VmbError_t{VmbErrorInvalidValue};
    return system.Open(id, access, *camera);
  });
}

VmbError_t VmbCameraClose(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).Answer([&](VimbaSystem& system) { return system.Close(camera); });
}
