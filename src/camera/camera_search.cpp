// camera_search.cpp
// One look at the attached cameras, as the search by serial number takes it.
#include "camera/camera_search.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "imagingdevice.h"
#include "wstring.h"

namespace {

// No network has more; nothing is allocated for such a claim.
constexpr VmbUint32_t kMostCameras = 4096;

}  // namespace

CameraRecords FetchCameraRecords() {
  VmbUint32_t count = 0;
  std::ignore = VmbCamerasList(nullptr, 0, &count, sizeof(VmbCameraInfo_t));
  if (count > kMostCameras) {
    ImagingDevice::ShowInfo(WString::Format(L"VmbCamerasList failed : %u cameras", count).c_str(), L"!");
    return {};
  }
  CameraRecords records(count);
  VmbUint32_t found = 0;
  if (VmbCamerasList(records.data(), count, &found, sizeof(VmbCameraInfo_t)) != VmbErrorSuccess) found = 0;
  records.resize(std::min(found, count));
  return records;
}

void LeaveUnreleased(CameraRecords records) {
  static_cast<void>(new CameraRecords(std::move(records)));  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
}
