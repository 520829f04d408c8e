// bimagingdeviceswitch.cpp
// Switching off, and the homes of the type information of switch and trigger.
#include "bimagingdeviceswitch.h"

#include "bimagingdevicetrigger.h"

void BImagingDeviceSwitch::SetOff() { SetExternal(false); }

BImagingDeviceTrigger::~BImagingDeviceTrigger() = default;
