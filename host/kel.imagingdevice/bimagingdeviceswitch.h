// bimagingdeviceswitch.h
// Something of a camera that can be switched on and off, by the host or by an outside signal.
#pragma once

#include "kel_imagingdevice_api.h"

// The operations are in the host's table order; BImagingDeviceTrigger continues them. A switch belongs to its device.
// [host thread, all operations]
class KEL_IMAGINGDEVICE_API BImagingDeviceSwitch {
 public:
  BImagingDeviceSwitch() = default;

  virtual void SetOn() = 0;
  virtual bool IsAvailable() const = 0;  // false: the other operations do nothing
  virtual bool IsExternal() const = 0;   // an outside signal switches, not the host
  virtual void SetExternal(bool external) = 0;
  virtual void SetOff();  // no longer external; the camera itself is not touched

 protected:
  // Not virtual, so that the trigger's operations follow SetOff without a gap. A switch is deleted as what it is.
  ~BImagingDeviceSwitch() = default;
  BImagingDeviceSwitch(const BImagingDeviceSwitch&) = default;
  BImagingDeviceSwitch& operator=(const BImagingDeviceSwitch&) = default;
};
