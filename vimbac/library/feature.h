// library/feature.h
// Typed feature nodes and the rules by which they are read and written.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "VimbaC.h"
#include "library/ranges.h"

namespace VimbaLibrary {

enum class Access {
  kReadOnly,
  kReadWrite,
  // Writable while no acquisition runs.
  kIdle
};

struct EnumEntry {
  // A literal: callers keep pointers to it.
  std::string_view name;
  std::int64_t value = 0;
};

// In every node an empty function stands for the stored value, the fixed range, or nothing to check and to do.
struct IntegerNode {
  IntegerRange fixed;
  std::int64_t value = 0;
  std::function<IntegerRange()> range = {};
  std::function<std::int64_t()> read = {};
  // Whether a value within the range can be set; empty: all can.
  std::function<bool(std::int64_t)> accepts = {};
};

struct FloatNode {
  FloatRange fixed;
  // One value for each entry of the selector; without selector a single one.
  std::vector<double> values;
  const char* selector = nullptr;
  std::function<FloatRange()> range = {};
  std::function<double()> read = {};
  // Writable only while this enumeration reads "Off".
  const char* automatic = nullptr;
};

struct EnumNode {
  std::vector<EnumEntry> entries;
  std::size_t selected = 0;
};

struct StringNode {
  std::string value;
  // With the terminating zero.
  std::uint32_t capacity = 64;
};

struct BoolNode {
  bool value = false;
};

struct CommandNode {
  std::function<void()> run;
  std::function<bool()> done = {};
};

// One row of a device's feature table.
struct Feature {
  const char* name;
  Access access;
  std::variant<IntegerNode, FloatNode, EnumNode, StringNode, BoolNode, CommandNode> node;
  // Runs after a successful write.
  std::function<void()> written = {};
  // API calls do not find a missing feature. The device itself still uses its value.
  bool missing = false;
};

// The features of one device. Takes no lock: its owner does.
class FeatureMap {
 public:
  // `acquiring` decides about features that are writable while idle.
  FeatureMap(std::vector<Feature> rows, std::function<bool()> acquiring);

  // As the API calls of the same names. The codes are those of the API.
  VmbError_t GetInteger(std::string_view name, std::int64_t& value) const;
  VmbError_t SetInteger(std::string_view name, std::int64_t value);
  VmbError_t IntegerRangeOf(std::string_view name, IntegerRange& range) const;
  VmbError_t GetFloat(std::string_view name, double& value) const;
  VmbError_t SetFloat(std::string_view name, double value);
  VmbError_t FloatRangeOf(std::string_view name, FloatRange& range) const;
  // The text lives as long as the library.
  VmbError_t GetEnum(std::string_view name, const char*& value) const;
  VmbError_t SetEnum(std::string_view name, std::string_view value);
  VmbError_t EnumValueOf(std::string_view name, std::string_view entry, std::int64_t& value) const;
  VmbError_t GetString(std::string_view name, std::string& value) const;
  VmbError_t StringCapacity(std::string_view name, std::uint32_t& capacity) const;
  VmbError_t GetBool(std::string_view name, bool& value) const;
  VmbError_t Run(std::string_view name);
  VmbError_t IsDone(std::string_view name, bool& done) const;
  bool Has(std::string_view name) const { return Find(name) != nullptr; }

  // The device's own access, past "missing" and access rules. The feature must be of this type.
  template <class Node>
  Node& Own(std::string_view name) {
    return std::get<Node>(m_features.at(name).node);
  }
  template <class Node>
  const Node& Own(std::string_view name) const {
    return std::get<Node>(m_features.at(name).node);
  }
  std::int64_t Integer(std::string_view name) const;
  double Float(std::string_view name) const;
  const EnumEntry& Entry(std::string_view name) const;
  Feature* Row(std::string_view name);

  // Value and range as one text, which a watcher compares. Empty for commands and unknown names.
  std::string Describe(std::string_view name) const;
  // Every readable feature with its value as text, in order of name.
  std::map<std::string, std::string> Values() const;

 private:
  const Feature* Find(std::string_view name) const;
  template <class Node>
  VmbError_t Look(std::string_view name, const Node*& node) const;
  template <class Node>
  VmbError_t LookForWrite(std::string_view name, Feature*& feature, Node*& node);
  IntegerRange RangeNow(const IntegerNode& node) const;
  FloatRange RangeNow(const FloatNode& node) const;
  double ValueNow(const FloatNode& node) const;
  std::size_t Selected(const FloatNode& node) const;

  std::map<std::string_view, Feature> m_features;
  std::function<bool()> m_acquiring;
};

}  // namespace VimbaLibrary
