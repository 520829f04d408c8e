// camera/native_feature.h
// A feature that the camera itself describes.
#pragma once

#include <arv.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "camera/feature.h"

namespace Bridge {

enum class FeatureType { kInteger, kFloat, kEnum, kString, kBool, kCommand };

// A node of the camera's GenICam description. Values are checked here before they are sent: Aravis knows neither steps
// nor locks, and would take one type for another.
class NativeFeature final : public Feature {
 public:
  // Null when the camera has no such feature, does not implement it, or it is of no type that callers can use.
  static std::unique_ptr<NativeFeature> Find(ArvDevice* device, const char* name);

  FeatureType Type() const { return m_type; }
  // As the camera spells it; empty where it names none.
  std::string Unit() const;
  // Those that can be set now; empty for every other type.
  std::vector<std::string> Entries() const;
  bool HasEntry(std::string_view entry) const;
  bool Writable() const { return CheckWritable() == VmbErrorSuccess; }

  VmbError_t GetInteger(std::int64_t& value) const override;
  VmbError_t SetInteger(std::int64_t value) override;
  VmbError_t IntegerRangeOf(VimbaLibrary::IntegerRange& range) const override;
  VmbError_t GetFloat(double& value) const override;
  VmbError_t SetFloat(double value) override;
  VmbError_t FloatRangeOf(VimbaLibrary::FloatRange& range) const override;
  VmbError_t GetEnum(const char*& value) const override;
  VmbError_t SetEnum(std::string_view value) override;
  VmbError_t EnumValueOf(std::string_view entry, std::int64_t& value) const override;
  VmbError_t GetString(std::string& value) const override;
  VmbError_t StringCapacity(std::uint32_t& capacity) const override;
  VmbError_t GetBool(bool& value) const override;
  // Of a flag that only this library sets.
  VmbError_t SetBool(bool value);
  VmbError_t Run() override;
  // The camera has acknowledged a command when Run returns; whether it has carried it out, Aravis cannot ask.
  VmbError_t IsDone(bool& done) const override;

 private:
  NativeFeature(ArvGcNode* node, FeatureType type) : m_node(node), m_type(type) {}

  VmbError_t CheckReadable() const;
  VmbError_t CheckWritable() const;

  // The camera's.
  ArvGcNode* const m_node;
  const FeatureType m_type;
};

}  // namespace Bridge
