// kel_core_api.h
// How the symbols of kel.core cross the library boundary.
#pragma once

#if defined(_WIN32)
#if defined(KEL_CORE_BUILD)
#define KEL_CORE_API __declspec(dllexport)
#else
#define KEL_CORE_API __declspec(dllimport)
#endif
#else
#define KEL_CORE_API __attribute__((visibility("default")))
#endif
