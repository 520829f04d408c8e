// empty.cpp
// A library with one function and nothing else: what loading costs at the least.
#if defined(_WIN32)
#define KEL_EMPTY_API __declspec(dllexport)
#else
#define KEL_EMPTY_API __attribute__((visibility("default")))
#endif

extern "C" KEL_EMPTY_API bool ReleaseImagingDevice(void** device);

extern "C" bool ReleaseImagingDevice(void** device) { return device && *device; }
