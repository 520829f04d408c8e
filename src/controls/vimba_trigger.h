// vimba_trigger.h
// The camera's frame-start trigger as the host sees it.
#pragma once

#include "VimbaC.h"
#include "bimagingdevicetrigger.h"

// Which source starts a frame, which edge of the input counts, and a software trigger. No lock. [host thread]
class BVimbaTrigger final : public BImagingDeviceTrigger {
 public:
  // Configures the camera and leaves it waiting for software triggers; unavailable when the camera refuses a step.
  explicit BVimbaTrigger(VmbHandle_t camera);

  void SetOn() override;
  bool IsAvailable() const override;
  bool IsExternal() const override;
  void SetExternal(bool external) override;
  bool SetActivation(int edge) override;  // an Edge; any other number is eFalling; always true
  bool SetSource(int source) override;    // a Source; any other number leaves the source as it is
  void Fire() override;                   // returns when the camera has taken the trigger, without a time limit

 private:
  bool SelectFrameStart();
  bool SetTriggerSource(const char* entry);

  VmbHandle_t m_camera;
  bool m_available = false;
  bool m_external = false;
};
