// camera_search.cpp
// One look at the attached cameras, as the search by serial number takes it.
#include "camera/camera_search.h"

#include <algorithm>
#include <tuple>
#include <utility>

CameraRecords FetchCameraRecords() {
  VmbUint32_t count = 0;
  std::ignore = VmbCamerasList(nullptr, 0, &count, sizeof(VmbCameraInfo_t));
  CameraRecords records(count);
  VmbUint32_t found = 0;
  if (VmbCamerasList(records.data(), count, &found, sizeof(VmbCameraInfo_t)) != VmbErrorSuccess) found = 0;
  records.resize(std::min(found, count));
  return records;
}

void LeaveUnreleased(CameraRecords records) {
  static_cast<void>(new CameraRecords(std::move(records)));  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
}
