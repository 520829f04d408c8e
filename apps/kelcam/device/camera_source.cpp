// camera_source.cpp
// What a camera is opened from, the first time and again.
#include "device/camera_source.h"

#include <algorithm>

#include "base/utf8.h"
#include "device/camera_profile.h"
#include "device/opening_explained.h"
#include "library/vimba_session.h"

namespace Kelcam {
namespace {

// As the driver looks for it.
bool HasSerial(const VimbaSession& session, const std::string& serial) {
  const std::vector<CameraRecord> cameras = session.Cameras();
  return std::any_of(cameras.begin(), cameras.end(),
                     [&](const CameraRecord& camera) { return Wide(serial).IIncludes(Wide(camera.serial)); });
}

// A camera in another network answers, and is in no list.
bool HasAddress(const VimbaSession& session, const std::string& address) {
  return OpenedCamera(session, address, VmbAccessModeFull).Code() != VmbErrorNotFound;
}

}  // namespace

CameraSource SourceOf(const Module& module, MessageLog& log, const CameraChoice& choice) {
  return {module, log, ProfileOf(choice, module), choice.Title(), choice.LabelBeforeOpening()};
}

bool IsThere(const CameraSource& source) {
  const auto& vimba = source.module.Vimba();
  if (!vimba) return true;
  const ProfileFacts profile = FactsOf(*source.profile);
  const BMutexLock lock(source.module.Exports());
  const VimbaSession session(*vimba);
  if (profile.is_by_serial && HasSerial(session, profile.serial)) return true;
  if (!profile.is_by_serial && !profile.camera_id.empty()) {
    // For its search: a library may know no camera before it.
    std::ignore = session.Cameras();
    if (session.IdOf(profile.camera_id)) return true;
  }
  return !profile.address.empty() && HasAddress(session, profile.address);
}

}  // namespace Kelcam
