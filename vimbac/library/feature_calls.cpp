// library/feature_calls.cpp
// VimbaC: features.
#include <algorithm>
#include <cstring>
#include <string>

#include "VimbaC.h"
#include "api/api_call.h"
#include "library/ranges.h"

using VimbaLibrary::ApiCall;
using VimbaLibrary::VimbaSystem;

VmbError_t VmbFeatureIntGet(VmbHandle_t handle, const char* name, VmbInt64_t* value) {
  return ApiCall(__func__).On(handle).Feature(name).Out(value).Answer([&](VimbaSystem& system) {
    return system.ReadFeatures(handle, [&](const auto& features) { return features.GetInteger(name, *value); });
  });
}

VmbError_t VmbFeatureIntSet(VmbHandle_t handle, const char* name, VmbInt64_t value) {
  return ApiCall(__func__).On(handle).Feature(name).Value(value).Answer([&](VimbaSystem& system) {
    return system.WriteFeatures(handle, [&](auto& features) { return features.SetInteger(name, value); });
  });
}

VmbError_t VmbFeatureIntRangeQuery(VmbHandle_t handle, const char* name, VmbInt64_t* min, VmbInt64_t* max) {
  return ApiCall(__func__).On(handle).Feature(name).Out(min).Out(max).Answer([&](VimbaSystem& system) {
    VimbaLibrary::IntegerRange range;
    const VmbError_t error =
        system.ReadFeatures(handle, [&](const auto& features) { return features.IntegerRangeOf(name, range); });
    if (error) return error;
    *min = range.min;
    *max = range.max;
    return error;
  });
}

VmbError_t VmbFeatureFloatGet(VmbHandle_t handle, const char* name, double* value) {
  return ApiCall(__func__).On(handle).Feature(name).Out(value).Answer([&](VimbaSystem& system) {
    return system.ReadFeatures(handle, [&](const auto& features) { return features.GetFloat(name, *value); });
  });
}

VmbError_t VmbFeatureFloatSet(VmbHandle_t handle, const char* name, double value) {
  return ApiCall(__func__).On(handle).Feature(name).Value(value).Answer([&](VimbaSystem& system) {
    return system.WriteFeatures(handle, [&](auto& features) { return features.SetFloat(name, value); });
  });
}

VmbError_t VmbFeatureFloatRangeQuery(VmbHandle_t handle, const char* name, double* min, double* max) {
  return ApiCall(__func__).On(handle).Feature(name).Out(min).Out(max).Answer([&](VimbaSystem& system) {
    VimbaLibrary::FloatRange range;
    const VmbError_t error =
        system.ReadFeatures(handle, [&](const auto& features) { return features.FloatRangeOf(name, range); });
    if (error) return error;
    *min = range.min;
    *max = range.max;
    return error;
  });
}

VmbError_t VmbFeatureEnumGet(VmbHandle_t handle, const char* name, const char** value) {
  return ApiCall(__func__).On(handle).Feature(name).Out(value).Answer([&](VimbaSystem& system) {
    return system.ReadFeatures(handle, [&](const auto& features) { return features.GetEnum(name, *value); });
  });
}

VmbError_t VmbFeatureEnumSet(VmbHandle_t handle, const char* name, const char* value) {
  return ApiCall(__func__).On(handle).Feature(name).Value(value).Answer([&](VimbaSystem& system) {
    return system.WriteFeatures(handle, [&](auto& features) { return features.SetEnum(name, value); });
  });
}

VmbError_t VmbFeatureEnumAsInt(VmbHandle_t handle, const char* name, const char* entry, VmbInt64_t* value) {
  return ApiCall(__func__).On(handle).Feature(name).Value(entry).Out(value).Answer([&](VimbaSystem& system) {
    return system.ReadFeatures(handle, [&](const auto& features) { return features.EnumValueOf(name, entry, *value); });
  });
}

// Without a buffer it only reports the needed size. Into a buffer that is too small it copies what fits.
VmbError_t VmbFeatureStringGet(VmbHandle_t handle, const char* name, char* buffer, VmbUint32_t buffer_size,
                               VmbUint32_t* filled) {
  ApiCall call(__func__);
  call.On(handle).Feature(name).Value(std::int64_t{buffer_size});
  call.OutArray(buffer, buffer_size);
  if (filled || !buffer) call.Out(filled);
  return call.Answer([&](VimbaSystem& system) {
    std::string text;
    const VmbError_t error =
        system.ReadFeatures(handle, [&](const auto& features) { return features.GetString(name, text); });
    if (error) return error;
    const auto needed = static_cast<VmbUint32_t>(text.size() + 1);
    if (filled) *filled = needed;
    if (!buffer) return error;
    if (buffer_size != 0) {
      const std::size_t copied = std::min<std::size_t>(buffer_size - 1, text.size());
      std::memcpy(buffer, text.data(), copied);
      buffer[copied] = '\0';
    }
    return buffer_size < needed ? VmbError_t{VmbErrorMoreData} : error;
  });
}

VmbError_t VmbFeatureStringMaxlengthQuery(VmbHandle_t handle, const char* name, VmbUint32_t* max_length) {
  return ApiCall(__func__).On(handle).Feature(name).Out(max_length).Answer([&](VimbaSystem& system) {
    return system.ReadFeatures(handle,
                               [&](const auto& features) { return features.StringCapacity(name, *max_length); });
  });
}

VmbError_t VmbFeatureBoolGet(VmbHandle_t handle, const char* name, VmbBool_t* value) {
  return ApiCall(__func__).On(handle).Feature(name).Out(value).Answer([&](VimbaSystem& system) {
    bool flag = false;
    const VmbError_t error =
        system.ReadFeatures(handle, [&](const auto& features) { return features.GetBool(name, flag); });
    if (!error) *value = flag ? 1 : 0;
    return error;
  });
}

VmbError_t VmbFeatureCommandRun(VmbHandle_t handle, const char* name) {
  return ApiCall(__func__).On(handle).Feature(name).Answer([&](VimbaSystem& system) {
    return system.WriteFeatures(handle, [&](auto& features) { return features.Run(name); });
  });
}

VmbError_t VmbFeatureCommandIsDone(VmbHandle_t handle, const char* name, VmbBool_t* done) {
  return ApiCall(__func__).On(handle).Feature(name).Out(done).Answer([&](VimbaSystem& system) {
    bool is_done = false;
    const VmbError_t error =
        system.ReadFeatures(handle, [&](const auto& features) { return features.IsDone(name, is_done); });
    if (!error) *done = is_done ? 1 : 0;
    return error;
  });
}

VmbError_t VmbFeatureInvalidationRegister(VmbHandle_t handle, const char* name, VmbInvalidationCallback callback,
                                          void* user_context) {
  return ApiCall(__func__).On(handle).Feature(name).Needs(callback).Answer(
      [&](VimbaSystem& system) { return system.Watch(handle, name, callback, user_context); });
}
