// vimba_control.h
// One adjustable camera quantity as the host sees it.
#pragma once

#include "VimbaC.h"
#include "bimagingdevicecontrol.h"

struct ControlType;

// An integer in a unit of the host's, with range and default, backed by one floating-point feature of the open camera.
// No operation reports a failed camera call beyond its result: what the camera refused leaves the stored values as they
// were. No lock; the two temperatures share a selector, so they must not be read at the same time. [host thread]
class BVimbaControl final : public BImagingDeviceControl {
 public:
  // Reads range and value from the camera; see IsAvailable.
  BVimbaControl(NBoard::CONTROLTYPE type, VmbHandle_t camera);

  // Temperatures are read live, others are the value last read from or written to the camera.
  int Value() override;
  bool SetValue(int value) override;
  void SetMinValue(int value) override;
  void SetMaxValue(int value) override;
  void SetDefaultValue(int value) override;
  bool GetRange(int& min, int& max) override;
  bool SetToDefault() override;
  bool IsAvailable() const override;
  WString UnitString() const override;
  double ToRealValue(int value) const override;
  int FromRealValue(double value) const override;

 private:
  bool IsTemperature() const;
  bool Select() const;
  bool ReadFromCamera();
  void Narrow(double& bound, int value);

  VmbHandle_t m_camera;
  const ControlType& m_type;
  bool m_available = false;
  // In feature units.
  double m_min;
  double m_max;
  double m_current;
  double m_default;
};
