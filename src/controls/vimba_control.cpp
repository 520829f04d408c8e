// vimba_control.cpp
// One adjustable camera quantity as the host sees it.
#include "controls/vimba_control.h"

#include <algorithm>

#include "diagnostics/platform.h"
#include "vimba/vimba_features.h"

namespace {

// Milliseconds. Spaces out consecutive changes for the camera.
constexpr std::uint32_t kPauseAfterWrite = 20;

}  // namespace

BVimbaControl::BVimbaControl(NBoard::CONTROLTYPE type, VmbHandle_t camera)
    : BImagingDeviceControl(type), m_camera(camera), m_control_type(type) {
  const ControlType* row = FindControlType(type);
  if (!row) return;
  m_min = row->fallback_min;
  m_max = row->fallback_max;
  m_default = row->default_value;
  m_current = m_default;
  if (row->automatic) Vimba::SetEnum(m_camera, row->automatic, row->automatic_entry);
  // A camera that does not tell its gain or exposure can still be set; without a selector there is nothing to rely on.
  const bool read = ReadFromCamera();
  m_available = read || !row->selector;
}

// Range, then value; with a selector the first failure ends the sequence.
bool BVimbaControl::ReadFromCamera() {
  const ControlType& row = *FindControlType(m_control_type);
  if (!Select()) return false;
  bool complete = true;
  if (!IsTemperature()) {
    complete = Vimba::GetFloatRange(m_camera, row.feature, m_min, m_max) == VmbErrorSuccess;
    m_max = std::min(m_max, row.max_cap);
  }
  if (!complete && row.selector) return false;
  return Vimba::GetFloat(m_camera, row.feature, m_current) == VmbErrorSuccess && complete;
}

bool BVimbaControl::Select() const {
  const ControlType* row = FindControlType(m_control_type);
  return !row->selector || Vimba::SetEnum(m_camera, row->selector, row->selector_entry) == VmbErrorSuccess;
}

bool BVimbaControl::IsTemperature() const {
  return m_control_type == NBoard::eTemperatureSensor || m_control_type == NBoard::eTemperatureMain;
}

int BVimbaControl::Value() {
  if (!IsTemperature()) return FeatureToInteger(m_control_type, m_current);
  if (!m_available || !Select()) return 0;
  double temperature = 0.0;
  Vimba::GetFloat(m_camera, FindControlType(m_control_type)->feature, temperature);
  return FeatureToInteger(m_control_type, temperature);
}

bool BVimbaControl::SetValue(int value) {
  if (!m_available) return false;
  double wanted = IntegerToFeature(m_control_type, value);
  if (!(wanted > m_min)) wanted = m_min;
  if (!(m_max > wanted)) wanted = m_max;
  if (wanted == m_current) return true;
  const bool written = !IsTemperature() && Select() &&
                       Vimba::SetFloat(m_camera, FindControlType(m_control_type)->feature, wanted) == VmbErrorSuccess;
  if (written) m_current = wanted;
  SleepMilliseconds(kPauseAfterWrite);
  return written;
}

// A bound may only be moved inside the present range.
void BVimbaControl::Narrow(double& bound, int value) {
  const double wanted = IntegerToFeature(m_control_type, value);
  if (m_min <= wanted && wanted <= m_max) bound = wanted;
}

void BVimbaControl::SetMinValue(int value) { Narrow(m_min, value); }

void BVimbaControl::SetMaxValue(int value) { Narrow(m_max, value); }

void BVimbaControl::SetDefaultValue(int value) { Narrow(m_default, value); }

bool BVimbaControl::GetRange(int& min, int& max) {
  min = FeatureToInteger(m_control_type, m_min);
  max = FeatureToInteger(m_control_type, m_max);
  return m_available;
}

bool BVimbaControl::SetToDefault() { return SetValue(FeatureToInteger(m_control_type, m_default)); }

bool BVimbaControl::IsAvailable() const { return m_available; }

WString BVimbaControl::UnitString() const { return UnitOfControl(m_control_type); }

double BVimbaControl::ToRealValue(int value) const { return IntegerToReal(m_control_type, value); }

int BVimbaControl::FromRealValue(double value) const { return RealToInteger(m_control_type, value); }
