// camera/mapped_features.h
// Features that a camera has in another form than callers expect, or not at all.
#pragma once

#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "camera/feature.h"
#include "camera/native_feature.h"

namespace Bridge {

// How a number of the camera becomes one of the caller's, and back. Both grow together.
struct Conversion {
  double (*to_caller)(double);
  double (*to_camera)(double);
  // The camera's smallest number that a caller can ask for, whatever the range of the camera.
  double least = -std::numeric_limits<double>::infinity();
};

// A real number in another unit. The camera's may be whole: then the nearest step is written.
class ConvertedFloat final : public Feature {
 public:
  ConvertedFloat(std::unique_ptr<NativeFeature> native, Conversion conversion);

  VmbError_t GetFloat(double& value) const override;
  VmbError_t SetFloat(double value) override;
  VmbError_t FloatRangeOf(VimbaLibrary::FloatRange& range) const override;

 private:
  // What a caller can ask for, in the camera's numbers.
  VmbError_t WholeRange(VimbaLibrary::IntegerRange& range) const;
  VmbError_t NativeRange(VimbaLibrary::FloatRange& range) const;

  const std::unique_ptr<NativeFeature> m_native;
  const Conversion m_conversion;
};

// An enumeration of which the camera calls some entries otherwise.
class RenamedEnum final : public Feature {
 public:
  struct Name {
    std::string_view caller;
    std::string_view camera;
  };
  RenamedEnum(std::unique_ptr<NativeFeature> native, std::vector<Name> names);

  VmbError_t GetEnum(const char*& value) const override;
  VmbError_t SetEnum(std::string_view value) override;
  VmbError_t EnumValueOf(std::string_view entry, std::int64_t& value) const override;

 private:
  // A name that the camera knows is the camera's.
  std::string_view CamerasName(std::string_view entry) const;

  const std::unique_ptr<NativeFeature> m_native;
  const std::vector<Name> m_names;
};

// What a camera without the feature does anyway. Setting that again succeeds.
class FixedEnum final : public Feature {
 public:
  // A literal.
  explicit FixedEnum(const char* entry, bool writable = true) : m_entry(entry), m_writable(writable) {}

  VmbError_t GetEnum(const char*& value) const override;
  VmbError_t SetEnum(std::string_view value) override;
  VmbError_t EnumValueOf(std::string_view entry, std::int64_t& value) const override;

 private:
  const char* const m_entry;
  const bool m_writable;
};

}  // namespace Bridge
