// camera/mapped_features.cpp
// Features that a camera has in another form than callers expect, or not at all.
#include "camera/mapped_features.h"

#include <glib.h>

#include <algorithm>
#include <cmath>

namespace Bridge {
namespace {

using VimbaLibrary::FloatRange;
using VimbaLibrary::IntegerRange;

// The step of the range that lies nearest to the value, which is inside.
std::int64_t NearestStep(double value, const IntegerRange& range) {
  const double steps = std::round((value - static_cast<double>(range.min)) / static_cast<double>(range.step));
  const std::int64_t nearest = range.min + static_cast<std::int64_t>(steps) * range.step;
  return nearest > range.max ? nearest - range.step : nearest;
}

}  // namespace

ConvertedFloat::ConvertedFloat(std::unique_ptr<NativeFeature> native, Conversion conversion)
    : m_native(std::move(native)), m_conversion(conversion) {}

VmbError_t ConvertedFloat::GetFloat(double& value) const {
  double read = 0.0;
  VmbError_t error = VmbErrorSuccess;
  if (m_native->Type() == FeatureType::kInteger) {
    std::int64_t whole = 0;
    error = m_native->GetInteger(whole);
    read = static_cast<double>(whole);
  } else {
    error = m_native->GetFloat(read);
  }
  if (error) return error;
  const double converted = m_conversion.to_caller(read);
  if (!std::isfinite(converted)) return VmbErrorInvalidValue;
  value = converted;
  return VmbErrorSuccess;
}

VmbError_t ConvertedFloat::SetFloat(double value) {
  FloatRange range;
  if (const VmbError_t error = FloatRangeOf(range)) return error;
  // Written so that a value that is no number is refused too.
  if (!(value >= range.min && value <= range.max)) return VmbErrorInvalidValue;
  const double converted = m_conversion.to_camera(value);
  if (m_native->Type() == FeatureType::kInteger) {
    IntegerRange whole;
    if (const VmbError_t error = WholeRange(whole)) return error;
    return m_native->SetInteger(NearestStep(converted, whole));
  }
  // There and back, an end of the range may come out a bit beyond it.
  FloatRange ends;
  if (const VmbError_t error = NativeRange(ends)) return error;
  return m_native->SetFloat(std::clamp(converted, ends.min, std::max(ends.min, ends.max)));
}

VmbError_t ConvertedFloat::WholeRange(IntegerRange& range) const {
  if (const VmbError_t error = m_native->IntegerRangeOf(range)) return error;
  if (static_cast<double>(range.min) >= m_conversion.least) return VmbErrorSuccess;
  const double steps = (m_conversion.least - static_cast<double>(range.min)) / static_cast<double>(range.step);
  range.min += static_cast<std::int64_t>(std::ceil(steps)) * range.step;
  return range.min > range.max ? VmbError_t{VmbErrorInvalidValue} : VmbError_t{VmbErrorSuccess};
}

VmbError_t ConvertedFloat::NativeRange(FloatRange& range) const {
  if (m_native->Type() == FeatureType::kInteger) {
    IntegerRange whole;
    if (const VmbError_t error = WholeRange(whole)) return error;
    range = {static_cast<double>(whole.min), static_cast<double>(whole.max)};
    return VmbErrorSuccess;
  }
  if (const VmbError_t error = m_native->FloatRangeOf(range)) return error;
  range.min = std::max(range.min, m_conversion.least);
  return range.min > range.max ? VmbError_t{VmbErrorInvalidValue} : VmbError_t{VmbErrorSuccess};
}

VmbError_t ConvertedFloat::FloatRangeOf(FloatRange& range) const {
  FloatRange native;
  if (const VmbError_t error = NativeRange(native)) return error;
  range = {m_conversion.to_caller(native.min), m_conversion.to_caller(native.max)};
  return VmbErrorSuccess;
}

RenamedEnum::RenamedEnum(std::unique_ptr<NativeFeature> native, std::vector<Name> names)
    : m_native(std::move(native)), m_names(std::move(names)) {}

std::string_view RenamedEnum::CamerasName(std::string_view entry) const {
  if (m_native->HasEntry(entry)) return entry;
  const auto renamed = [&](const Name& name) { return name.caller == entry && m_native->HasEntry(name.camera); };
  const auto found = std::find_if(m_names.begin(), m_names.end(), renamed);
  return found == m_names.end() ? entry : found->camera;
}

VmbError_t RenamedEnum::GetEnum(const char*& value) const {
  const char* read = nullptr;
  if (const VmbError_t error = m_native->GetEnum(read)) return error;
  const auto renamed = [&](const Name& name) { return name.camera == read && !m_native->HasEntry(name.caller); };
  const auto found = std::find_if(m_names.begin(), m_names.end(), renamed);
  value = found == m_names.end() ? read : g_intern_string(std::string(found->caller).c_str());
  return VmbErrorSuccess;
}

VmbError_t RenamedEnum::SetEnum(std::string_view value) { return m_native->SetEnum(CamerasName(value)); }

VmbError_t RenamedEnum::EnumValueOf(std::string_view entry, std::int64_t& value) const {
  return m_native->EnumValueOf(CamerasName(entry), value);
}

VmbError_t FixedEnum::GetEnum(const char*& value) const {
  value = m_entry;
  return VmbErrorSuccess;
}

VmbError_t FixedEnum::SetEnum(std::string_view value) {
  if (!m_writable) return VmbErrorInvalidAccess;
  return value == m_entry ? VmbErrorSuccess : VmbErrorInvalidValue;
}

VmbError_t FixedEnum::EnumValueOf(std::string_view entry, std::int64_t& value) const {
  if (entry != m_entry) return VmbErrorInvalidValue;
  value = 0;
  return VmbErrorSuccess;
}

}  // namespace Bridge
