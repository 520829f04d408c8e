// vimba_features.cpp
// Features by name, typed: what the driver asks of a camera or of the Vimba system, without pointers in the way.
#include "vimba/vimba_features.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

namespace Vimba {
namespace {

// A camera that declares a longer text is not believed.
constexpr VmbUint32_t kLongestTextBytes = 1U << 20U;

// What is no number was not read: it would find its way back to the camera.
bool IsNumber(std::int64_t /*value*/) { return true; }
bool IsNumber(double value) { return std::isfinite(value); }

// Without a limit to one side a range is one; where no number lies within, it is none.
bool HoldsNumbers(std::int64_t /*min*/, std::int64_t /*max*/) { return true; }
bool HoldsNumbers(double min, double max) { return min < HUGE_VAL && max > -HUGE_VAL; }

// Runs a read into a fresh value and hands it on only if the read worked.
template <class Value, class Read>
VmbError_t ReadInto(Value& result, Read read) {
  Value value{};
  const VmbError_t code = read(&value);
  if (code != VmbErrorSuccess) return code;
  if (!IsNumber(value)) return VmbErrorInvalidValue;
  result = value;
  return VmbErrorSuccess;
}

template <class Value, class Query>
VmbError_t QueryRange(Value& min, Value& max, Query query) {
  Value low{};
  Value high{};
  const VmbError_t code = query(&low, &high);
  if (code != VmbErrorSuccess) return code;
  if (!HoldsNumbers(low, high)) return VmbErrorInvalidValue;
  min = low;
  max = high;
  return VmbErrorSuccess;
}

}  // namespace

VmbError_t GetInt(VmbHandle_t handle, const char* feature, std::int64_t& value) {
  return ReadInto(value, [&](std::int64_t* result) { return VmbFeatureIntGet(handle, feature, result); });
}

VmbError_t SetInt(VmbHandle_t handle, const char* feature, std::int64_t value) {
  return VmbFeatureIntSet(handle, feature, value);
}

VmbError_t GetIntRange(VmbHandle_t handle, const char* feature, std::int64_t& min, std::int64_t& max) {
  return QueryRange(min, max, [&](std::int64_t* low, std::int64_t* high) {
    return VmbFeatureIntRangeQuery(handle, feature, low, high);
  });
}

VmbError_t GetFloat(VmbHandle_t handle, const char* feature, double& value) {
  return ReadInto(value, [&](double* result) { return VmbFeatureFloatGet(handle, feature, result); });
}

VmbError_t SetFloat(VmbHandle_t handle, const char* feature, double value) {
  return VmbFeatureFloatSet(handle, feature, value);
}

VmbError_t GetFloatRange(VmbHandle_t handle, const char* feature, double& min, double& max) {
  return QueryRange(min, max,
                    [&](double* low, double* high) { return VmbFeatureFloatRangeQuery(handle, feature, low, high); });
}

VmbError_t GetEnum(VmbHandle_t handle, const char* feature, BString& entry) {
  const char* value = nullptr;
  const VmbError_t code = VmbFeatureEnumGet(handle, feature, &value);
  if (code == VmbErrorSuccess) entry = BString(value);
  return code;
}

VmbError_t SetEnum(VmbHandle_t handle, const char* feature, const char* entry) {
  return VmbFeatureEnumSet(handle, feature, entry);
}

VmbError_t GetBool(VmbHandle_t handle, const char* feature, bool& value) {
  VmbBool_t flag = 0;
  const VmbError_t code = VmbFeatureBoolGet(handle, feature, &flag);
  if (code == VmbErrorSuccess) value = flag != 0;
  return code;
}

VmbError_t RunCommand(VmbHandle_t handle, const char* feature) { return VmbFeatureCommandRun(handle, feature); }

VmbError_t GetString(VmbHandle_t handle, const char* feature, BString& text) {
  VmbUint32_t max_length = 0;
  VmbError_t code = VmbFeatureStringMaxlengthQuery(handle, feature, &max_length);
  if (code != VmbErrorSuccess) return code;
  if (max_length > kLongestTextBytes) return VmbErrorResources;
  const auto buffer = std::make_unique<char[]>(max_length);
  VmbUint32_t filled = 0;
  code = VmbFeatureStringGet(handle, feature, buffer.get(), max_length, &filled);
  // The terminating zero is the camera's promise, not ours: never look past the buffer for it.
  if (code == VmbErrorSuccess)
    text = BString(std::string(buffer.get(), std::find(buffer.get(), buffer.get() + max_length, '\0')));
  return code;
}

}  // namespace Vimba
