// vimba_trigger.cpp
// The camera's frame-start trigger as the host sees it.
#include "controls/vimba_trigger.h"

#include <array>
#include <tuple>

#include "vimba/feature_names.h"
#include "vimba/vimba_features.h"

namespace {

// By BImagingDeviceTrigger::Source. Free run needs no other trigger mode: the source itself makes the camera run.
constexpr std::array<const char*, 3> kTriggerSources{FeatureEntry::kSoftware, FeatureEntry::kLine2,
                                                     FeatureEntry::kFreerun};

}  // namespace

BVimbaTrigger::BVimbaTrigger(VmbHandle_t camera) : m_camera(camera) {
  m_available = SelectFrameStart() && SetTriggerSource(kTriggerSources[eLine]);
  if (m_available) SetSource(eSoftware);
}

void BVimbaTrigger::SetOn() { SetSource(eSoftware); }

bool BVimbaTrigger::IsAvailable() const { return m_available; }

bool BVimbaTrigger::IsExternal() const { return m_available && m_external; }

void BVimbaTrigger::SetExternal(bool external) {
  if (m_available) m_external = external;
}

bool BVimbaTrigger::SetActivation(int edge) {
  if (m_available) {
    std::ignore = Vimba::SetEnum(m_camera, Feature::kTriggerActivation,
                                 edge == eRising ? FeatureEntry::kRisingEdge : FeatureEntry::kFallingEdge);
  }
  return true;
}

bool BVimbaTrigger::SetSource(int source) {
  if (IsExternal() && source == eFreeRun) return true;
  if (!SelectFrameStart()) return false;
  if (source < 0 || source >= static_cast<int>(kTriggerSources.size())) return true;
  return SetTriggerSource(kTriggerSources[static_cast<std::size_t>(source)]);
}

void BVimbaTrigger::Fire() {
  if (m_external) return;
  if (Vimba::RunCommand(m_camera, Feature::kTriggerSoftware) != VmbErrorSuccess) return;
  Vimba::WaitUntilDone(m_camera, Feature::kTriggerSoftware, [] {});
}

bool BVimbaTrigger::SelectFrameStart() {
  return Vimba::SetEnum(m_camera, Feature::kTriggerMode, FeatureEntry::kOn) == VmbErrorSuccess &&
         Vimba::SetEnum(m_camera, Feature::kTriggerSelector, FeatureEntry::kFrameStart) == VmbErrorSuccess;
}

bool BVimbaTrigger::SetTriggerSource(const char* entry) {
  return Vimba::SetEnum(m_camera, Feature::kTriggerSource, entry) == VmbErrorSuccess;
}
