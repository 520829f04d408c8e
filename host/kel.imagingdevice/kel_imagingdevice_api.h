// kel_imagingdevice_api.h
// How the symbols of kel.imagingdevice cross the library boundary.
#pragma once

#if defined(_WIN32)
#if defined(KEL_IMAGINGDEVICE_BUILD)
#define KEL_IMAGINGDEVICE_API __declspec(dllexport)
#else
#define KEL_IMAGINGDEVICE_API __declspec(dllimport)
#endif
#else
#define KEL_IMAGINGDEVICE_API __attribute__((visibility("default")))
#endif
