// kel_portable_core_api.h
// How the symbols of kel.portable.core cross the library boundary.
#pragma once

#if defined(_WIN32)
#if defined(KEL_PORTABLE_CORE_BUILD)
#define KEL_PORTABLE_CORE_API __declspec(dllexport)
#else
#define KEL_PORTABLE_CORE_API __declspec(dllimport)
#endif
// A class template's inline members belong to whoever uses them, so only its other members are exported, one by one.
#define KEL_PORTABLE_CORE_TEMPLATE
#else
#define KEL_PORTABLE_CORE_API __attribute__((visibility("default")))
#define KEL_PORTABLE_CORE_TEMPLATE __attribute__((visibility("default")))
#endif
