// bimagingdevicecontrol.h
// One adjustable quantity of a camera, in integers of a unit of its own or in real values.
#pragma once

#include "kel_imagingdevice_api.h"
#include "nboard.h"

// The integer unit is the driver's; ToRealValue and FromRealValue translate to what people read (milliseconds, factors,
// degrees), whose unit UnitString names. The operations are in the host's table order. A control belongs to its
// device. [host thread, all operations]
class KEL_IMAGINGDEVICE_API BImagingDeviceControl {
 public:
  explicit BImagingDeviceControl(NBoard::CONTROLTYPE type);

  virtual int Value() = 0;
  virtual bool SetValue(int value) = 0;     // brought into the range first; true when the camera holds it afterwards
  virtual void SetMinValue(int value) = 0;  // narrows the range; ignored outside of it
  virtual void SetMaxValue(int value) = 0;
  virtual void SetDefaultValue(int value) = 0;
  // The ends of GetRange; 0 when there is no range.
  virtual int MinValue();
  virtual int MaxValue();
  virtual bool GetRange(int& min, int& max) = 0;  // false when there is none
  virtual bool SetToDefault() = 0;                // as SetValue
  virtual bool IsAvailable() const = 0;           // false: the camera has no such quantity, or does not give it
  virtual WString UnitString() const = 0;         // "[ms]"; empty for a plain number
  virtual double ToRealValue(int value) const = 0;
  // Called with finite values only. What lies beyond the integers is for the driver to bring to one of their ends.
  virtual int FromRealValue(double value) const = 0;
  // Value, SetValue and GetRange in the real unit. SetRealValue refuses infinities and what is no number with false;
  // GetRealRange leaves its arguments untouched on false, and min is the smaller end even if the real unit runs
  // backwards.
  virtual double GetRealValue();
  virtual bool SetRealValue(double value);
  virtual bool GetRealRange(double& min, double& max);
  virtual ~BImagingDeviceControl();

  NBoard::CONTROLTYPE Type() const { return m_type; }

 protected:
  BImagingDeviceControl(const BImagingDeviceControl&) = default;
  BImagingDeviceControl& operator=(const BImagingDeviceControl&) = default;

 private:
  NBoard::CONTROLTYPE m_type;
};
