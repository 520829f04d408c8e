// foreign_driver.cpp
// Another driver with the same plain names, as a process may have loaded before.
#define KEL_FOREIGN_EXPORT extern "C" __attribute__((visibility("default")))

class BImagingDevice;

KEL_FOREIGN_EXPORT bool ReleaseImagingDevice(BImagingDevice** /*device*/);
KEL_FOREIGN_EXPORT bool ReleaseImagingDevice(BImagingDevice** /*device*/) { return true; }
