// camera/native_feature.cpp
// A feature that the camera itself describes.
#include "camera/native_feature.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "aravis/errors.h"
#include "aravis/object.h"

namespace Bridge {
namespace {

using VimbaLibrary::FloatRange;
using VimbaLibrary::IntegerRange;

constexpr std::uint32_t kLongestText = 65'536;

// Enumerations and flags first: to Aravis they are integers, too.
std::optional<FeatureType> TypeOf(ArvGcNode* node) {
  if (ARV_IS_GC_ENUMERATION(node)) return FeatureType::kEnum;
  if (ARV_IS_GC_BOOLEAN(node)) return FeatureType::kBool;
  if (ARV_IS_GC_COMMAND(node)) return FeatureType::kCommand;
  if (ARV_IS_GC_FLOAT(node)) return FeatureType::kFloat;
  if (ARV_IS_GC_INTEGER(node)) return FeatureType::kInteger;
  if (ARV_IS_GC_STRING(node)) return FeatureType::kString;
  return std::nullopt;
}

// The value of a limit; the type's own where the camera names none.
template <class Value, class Query>
VmbError_t Limit(Query query, Value fallback, Value& limit) {
  ErrorSlot error;
  limit = query(error.Take());
  if (!error.Code()) return VmbErrorSuccess;
  limit = fallback;
  return error.Is(ARV_GC_ERROR, ARV_GC_ERROR_PROPERTY_NOT_DEFINED) ? VmbError_t{VmbErrorSuccess} : error.Code();
}

std::string TextOrEmpty(const char* text) { return text ? text : ""; }

}  // namespace

std::unique_ptr<NativeFeature> NativeFeature::Find(ArvDevice* device, const char* name) {
  ArvGcNode* const node = arv_device_get_feature(device, name);
  if (!node || !ARV_IS_GC_FEATURE_NODE(node)) return nullptr;
  ErrorSlot error;
  if (!arv_gc_feature_node_is_implemented(ARV_GC_FEATURE_NODE(node), error.Take()) || error.Code()) return nullptr;
  const std::optional<FeatureType> type = TypeOf(node);
  return type ? std::unique_ptr<NativeFeature>(new NativeFeature(node, *type)) : nullptr;
}

std::string NativeFeature::Unit() const {
  if (m_type == FeatureType::kFloat) return TextOrEmpty(arv_gc_float_get_unit(ARV_GC_FLOAT(m_node)));
  if (m_type == FeatureType::kInteger) return TextOrEmpty(arv_gc_integer_get_unit(ARV_GC_INTEGER(m_node)));
  return {};
}

std::vector<std::string> NativeFeature::Entries() const {
  if (m_type != FeatureType::kEnum) return {};
  ErrorSlot error;
  guint count = 0;
  const Allocated<const char*> entries(
      arv_gc_enumeration_dup_available_string_values(ARV_GC_ENUMERATION(m_node), &count, error.Take()));
  if (error.Code() || !entries) return {};
  return {entries.get(), entries.get() + count};
}

bool NativeFeature::HasEntry(std::string_view entry) const {
  const std::vector<std::string> entries = Entries();
  return std::find(entries.begin(), entries.end(), entry) != entries.end();
}

VmbError_t NativeFeature::CheckReadable() const {
  ErrorSlot error;
  const bool available = arv_gc_feature_node_is_available(ARV_GC_FEATURE_NODE(m_node), error.Take());
  if (error.Code()) return error.Code();
  return available ? VmbErrorSuccess : VmbErrorInvalidAccess;
}

VmbError_t NativeFeature::CheckWritable() const {
  ArvGcFeatureNode* const node = ARV_GC_FEATURE_NODE(m_node);
  if (const VmbError_t error = CheckReadable()) return error;
  if (arv_gc_feature_node_get_actual_access_mode(node) == ARV_GC_ACCESS_MODE_RO) return VmbErrorInvalidAccess;
  ErrorSlot error;
  const bool locked = arv_gc_feature_node_is_locked(node, error.Take());
  if (error.Code()) return error.Code();
  return locked ? VmbErrorInvalidAccess : VmbErrorSuccess;
}

VmbError_t NativeFeature::GetInteger(std::int64_t& value) const {
  if (m_type != FeatureType::kInteger) return VmbErrorWrongType;
  if (const VmbError_t unreadable = CheckReadable()) return unreadable;
  ErrorSlot error;
  const std::int64_t read = arv_gc_integer_get_value(ARV_GC_INTEGER(m_node), error.Take());
  if (!error.Code()) value = read;
  return error.Code();
}

VmbError_t NativeFeature::SetInteger(std::int64_t value) {
  if (m_type != FeatureType::kInteger) return VmbErrorWrongType;
  if (const VmbError_t unwritable = CheckWritable()) return unwritable;
  IntegerRange range;
  if (const VmbError_t unknown = IntegerRangeOf(range)) return unknown;
  if (value < range.min || value > range.max) return VmbErrorInvalidValue;
  // As unsigned: a range may be wider than its type is positive.
  const auto above = static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(range.min);
  if (above % static_cast<std::uint64_t>(range.step) != 0) return VmbErrorInvalidValue;
  ErrorSlot error;
  arv_gc_integer_set_value(ARV_GC_INTEGER(m_node), value, error.Take());
  return error.Code();
}

VmbError_t NativeFeature::IntegerRangeOf(IntegerRange& range) const {
  if (m_type != FeatureType::kInteger) return VmbErrorWrongType;
  if (const VmbError_t unreadable = CheckReadable()) return unreadable;
  ArvGcInteger* const node = ARV_GC_INTEGER(m_node);
  using Limits = std::numeric_limits<std::int64_t>;
  IntegerRange found;
  VmbError_t error =
      Limit([&](GError** slot) { return std::int64_t{arv_gc_integer_get_min(node, slot)}; }, Limits::min(), found.min);
  if (!error) {
    error = Limit([&](GError** slot) { return std::int64_t{arv_gc_integer_get_max(node, slot)}; }, Limits::max(),
                  found.max);
  }
  if (!error) {
    error = Limit([&](GError** slot) { return std::int64_t{arv_gc_integer_get_inc(node, slot)}; }, std::int64_t{1},
                  found.step);
  }
  if (error) return error;
  found.step = std::max<std::int64_t>(found.step, 1);
  range = found;
  return VmbErrorSuccess;
}

VmbError_t NativeFeature::GetFloat(double& value) const {
  if (m_type != FeatureType::kFloat) return VmbErrorWrongType;
  if (const VmbError_t unreadable = CheckReadable()) return unreadable;
  ErrorSlot error;
  const double read = arv_gc_float_get_value(ARV_GC_FLOAT(m_node), error.Take());
  if (!error.Code()) value = read;
  return error.Code();
}

VmbError_t NativeFeature::SetFloat(double value) {
  if (m_type != FeatureType::kFloat) return VmbErrorWrongType;
  if (const VmbError_t unwritable = CheckWritable()) return unwritable;
  FloatRange range;
  if (const VmbError_t unknown = FloatRangeOf(range)) return unknown;
  // Written so that a value that is no number is refused too.
  if (!(value >= range.min && value <= range.max)) return VmbErrorInvalidValue;
  ErrorSlot error;
  arv_gc_float_set_value(ARV_GC_FLOAT(m_node), value, error.Take());
  return error.Code();
}

VmbError_t NativeFeature::FloatRangeOf(FloatRange& range) const {
  if (m_type != FeatureType::kFloat) return VmbErrorWrongType;
  if (const VmbError_t unreadable = CheckReadable()) return unreadable;
  ArvGcFloat* const node = ARV_GC_FLOAT(m_node);
  constexpr double kLargest = std::numeric_limits<double>::max();
  FloatRange found;
  VmbError_t error = Limit([&](GError** slot) { return arv_gc_float_get_min(node, slot); }, -kLargest, found.min);
  if (!error) error = Limit([&](GError** slot) { return arv_gc_float_get_max(node, slot); }, kLargest, found.max);
  if (!error) range = found;
  return error;
}

VmbError_t NativeFeature::GetEnum(const char*& value) const {
  if (m_type != FeatureType::kEnum) return VmbErrorWrongType;
  if (const VmbError_t unreadable = CheckReadable()) return unreadable;
  ErrorSlot error;
  const char* const read = arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(m_node), error.Take());
  if (error.Code()) return error.Code();
  if (!read) return VmbErrorInternalFault;
  value = g_intern_string(read);
  return VmbErrorSuccess;
}

VmbError_t NativeFeature::SetEnum(std::string_view value) {
  if (m_type != FeatureType::kEnum) return VmbErrorWrongType;
  if (const VmbError_t unwritable = CheckWritable()) return unwritable;
  if (!HasEntry(value)) return VmbErrorInvalidValue;
  ErrorSlot error;
  arv_gc_enumeration_set_string_value(ARV_GC_ENUMERATION(m_node), std::string(value).c_str(), error.Take());
  return error.Code();
}

VmbError_t NativeFeature::EnumValueOf(std::string_view entry, std::int64_t& value) const {
  if (m_type != FeatureType::kEnum) return VmbErrorWrongType;
  for (const GSList* item = arv_gc_enumeration_get_entries(ARV_GC_ENUMERATION(m_node)); item; item = item->next) {
    auto* const candidate = ARV_GC_ENUM_ENTRY(item->data);
    if (TextOrEmpty(arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(candidate))) != entry) continue;
    ErrorSlot error;
    const std::int64_t read = arv_gc_enum_entry_get_value(candidate, error.Take());
    if (!error.Code()) value = read;
    return error.Code();
  }
  return VmbErrorInvalidValue;
}

VmbError_t NativeFeature::GetString(std::string& value) const {
  if (m_type != FeatureType::kString) return VmbErrorWrongType;
  if (const VmbError_t unreadable = CheckReadable()) return unreadable;
  ErrorSlot error;
  const char* const read = arv_gc_string_get_value(ARV_GC_STRING(m_node), error.Take());
  if (!error.Code()) value = TextOrEmpty(read);
  return error.Code();
}

VmbError_t NativeFeature::StringCapacity(std::uint32_t& capacity) const {
  if (m_type != FeatureType::kString) return VmbErrorWrongType;
  ErrorSlot error;
  const std::int64_t longest = arv_gc_string_get_max_length(ARV_GC_STRING(m_node), error.Take());
  if (error.Code()) return error.Code();
  // With the terminating zero.
  capacity = static_cast<std::uint32_t>(std::clamp<std::int64_t>(longest, 0, kLongestText - 1)) + 1;
  return VmbErrorSuccess;
}

VmbError_t NativeFeature::GetBool(bool& value) const {
  if (m_type != FeatureType::kBool) return VmbErrorWrongType;
  if (const VmbError_t unreadable = CheckReadable()) return unreadable;
  ErrorSlot error;
  const bool read = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(m_node), error.Take());
  if (!error.Code()) value = read;
  return error.Code();
}

VmbError_t NativeFeature::SetBool(bool value) {
  if (m_type != FeatureType::kBool) return VmbErrorWrongType;
  if (const VmbError_t unwritable = CheckWritable()) return unwritable;
  ErrorSlot error;
  arv_gc_boolean_set_value(ARV_GC_BOOLEAN(m_node), value, error.Take());
  return error.Code();
}

VmbError_t NativeFeature::Run() {
  if (m_type != FeatureType::kCommand) return VmbErrorWrongType;
  if (const VmbError_t unreadable = CheckReadable()) return unreadable;
  ErrorSlot error;
  arv_gc_command_execute(ARV_GC_COMMAND(m_node), error.Take());
  return error.Code();
}

VmbError_t NativeFeature::IsDone(bool& done) const {
  if (m_type != FeatureType::kCommand) return VmbErrorWrongType;
  done = true;
  return VmbErrorSuccess;
}

}  // namespace Bridge
