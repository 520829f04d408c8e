// bimagingdevicecontrol.cpp
// The operations of a control that follow from the others.
#include "bimagingdevicecontrol.h"

#include <algorithm>
#include <cmath>
#include <tuple>

BImagingDeviceControl::BImagingDeviceControl(NBoard::CONTROLTYPE type) : m_type(type) {}
BImagingDeviceControl::~BImagingDeviceControl() = default;

int BImagingDeviceControl::MinValue() {
  int min = 0;
  int max = 0;
  return GetRange(min, max) ? min : 0;
}

int BImagingDeviceControl::MaxValue() {
  int min = 0;
  int max = 0;
  return GetRange(min, max) ? max : 0;
}

double BImagingDeviceControl::GetRealValue() { return ToRealValue(Value()); }

bool BImagingDeviceControl::SetRealValue(double value) {
  return std::isfinite(value) && SetValue(FromRealValue(value));
}

bool BImagingDeviceControl::GetRealRange(double& min, double& max) {
  int integer_min = 0;
  int integer_max = 0;
  if (!GetRange(integer_min, integer_max)) return false;
  const double one_end = ToRealValue(integer_min);
  const double other_end = ToRealValue(integer_max);
  std::tie(min, max) = std::minmax(one_end, other_end);
  return true;
}
