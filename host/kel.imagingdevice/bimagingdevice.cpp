// bimagingdevice.cpp
// What a device answers unless its driver answers otherwise.
#include "bimagingdevice.h"

BImagingDevice::~BImagingDevice() = default;
double BImagingDevice::LastSnapTime() const { return m_last_snap_time_ms; }
bool BImagingDevice::AutoFocusOnce() { return false; }
