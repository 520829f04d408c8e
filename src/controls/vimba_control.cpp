// vimba_control.cpp
// One adjustable camera quantity as the host sees it.
#include "controls/vimba_control.h"

#include <algorithm>
#include <chrono>
#include <tuple>

#include "controls/control_types.h"
#include "diagnostics/platform.h"
#include "vimba/vimba_features.h"

namespace {

// Spaces out consecutive changes for the camera.
constexpr std::chrono::milliseconds kPauseAfterWrite{20};

}  // namespace

BVimbaControl::BVimbaControl(NBoard::CONTROLTYPE type, VmbHandle_t camera)
    : BImagingDeviceControl(type),
      m_camera(camera),
      m_type(ControlTypeOf(type)),
      m_min(m_type.fallback_min),
      m_max(m_type.fallback_max),
      m_current(m_type.default_value),
      m_default(m_type.default_value) {
  if (!m_type.feature) return;
  if (m_type.automatic) std::ignore = Vimba::SetEnum(m_camera, m_type.automatic, m_type.automatic_entry);
  // A camera that does not report its gain or exposure can still be set; without a selector nothing can be relied on.
  const bool read = ReadFromCamera();
  m_available = read || !m_type.selector;
}

// Range, then value; with a selector the first failure ends the sequence.
bool BVimbaControl::ReadFromCamera() {
  if (!Select()) return false;
  bool complete = true;
  if (!IsTemperature()) {
    complete = Vimba::GetFloatRange(m_camera, m_type.feature, m_min, m_max) == VmbErrorSuccess;
    m_max = std::min(m_max, m_type.max_cap);
  }
  if (!complete && m_type.selector) return false;
  return Vimba::GetFloat(m_camera, m_type.feature, m_current) == VmbErrorSuccess && complete;
}

bool BVimbaControl::Select() const {
  return !m_type.selector || Vimba::SetEnum(m_camera, m_type.selector, m_type.selector_entry) == VmbErrorSuccess;
}

bool BVimbaControl::IsTemperature() const {
  return m_type.type == NBoard::eTemperatureSensor || m_type.type == NBoard::eTemperatureMain;
}

int BVimbaControl::Value() {
  if (!IsTemperature()) return m_type.FeatureToInteger(m_current);
  if (!m_available || !Select()) return 0;
  double temperature = 0.0;
  std::ignore = Vimba::GetFloat(m_camera, m_type.feature, temperature);
  return m_type.FeatureToInteger(temperature);
}

bool BVimbaControl::SetValue(int value) {
  if (!m_available) return false;
  double wanted = m_type.IntegerToFeature(value);
  if (!(wanted > m_min)) wanted = m_min;
  if (!(m_max > wanted)) wanted = m_max;
  if (wanted == m_current) return true;
  const bool written =
      !IsTemperature() && Select() && Vimba::SetFloat(m_camera, m_type.feature, wanted) == VmbErrorSuccess;
  if (written) m_current = wanted;
  SleepFor(kPauseAfterWrite);
  return written;
}

// A bound may only be moved inside the present range.
void BVimbaControl::Narrow(double& bound, int value) {
  const double wanted = m_type.IntegerToFeature(value);
  if (m_min <= wanted && wanted <= m_max) bound = wanted;
}

void BVimbaControl::SetMinValue(int value) { Narrow(m_min, value); }

void BVimbaControl::SetMaxValue(int value) { Narrow(m_max, value); }

void BVimbaControl::SetDefaultValue(int value) { Narrow(m_default, value); }

bool BVimbaControl::GetRange(int& min, int& max) {
  min = m_type.FeatureToInteger(m_min);
  max = m_type.FeatureToInteger(m_max);
  return m_available;
}

bool BVimbaControl::SetToDefault() { return SetValue(m_type.FeatureToInteger(m_default)); }

bool BVimbaControl::IsAvailable() const { return m_available; }

WString BVimbaControl::UnitString() const { return m_type.unit; }

double BVimbaControl::ToRealValue(int value) const { return m_type.IntegerToReal(value); }

int BVimbaControl::FromRealValue(double value) const { return m_type.RealToInteger(value); }
