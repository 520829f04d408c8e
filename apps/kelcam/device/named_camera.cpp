// named_camera.cpp
// Whether a camera is there that is named by its address or id, and whether another program has it.
#include "device/named_camera.h"

#include <optional>
#include <tuple>

#include "base/failure.h"
#include "base/interrupt.h"
#include "library/vimba_session.h"

namespace Kelcam {
namespace {

VmbError_t CodeOfOpening(const VimbaSession& session, const std::string& name) {
  return OpenedCamera(session, name, VmbAccessModeFull).Code();
}

}  // namespace

CameraAnswer AskForCamera(const std::string& name, const VimbaLibrary& library) try {
  const NothingToClose asking;
  const VimbaSession session(library);
  // For its search: a library may know no camera before it.
  std::ignore = session.Cameras();
  const VmbError_t opening = CodeOfOpening(session, name);
  if (opening == VmbErrorSuccess) return CameraAnswer::kOpenable;
  const std::optional<VmbAccessMode_t> permitted = session.PermittedAccess(name);
  if (opening == VmbErrorInvalidAccess || permitted == VmbAccessModeNone) return CameraAnswer::kInUse;
  return opening == VmbErrorNotFound && !permitted ? CameraAnswer::kNobody : CameraAnswer::kUnknown;
} catch (const Failure&) {
  return CameraAnswer::kUnknown;
}

}  // namespace Kelcam
