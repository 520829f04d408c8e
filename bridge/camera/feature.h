// camera/feature.h
// One feature of a camera, as callers of VimbaC see it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "VimbaC.h"
#include "library/ranges.h"

namespace Bridge {

// Each function is the API call of that name; a feature of another type answers WrongType. Takes no lock: the owner of
// the camera's features does.
class Feature {
 public:
  Feature() = default;
  virtual ~Feature() = default;
  Feature(const Feature&) = delete;
  Feature& operator=(const Feature&) = delete;

  virtual VmbError_t GetInteger(std::int64_t& /*value*/) const { return VmbErrorWrongType; }
  virtual VmbError_t SetInteger(std::int64_t /*value*/) { return VmbErrorWrongType; }
  virtual VmbError_t IntegerRangeOf(VimbaLibrary::IntegerRange& /*range*/) const { return VmbErrorWrongType; }
  virtual VmbError_t GetFloat(double& /*value*/) const { return VmbErrorWrongType; }
  virtual VmbError_t SetFloat(double /*value*/) { return VmbErrorWrongType; }
  virtual VmbError_t FloatRangeOf(VimbaLibrary::FloatRange& /*range*/) const { return VmbErrorWrongType; }
  // The text lives as long as the process.
  virtual VmbError_t GetEnum(const char*& /*value*/) const { return VmbErrorWrongType; }
  virtual VmbError_t SetEnum(std::string_view /*value*/) { return VmbErrorWrongType; }
  virtual VmbError_t EnumValueOf(std::string_view /*entry*/, std::int64_t& /*value*/) const {
    return VmbErrorWrongType;
  }
  virtual VmbError_t GetString(std::string& /*value*/) const { return VmbErrorWrongType; }
  virtual VmbError_t StringCapacity(std::uint32_t& /*capacity*/) const { return VmbErrorWrongType; }
  virtual VmbError_t GetBool(bool& /*value*/) const { return VmbErrorWrongType; }
  virtual VmbError_t Run() { return VmbErrorWrongType; }
  virtual VmbError_t IsDone(bool& /*done*/) const { return VmbErrorWrongType; }
};

}  // namespace Bridge
