// control/json_members.h
// Reads the members of one JSON object, with errors that name the member and its value.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace Simulator {

// Keeps the order of members, in which initial feature values are written.
using Json = nlohmann::ordered_json;

// Throws std::invalid_argument for text that is no JSON or holds a number beyond those of a double.
Json ParseJson(std::string_view text);

// Reading a member that is not there leaves its target alone and returns false. A wrong value throws
// std::invalid_argument with the member's full name and the value.
class JsonMembers {
 public:
  // `path` names the object in messages; empty for the outermost.
  JsonMembers(const Json& object, std::string path);

  template <class Value>
  bool Integer(const char* name, Value& target, std::int64_t min = std::numeric_limits<Value>::min(),
               std::int64_t max = Highest<Value>()) {
    const std::optional<std::int64_t> value = IntegerWithin(name, min, max);
    if (value) target = static_cast<Value>(*value);
    return value.has_value();
  }
  template <class Value>
  bool Integer(const char* name, std::optional<Value>& target) {
    Value value{};
    if (!Integer(name, value)) return false;
    target = value;
    return true;
  }
  bool Number(const char* name, double& target, double min, double max);
  bool Number(const char* name, std::optional<double>& target);
  // From 0 to `max`, in the target's unit.
  template <class Period>
  bool Time(const char* name, std::chrono::duration<double, Period>& target,
            std::type_identity_t<std::chrono::duration<double, Period>> max) {
    double number = 0.0;
    if (!Number(name, number, 0.0, max.count())) return false;
    target = std::chrono::duration<double, Period>(number);
    return true;
  }
  bool Flag(const char* name, bool& target);
  bool Text(const char* name, std::string& target);
  // A text that is one of these; the target becomes its index.
  bool Choice(const char* name, const std::vector<std::string_view>& choices, int& target);
  bool Texts(const char* name, std::vector<std::string>& target);
  // A value of any type; null when it is not there.
  const Json* Any(const char* name);
  bool Object(const char* name, const std::function<void(JsonMembers&)>& read);
  bool Objects(const char* name, const std::function<void(JsonMembers&)>& read);

  // After all reads: a member that was not asked for is an error.
  void RefuseOthers() const;
  [[noreturn]] void Refuse(const char* name, const std::string& why) const;
  std::string PathOf(std::string_view name) const;

 private:
  template <class Value>
  static constexpr std::int64_t Highest() {
    constexpr auto kHighest = std::numeric_limits<Value>::max();
    constexpr auto kLimit = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::uint64_t>(kHighest) > static_cast<std::uint64_t>(kLimit)
               ? kLimit
               : static_cast<std::int64_t>(kHighest);
  }
  std::optional<std::int64_t> IntegerWithin(const char* name, std::int64_t min, std::int64_t max);

  const Json& m_object;
  const std::string m_path;
  std::set<std::string, std::less<>> m_asked;
};

}  // namespace Simulator
