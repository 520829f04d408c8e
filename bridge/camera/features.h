// camera/features.h
// The features of one opened camera, by the names that callers know.
#pragma once

#include <arv.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "camera/feature_map.h"

namespace Bridge {

// Takes no lock: its owner does. The camera's description is not safe for two threads.
class Features {
 public:
  // The arguments outlive it.
  Features(ArvDevice* device, CameraClock& clock, AcquisitionState& state);

  // As the API calls of the same names. The codes are those of the API.
  VmbError_t GetInteger(const char* name, std::int64_t& value) const;
  VmbError_t SetInteger(const char* name, std::int64_t value);
  VmbError_t IntegerRangeOf(const char* name, VimbaLibrary::IntegerRange& range) const;
  VmbError_t GetFloat(const char* name, double& value) const;
  VmbError_t SetFloat(const char* name, double value);
  VmbError_t FloatRangeOf(const char* name, VimbaLibrary::FloatRange& range) const;
  VmbError_t GetEnum(const char* name, const char*& value) const;
  VmbError_t SetEnum(const char* name, std::string_view value);
  VmbError_t EnumValueOf(const char* name, std::string_view entry, std::int64_t& value) const;
  VmbError_t GetString(const char* name, std::string& value) const;
  VmbError_t StringCapacity(const char* name, std::uint32_t& capacity) const;
  VmbError_t GetBool(const char* name, bool& value) const;
  VmbError_t Run(const char* name);
  VmbError_t IsDone(const char* name, bool& done) const;
  bool Has(const char* name) const { return Find(name) != nullptr; }

 private:
  // Null when the camera has none by this name and nothing stands for it.
  Feature* Find(const char* name) const;
  template <class Body>
  VmbError_t With(const char* name, Body body) const {
    Feature* const feature = Find(name);
    return feature ? body(*feature) : VmbError_t{VmbErrorNotFound};
  }

  ArvDevice* const m_device;
  // The camera's own are added when they are first asked for; null stands for one that is not there.
  mutable MappedFeatures m_features;
};

}  // namespace Bridge
