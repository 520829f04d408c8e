// bimagingdevicetrigger.h
// What starts a frame.
#pragma once

#include "bimagingdeviceswitch.h"

// The operations continue those of the switch, in the host's table order. [host thread, all operations]
class KEL_IMAGINGDEVICE_API BImagingDeviceTrigger : public BImagingDeviceSwitch {
 public:
  // The host's command, the camera's input line, or the camera itself, frame after frame.
  enum Source : int { eSoftware = 0, eLine = 1, eFreeRun = 2 };
  enum Edge : int { eRising = 0, eFalling = 1 };

  virtual bool SetActivation(int edge) = 0;  // which edge of the line counts
  virtual bool SetSource(int source) = 0;    // false when the camera refuses; numbers beyond the three change nothing
  virtual void Fire() = 0;                   // starts one frame when the source is eSoftware
  virtual ~BImagingDeviceTrigger();
};
