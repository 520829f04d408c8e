// trigger_setting.cpp
// What starts the images of a command.
#include "device/trigger_setting.h"

#include <tuple>

#include "base/failure.h"

namespace Kelcam {

TriggerSetting::TriggerSetting(BImagingDevice& device, TriggerChoice choice, bool by_name)
    : m_device(device), m_choice(choice) {
  // The device is so after it was opened.
  if (choice == TriggerChoice::kSoftware) return;
  BImagingDeviceTrigger* trigger = device.Trigger();
  if (!trigger) {
    if (by_name) throw Failure("this camera has no trigger");
    return;
  }
  if (choice == TriggerChoice::kLine) {
    trigger->SetExternal(true);
  } else if (!trigger->SetSource(BImagingDeviceTrigger::eFreeRun)) {
    throw Failure("the camera refused the free-running trigger");
  }
}

TriggerSetting::~TriggerSetting() {
  BImagingDeviceTrigger* trigger = m_device.Trigger();
  if (!trigger || m_choice == TriggerChoice::kSoftware) return;
  trigger->SetOff();
  std::ignore = trigger->SetSource(BImagingDeviceTrigger::eSoftware);
}

}  // namespace Kelcam
