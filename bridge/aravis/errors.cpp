// aravis/errors.cpp
// What an error of Aravis is to a caller of VimbaC.
#include "aravis/errors.h"

#include <algorithm>
#include <iterator>

namespace Bridge {
namespace {

struct Row {
  int aravis;
  VmbError_t vimba;
};

constexpr Row kDeviceErrors[] = {
    {ARV_DEVICE_ERROR_WRONG_FEATURE, VmbErrorWrongType},
    {ARV_DEVICE_ERROR_FEATURE_NOT_FOUND, VmbErrorNotFound},
    {ARV_DEVICE_ERROR_NOT_FOUND, VmbErrorNotFound},
    {ARV_DEVICE_ERROR_NOT_CONNECTED, VmbErrorDeviceNotOpen},
    {ARV_DEVICE_ERROR_TIMEOUT, VmbErrorTimeout},
    {ARV_DEVICE_ERROR_INVALID_PARAMETER, VmbErrorInvalidValue},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER, VmbErrorInvalidValue},
    {ARV_DEVICE_ERROR_NOT_CONTROLLER, VmbErrorInvalidAccess},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT, VmbErrorInvalidAccess},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED, VmbErrorInvalidAccess},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY, VmbErrorInvalidAccess},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR, VmbErrorIO},
    {ARV_DEVICE_ERROR_TRANSFER_ERROR, VmbErrorIO},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT, VmbErrorIO},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS, VmbErrorIO},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED, VmbErrorNotImplemented},
};

constexpr Row kFeatureErrors[] = {
    {ARV_GC_ERROR_OUT_OF_RANGE, VmbErrorInvalidValue},
    {ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND, VmbErrorInvalidValue},
    {ARV_GC_ERROR_EMPTY_ENUMERATION, VmbErrorInvalidValue},
    // Also what reading something that can only be written reports.
    {ARV_GC_ERROR_READ_ONLY, VmbErrorInvalidAccess},
    {ARV_GC_ERROR_NODE_NOT_FOUND, VmbErrorNotFound},
};

template <std::size_t kRows>
VmbError_t Look(const Row (&rows)[kRows], int code) {
  const auto found = std::find_if(std::begin(rows), std::end(rows), [&](const Row& row) { return row.aravis == code; });
  return found == std::end(rows) ? VmbError_t{VmbErrorInternalFault} : found->vimba;
}

}  // namespace

VmbError_t ErrorOf(const GError* error) {
  if (!error) return VmbErrorSuccess;
  if (error->domain == ARV_DEVICE_ERROR) return Look(kDeviceErrors, error->code);
  if (error->domain == ARV_GC_ERROR) return Look(kFeatureErrors, error->code);
  return VmbErrorInternalFault;
}

}  // namespace Bridge
