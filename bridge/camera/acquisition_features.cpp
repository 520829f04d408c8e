// camera/acquisition_features.cpp
// Features of which the camera's own meaning, or Aravis', needs something added: start and stop, format, trigger.
#include "camera/acquisition_features.h"

#include <tuple>
#include <utility>

namespace Bridge {
namespace {

constexpr std::string_view kOn = "On";
constexpr std::string_view kOff = "Off";
// Of an entry that no camera has: beyond what they use.
constexpr std::int64_t kFreeRunningValue = 1'000;

// 0 for a feature that the camera lacks.
template <class Number>
void ReadNumber(ArvDevice* device, const char* name, Number& number) {
  std::int64_t value = 0;
  const auto feature = NativeFeature::Find(device, name);
  if (feature && feature->GetInteger(value) == VmbErrorSuccess && value >= 0) number = static_cast<Number>(value);
}

}  // namespace

HeldWhileAcquiring::HeldWhileAcquiring(std::unique_ptr<Feature> feature, const AcquisitionState& state)
    : m_feature(std::move(feature)), m_state(state) {}

VmbError_t HeldWhileAcquiring::SetInteger(std::int64_t value) {
  return m_state.Acquiring() ? VmbError_t{VmbErrorInvalidAccess} : m_feature->SetInteger(value);
}

VmbError_t HeldWhileAcquiring::SetEnum(std::string_view value) {
  return m_state.Acquiring() ? VmbError_t{VmbErrorInvalidAccess} : m_feature->SetEnum(value);
}

AcquisitionControl::AcquisitionControl(ArvDevice* device, AcquisitionState& state)
    : m_device(device),
      m_state(state),
      m_start(NativeFeature::Find(device, "AcquisitionStart")),
      m_stop(NativeFeature::Find(device, "AcquisitionStop")),
      m_locked(NativeFeature::Find(device, "TLParamsLocked")) {}

VmbError_t AcquisitionControl::Start() {
  FrameLayout layout;
  if (const VmbError_t error = ReadLayout(layout)) return error;
  const bool was_acquiring = m_state.Acquiring();
  // Before the first frame can come.
  m_state.Begin(layout);
  SetLocked(true);
  const VmbError_t error = m_start->Run();
  if (error && !was_acquiring) {
    SetLocked(false);
    m_state.End();
  }
  return error;
}

VmbError_t AcquisitionControl::Stop() {
  if (const VmbError_t error = m_stop->Run()) return error;
  SetLocked(false);
  m_state.End();
  return VmbErrorSuccess;
}

VmbError_t AcquisitionControl::ReadLayout(FrameLayout& layout) const {
  const auto payload = NativeFeature::Find(m_device, "PayloadSize");
  std::int64_t bytes = 0;
  if (!payload) return VmbErrorNotFound;
  if (const VmbError_t error = payload->GetInteger(bytes)) return error;
  if (bytes <= 0) return VmbErrorInternalFault;
  layout.payload_bytes = static_cast<std::uint64_t>(bytes);
  ReadNumber(m_device, "Width", layout.width);
  ReadNumber(m_device, "Height", layout.height);
  ReadNumber(m_device, "OffsetX", layout.offset_x);
  ReadNumber(m_device, "OffsetY", layout.offset_y);
  return VmbErrorSuccess;
}

// The flag may be a whole number or a truth value. What a camera answers is not important: most lock by themselves.
void AcquisitionControl::SetLocked(bool locked) {
  if (!m_locked) return;
  std::ignore =
      m_locked->Type() == FeatureType::kBool ? m_locked->SetBool(locked) : m_locked->SetInteger(locked ? 1 : 0);
}

VmbError_t Command::IsDone(bool& done) const {
  done = true;
  return VmbErrorSuccess;
}

FreeRunningTrigger::FreeRunningTrigger(std::unique_ptr<NativeFeature> mode, std::unique_ptr<NativeFeature> source)
    : m_mode(std::move(mode)), m_source(std::move(source)), m_wanted_mode(kOn) {}

VmbError_t FreeRunningTrigger::GetMode(const char*& value) const {
  if (!m_free_running) return m_mode->GetEnum(value);
  value = m_wanted_mode == kOn ? kOn.data() : kOff.data();
  return VmbErrorSuccess;
}

VmbError_t FreeRunningTrigger::SetMode(std::string_view value) {
  if (!m_free_running) return m_mode->SetEnum(value);
  if (value != kOn && value != kOff) return VmbErrorInvalidValue;
  m_wanted_mode = value;
  return VmbErrorSuccess;
}

VmbError_t FreeRunningTrigger::GetSource(const char*& value) const {
  if (!m_free_running) return m_source->GetEnum(value);
  value = kEntry;
  return VmbErrorSuccess;
}

VmbError_t FreeRunningTrigger::SetSource(std::string_view value) {
  if (value == kEntry) {
    if (m_free_running) return VmbErrorSuccess;
    const char* mode = nullptr;
    if (const VmbError_t error = m_mode->GetEnum(mode)) return error;
    if (const VmbError_t error = m_mode->SetEnum(kOff)) return error;
    m_wanted_mode = mode;
    m_free_running = true;
    return VmbErrorSuccess;
  }
  if (const VmbError_t error = m_source->SetEnum(value)) return error;
  if (!std::exchange(m_free_running, false)) return VmbErrorSuccess;
  return m_mode->SetEnum(m_wanted_mode);
}

VmbError_t TriggerSource::EnumValueOf(std::string_view entry, std::int64_t& value) const {
  if (entry != FreeRunningTrigger::kEntry) return m_trigger->Source().EnumValueOf(entry, value);
  value = kFreeRunningValue;
  return VmbErrorSuccess;
}

}  // namespace Bridge
