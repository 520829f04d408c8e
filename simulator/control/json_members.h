// control/json_members.h
// Reads the members of one JSON object, with errors that name the member and its value.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Simulator {

// Order of members is kept: initial feature values are written in theirs.
using Json = nlohmann::ordered_json;

// Throws std::invalid_argument for text that is no JSON or holds a number beyond those of a double.
Json ParseJson(std::string_view text);

// Every read of a member that is not there leaves its target alone and gives false. A wrong value throws
// std::invalid_argument with the member's full name and what it is.
class JsonMembers {
 public:
  // `path` names the object in messages; empty for the outermost.
  JsonMembers(const Json& object, std::string path);

  template <class Number>
  bool Integer(const char* name, Number& target, std::int64_t min = std::numeric_limits<Number>::min(),
               std::int64_t max = Highest<Number>()) {
    std::optional<std::int64_t> value = IntegerWithin(name, min, max);
    if (value) target = static_cast<Number>(*value);
    return value.has_value();
  }
  template <class Number>
  bool Integer(const char* name, std::optional<Number>& target) {
    Number value{};
    if (!Integer(name, value)) return false;
    target = value;
    return true;
  }
  bool Number(const char* name, double& target, double min, double max);
  bool Number(const char* name, std::optional<double>& target);
  bool Flag(const char* name, bool& target);
  bool Text(const char* name, std::string& target);
  // A text that is one of these; the target becomes its place.
  bool Choice(const char* name, const std::vector<std::string_view>& choices, int& target);
  bool Texts(const char* name, std::vector<std::string>& target);
  // Null when it is not there.
  const Json* Any(const char* name);
  bool Object(const char* name, const std::function<void(JsonMembers&)>& read);
  bool Objects(const char* name, const std::function<void(JsonMembers&)>& read);

  // After all reads: a member that was not asked for is an error.
  void RefuseOthers() const;
  [[noreturn]] void Refuse(const char* name, const std::string& why) const;
  std::string PathOf(std::string_view name) const;

 private:
  template <class Number>
  static constexpr std::int64_t Highest() {
    constexpr auto highest = std::numeric_limits<Number>::max();
    constexpr auto limit = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::uint64_t>(highest) > static_cast<std::uint64_t>(limit) ? limit
                                                                                   : static_cast<std::int64_t>(highest);
  }
  std::optional<std::int64_t> IntegerWithin(const char* name, std::int64_t min, std::int64_t max);

  const Json& m_object;
  const std::string m_path;
  std::set<std::string, std::less<>> m_asked;
};

}  // namespace Simulator
