// kel_camera_vimba.h
// The six functions by which a host knows the module. They are found by name in the loaded library, never linked to.
#pragma once

#include "bcamprofile.h"
#include "bimagingdevice.h"
#include "bsmartref.h"
#include "dlist.h"
#include "wstring.h"

#if defined(KEL_CAMERA_VIMBA_BUILD) && defined(_WIN32)
#define KEL_CAMERA_VIMBA_API __declspec(dllexport)
#elif defined(KEL_CAMERA_VIMBA_BUILD)
#define KEL_CAMERA_VIMBA_API __attribute__((visibility("default")))
#else
#define KEL_CAMERA_VIMBA_API
#endif

extern "C" {

// Opens the camera that the profile names. The reference to the profile is consumed. Null when there is no profile or
// the camera cannot be opened and configured; the reasons are in the host's output. Throws BError 8420 for a rotation
// that the driver does not have; nothing stays open then. [host thread, one at a time with the release]
KEL_CAMERA_VIMBA_API BImagingDevice* CreateImagingDevice(BSmartRef<BCamProfile> profile);
KEL_CAMERA_VIMBA_API BImagingDevice* Vimba_CreateImagingDevice(BSmartRef<BCamProfile> profile);

// Closes the camera, deletes the device and clears the caller's pointer. False when there is no device to release.
// [host thread, one at a time with the creation]
KEL_CAMERA_VIMBA_API bool ReleaseImagingDevice(BImagingDevice** device);
KEL_CAMERA_VIMBA_API bool Vimba_ReleaseImagingDevice(BImagingDevice** device);

// Replaces the list's content by the identifiers of the attached cameras, in the library's order. The list stays as it
// is when the Vimba system cannot be started. [host thread]
KEL_CAMERA_VIMBA_API void ObjectIdentifierList(DList<WString>& list);
KEL_CAMERA_VIMBA_API void Vimba_ObjectIdentifierList(DList<WString>& list);

// The functions' types, for a host that resolves them by name.
using CreateImagingDeviceFunction = BImagingDevice*(BSmartRef<BCamProfile>);
using ReleaseImagingDeviceFunction = bool(BImagingDevice**);
using ObjectIdentifierListFunction = void(DList<WString>&);
}
