// kel_tools_api.h
// How the symbols of kel.tools cross the library boundary.
#pragma once

#if defined(_WIN32)
#if defined(KEL_TOOLS_BUILD)
#define KEL_TOOLS_API __declspec(dllexport)
#else
#define KEL_TOOLS_API __declspec(dllimport)
#endif
#else
#define KEL_TOOLS_API __attribute__((visibility("default")))
#endif
