// camera_at_address.cpp
// Whether a camera is at an address, and whether another program has it.
#include "camera_at_address.h"

#include <optional>
#include <tuple>

#include "failure.h"
#include "interrupt.h"
#include "vimba_session.h"

namespace Kelcam {
namespace {

VmbError_t CodeOfOpening(const VimbaSession& session, const std::string& address) {
  return OpenedCamera(session, address, VmbAccessModeFull).Code();
}

}  // namespace

AtAddress AskAddress(const std::string& address, const VimbaLibrary& library) try {
  const NothingToClose asking;
  const VimbaSession session(library);
  // For its search: a library may know no address before it.
  std::ignore = session.Cameras();
  const VmbError_t opening = CodeOfOpening(session, address);
  if (opening == VmbErrorSuccess) return AtAddress::kOpenable;
  const std::optional<VmbAccessMode_t> permitted = session.PermittedAccess(address);
  if (opening == VmbErrorInvalidAccess || permitted == VmbAccessModeNone) return AtAddress::kInUse;
  return opening == VmbErrorNotFound && !permitted ? AtAddress::kNobody : AtAddress::kUnknown;
} catch (const Failure&) {
  return AtAddress::kUnknown;
}

}  // namespace Kelcam
