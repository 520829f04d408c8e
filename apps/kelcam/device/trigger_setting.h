// trigger_setting.h
// What starts the images of a command.
#pragma once

#include "bimagingdevice.h"

namespace Kelcam {

enum class TriggerChoice { kSoftware, kLine, kFree };

// Gives the device a trigger source for as long as it lives, then the software trigger again.
class TriggerSetting {
 public:
  // Throws Failure when the camera refuses. A camera without a trigger takes the software choice (it changes nothing),
  // and free running unless it was asked for by name.
  TriggerSetting(BImagingDevice& device, TriggerChoice choice, bool by_name);
  ~TriggerSetting();
  TriggerSetting(const TriggerSetting&) = delete;
  TriggerSetting& operator=(const TriggerSetting&) = delete;

 private:
  BImagingDevice& m_device;
  TriggerChoice m_choice;
};

}  // namespace Kelcam
