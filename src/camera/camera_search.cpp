// camera_search.cpp
// One look at the attached cameras, as the search by serial number takes it.
#include "camera/camera_search.h"

#include <algorithm>

std::unique_ptr<CameraRecords> FetchCameraRecords() {
  VmbUint32_t count = 0;
  VmbCamerasList(nullptr, 0, &count, sizeof(VmbCameraInfo_t));
  auto records = std::make_unique<CameraRecords>(count);
  VmbUint32_t found = 0;
  if (VmbCamerasList(records->data(), count, &found, sizeof(VmbCameraInfo_t)) != VmbErrorSuccess) found = 0;
  records->resize(std::min(found, count));
  return records;
}

void LeaveUnreleased(std::unique_ptr<CameraRecords> records) {
  static_cast<void>(records.release());  // NOLINT(bugprone-unused-return-value)
}
