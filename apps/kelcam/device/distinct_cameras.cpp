// distinct_cameras.cpp
// Whether the cameras that a command line asks for are several.
#include "device/distinct_cameras.h"

#include <algorithm>
#include <optional>
#include <string>
#include <tuple>

#include "base/failure.h"
#include "base/interrupt.h"
#include "base/report.h"
#include "base/utf8.h"
#include "device/camera_profile.h"
#include "device/opening_explained.h"
#include "library/vimba_session.h"

namespace Kelcam {
namespace {

using Id = std::optional<std::string>;

// In the order in which a driver tries what a profile names.
Id IdOf(const ProfileFacts& profile, const VimbaSession& session) {
  const std::vector<CameraRecord> cameras = session.Cameras();
  const auto has_serial = [&](const CameraRecord& camera) { return camera.serial == profile.serial; };
  const auto found = std::find_if(cameras.begin(), cameras.end(), has_serial);
  if (profile.is_by_serial && found != cameras.end()) return found->id;
  if (!profile.is_by_serial && !profile.camera_id.empty()) {
    if (Id id = session.IdOf(profile.camera_id)) return id;
  }
  return profile.address.empty() ? std::nullopt : session.IdOf(profile.address);
}

// None, too, for a profile that cannot be read: its opening says why.
Id IdOf(const CameraChoice& choice, const VimbaSession& session) {
  if (!choice.word.empty()) return IdOfNamed(choice.word, session);
  try {
    return IdOf(FactsOf(BCamProfile(Wide(choice.profile_file))), session);
  } catch (...) {
    return std::nullopt;
  }
}

std::vector<Id> IdsOf(const std::vector<CameraChoice>& choices, const VimbaLibrary& library) {
  try {
    const NothingToClose asking;
    const VimbaSession session(library);
    // For its search: a library may know no camera before it.
    std::ignore = session.Cameras();
    std::vector<Id> ids;
    ids.reserve(choices.size());
    for (const CameraChoice& choice : choices) ids.push_back(IdOf(choice, session));
    return ids;
  } catch (const Failure&) {
    return {};
  }
}

}  // namespace

void CheckDistinct(const std::vector<CameraChoice>& choices, const Module& module) {
  if (!module.Vimba()) return;
  const std::vector<Id> ids = IdsOf(choices, *module.Vimba());
  for (std::size_t later = 0; later < ids.size(); ++later) {
    if (!ids[later]) continue;
    const auto place = static_cast<std::size_t>(std::find(ids.begin(), ids.end(), ids[later]) - ids.begin());
    if (place == later) continue;
    throw UsageError(choices[place].Text() + " and " + choices[later].Text() + " name the same camera, " +
                     Printable(*ids[later]));
  }
}

}  // namespace Kelcam
