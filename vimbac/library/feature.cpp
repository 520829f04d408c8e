// library/feature.cpp
// Typed feature nodes and the rules by which they are read and written.
#include "library/feature.h"

#include <algorithm>
#include <utility>

#include "library/value_text.h"

namespace VimbaLibrary {
namespace {

// Null for an unknown entry.
const EnumEntry* EntryOf(const EnumNode& node, std::string_view name) {
  const auto found = std::find_if(node.entries.begin(), node.entries.end(),
                                  [&](const EnumEntry& entry) { return entry.name == name; });
  return found == node.entries.end() ? nullptr : &*found;
}

}  // namespace

FeatureMap::FeatureMap(std::vector<Feature> rows, std::function<bool()> acquiring) : m_acquiring(std::move(acquiring)) {
  for (Feature& row : rows) {
    const char* name = row.name;
    m_features.emplace(name, std::move(row));
  }
}

const Feature* FeatureMap::Find(std::string_view name) const {
  const auto found = m_features.find(name);
  return found == m_features.end() || found->second.missing ? nullptr : &found->second;
}

Feature* FeatureMap::Row(std::string_view name) {
  const auto found = m_features.find(name);
  return found == m_features.end() ? nullptr : &found->second;
}

template <class Node>
VmbError_t FeatureMap::Look(std::string_view name, const Node*& node) const {
  const Feature* feature = Find(name);
  if (!feature) return VmbErrorNotFound;
  node = std::get_if<Node>(&feature->node);
  return node ? VmbErrorSuccess : VmbErrorWrongType;
}

template <class Node>
VmbError_t FeatureMap::LookForWrite(std::string_view name, Feature*& feature, Node*& node) {
  const Node* found = nullptr;
  if (const VmbError_t error = Look(name, found)) return error;
  feature = Row(name);
  node = std::get_if<Node>(&feature->node);
  if (feature->access == Access::kReadOnly) return VmbErrorInvalidAccess;
  if (feature->access == Access::kIdle && m_acquiring()) return VmbErrorInvalidAccess;
  return VmbErrorSuccess;
}

IntegerRange FeatureMap::RangeNow(const IntegerNode& node) const { return node.range ? node.range() : node.fixed; }

FloatRange FeatureMap::RangeNow(const FloatNode& node) const { return node.range ? node.range() : node.fixed; }

std::size_t FeatureMap::Selected(const FloatNode& node) const {
  return node.selector ? Own<EnumNode>(node.selector).selected : 0;
}

double FeatureMap::ValueNow(const FloatNode& node) const {
  if (node.read) return node.read();
  const FloatRange range = RangeNow(node);
  return std::clamp(node.values[Selected(node)], range.min, std::max(range.min, range.max));
}

VmbError_t FeatureMap::GetInteger(std::string_view name, std::int64_t& value) const {
  const IntegerNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) value = node->read ? node->read() : node->value;
  return error;
}

VmbError_t FeatureMap::SetInteger(std::string_view name, std::int64_t value) {
  Feature* feature = nullptr;
  IntegerNode* node = nullptr;
  if (const VmbError_t error = LookForWrite(name, feature, node)) return error;
  const IntegerRange range = RangeNow(*node);
  if (value < range.min || value > range.max || (value - range.min) % range.step != 0) return VmbErrorInvalidValue;
  if (node->accepts && !node->accepts(value)) return VmbErrorInvalidValue;
  node->value = value;
  if (feature->written) feature->written();
  return VmbErrorSuccess;
}

VmbError_t FeatureMap::IntegerRangeOf(std::string_view name, IntegerRange& range) const {
  const IntegerNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) range = RangeNow(*node);
  return error;
}

VmbError_t FeatureMap::GetFloat(std::string_view name, double& value) const {
  const FloatNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) value = ValueNow(*node);
  return error;
}

VmbError_t FeatureMap::SetFloat(std::string_view name, double value) {
  Feature* feature = nullptr;
  FloatNode* node = nullptr;
  if (const VmbError_t error = LookForWrite(name, feature, node)) return error;
  if (node->automatic && Own<EnumNode>(node->automatic).selected != 0) return VmbErrorInvalidAccess;
  const FloatRange range = RangeNow(*node);
  // Written so that a value that is no number is refused too.
  if (!(value >= range.min && value <= range.max)) return VmbErrorInvalidValue;
  node->values[Selected(*node)] = value;
  if (feature->written) feature->written();
  return VmbErrorSuccess;
}

VmbError_t FeatureMap::FloatRangeOf(std::string_view name, FloatRange& range) const {
  const FloatNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) range = RangeNow(*node);
  return error;
}

VmbError_t FeatureMap::GetEnum(std::string_view name, const char*& value) const {
  const EnumNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) value = node->entries[node->selected].name.data();
  return error;
}

VmbError_t FeatureMap::SetEnum(std::string_view name, std::string_view value) {
  Feature* feature = nullptr;
  EnumNode* node = nullptr;
  if (const VmbError_t error = LookForWrite(name, feature, node)) return error;
  const EnumEntry* entry = EntryOf(*node, value);
  if (!entry) return VmbErrorInvalidValue;
  node->selected = static_cast<std::size_t>(entry - node->entries.data());
  if (feature->written) feature->written();
  return VmbErrorSuccess;
}

VmbError_t FeatureMap::EnumValueOf(std::string_view name, std::string_view entry, std::int64_t& value) const {
  const EnumNode* node = nullptr;
  if (const VmbError_t error = Look(name, node)) return error;
  const EnumEntry* found = EntryOf(*node, entry);
  if (!found) return VmbErrorInvalidValue;
  value = found->value;
  return VmbErrorSuccess;
}

VmbError_t FeatureMap::GetString(std::string_view name, std::string& value) const {
  const StringNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) value = node->value;
  return error;
}

VmbError_t FeatureMap::StringCapacity(std::string_view name, std::uint32_t& capacity) const {
  const StringNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) capacity = node->capacity;
  return error;
}

VmbError_t FeatureMap::GetBool(std::string_view name, bool& value) const {
  const BoolNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) value = node->value;
  return error;
}

VmbError_t FeatureMap::Run(std::string_view name) {
  const CommandNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) node->run();
  return error;
}

VmbError_t FeatureMap::IsDone(std::string_view name, bool& done) const {
  const CommandNode* node = nullptr;
  const VmbError_t error = Look(name, node);
  if (!error) done = !node->done || node->done();
  return error;
}

std::int64_t FeatureMap::Integer(std::string_view name) const {
  const auto& node = Own<IntegerNode>(name);
  return node.read ? node.read() : node.value;
}

double FeatureMap::Float(std::string_view name) const { return ValueNow(Own<FloatNode>(name)); }

const EnumEntry& FeatureMap::Entry(std::string_view name) const {
  const auto& node = Own<EnumNode>(name);
  return node.entries[node.selected];
}

std::string FeatureMap::Describe(std::string_view name) const {
  const Feature* feature = Find(name);
  if (!feature) return {};
  if (const auto* integer = std::get_if<IntegerNode>(&feature->node)) {
    const IntegerRange range = RangeNow(*integer);
    return ValueText(Integer(name)) + " " + ValueText(range.min) + " " + ValueText(range.max);
  }
  if (const auto* number = std::get_if<FloatNode>(&feature->node)) {
    const FloatRange range = RangeNow(*number);
    return ValueText(ValueNow(*number)) + " " + ValueText(range.min) + " " + ValueText(range.max);
  }
  if (const auto* entry = std::get_if<EnumNode>(&feature->node))
    return std::string(entry->entries[entry->selected].name);
  if (const auto* text = std::get_if<StringNode>(&feature->node)) return text->value;
  if (const auto* flag = std::get_if<BoolNode>(&feature->node)) return flag->value ? "true" : "false";
  return {};
}

std::map<std::string, std::string> FeatureMap::Values() const {
  std::map<std::string, std::string> values;
  for (const auto& [name, feature] : m_features) {
    if (feature.missing || std::holds_alternative<CommandNode>(feature.node)) continue;
    const std::string text = Describe(name);
    const bool ranged =
        std::holds_alternative<IntegerNode>(feature.node) || std::holds_alternative<FloatNode>(feature.node);
    values.emplace(name, ranged ? text.substr(0, text.find(' ')) : text);
  }
  return values;
}

}  // namespace VimbaLibrary
