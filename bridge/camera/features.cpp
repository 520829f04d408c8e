// camera/features.cpp
// The features of one opened camera, by the names that callers know.
#include "camera/features.h"

#include "camera/native_feature.h"

namespace Bridge {

Features::Features(ArvDevice* device, CameraClock& clock, AcquisitionState& state)
    : m_device(device), m_features(MapFeatures(device, clock, state)) {}

Feature* Features::Find(const char* name) const {
  const auto known = m_features.find(std::string_view(name));
  if (known != m_features.end()) return known->second.get();
  auto native = NativeFeature::Find(m_device, name);
  // Names are the caller's: those that mean nothing are not kept.
  if (!native) return nullptr;
  return m_features.emplace(name, std::move(native)).first->second.get();
}

VmbError_t Features::GetInteger(const char* name, std::int64_t& value) const {
  return With(name, [&](const Feature& feature) { return feature.GetInteger(value); });
}

VmbError_t Features::SetInteger(const char* name, std::int64_t value) {
  return With(name, [&](Feature& feature) { return feature.SetInteger(value); });
}

VmbError_t Features::IntegerRangeOf(const char* name, VimbaLibrary::IntegerRange& range) const {
  return With(name, [&](const Feature& feature) { return feature.IntegerRangeOf(range); });
}

VmbError_t Features::GetFloat(const char* name, double& value) const {
  return With(name, [&](const Feature& feature) { return feature.GetFloat(value); });
}

VmbError_t Features::SetFloat(const char* name, double value) {
  return With(name, [&](Feature& feature) { return feature.SetFloat(value); });
}

VmbError_t Features::FloatRangeOf(const char* name, VimbaLibrary::FloatRange& range) const {
  return With(name, [&](const Feature& feature) { return feature.FloatRangeOf(range); });
}

VmbError_t Features::GetEnum(const char* name, const char*& value) const {
  return With(name, [&](const Feature& feature) { return feature.GetEnum(value); });
}

VmbError_t Features::SetEnum(const char* name, std::string_view value) {
  return With(name, [&](Feature& feature) { return feature.SetEnum(value); });
}

VmbError_t Features::EnumValueOf(const char* name, std::string_view entry, std::int64_t& value) const {
  return With(name, [&](const Feature& feature) { return feature.EnumValueOf(entry, value); });
}

VmbError_t Features::GetString(const char* name, std::string& value) const {
  return With(name, [&](const Feature& feature) { return feature.GetString(value); });
}

VmbError_t Features::StringCapacity(const char* name, std::uint32_t& capacity) const {
  return With(name, [&](const Feature& feature) { return feature.StringCapacity(capacity); });
}

VmbError_t Features::GetBool(const char* name, bool& value) const {
  return With(name, [&](const Feature& feature) { return feature.GetBool(value); });
}

VmbError_t Features::Run(const char* name) {
  return With(name, [&](Feature& feature) { return feature.Run(); });
}

VmbError_t Features::IsDone(const char* name, bool& done) const {
  return With(name, [&](const Feature& feature) { return feature.IsDone(done); });
}

}  // namespace Bridge
