// control/json_members.cpp
// Reads the members of one JSON object, with errors that name the member and its value.
#include "control/json_members.h"

#include <algorithm>
#include <stdexcept>

#include "library/value_text.h"

namespace Simulator {

using VimbaLibrary::ValueText;
namespace {

constexpr char kNoTexts[] = "is no array of texts";
// The range of numbers that may be anything.
constexpr double kLargestNumber = 1e18;

// The quoted part of the message, in which alone the library reports the number.
std::string Quoted(const std::string& message) {
  const std::size_t begin = message.find('\'') + 1;
  return message.substr(begin, message.rfind('\'') - begin);
}

}  // namespace

Json ParseJson(std::string_view text) {
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& error) {
    throw std::invalid_argument("no JSON at byte " + std::to_string(error.byte));
  } catch (const Json::out_of_range& error) {
    throw std::invalid_argument("the text: " + Quoted(error.what()) + " is too large a number");
  }
}

JsonMembers::JsonMembers(const Json& object, std::string path) : m_object(object), m_path(std::move(path)) {
  if (!object.is_object()) throw std::invalid_argument((m_path.empty() ? "the text" : m_path) + ": is no object");
}

std::string JsonMembers::PathOf(std::string_view name) const {
  return m_path.empty() ? std::string(name) : m_path + "." + std::string(name);
}

void JsonMembers::Refuse(const char* name, const std::string& why) const {
  throw std::invalid_argument(PathOf(name) + ": " + m_object.at(name).dump() + " " + why);
}

const Json* JsonMembers::Any(const char* name) {
  m_asked.insert(name);
  const auto found = m_object.find(name);
  return found == m_object.end() ? nullptr : &*found;
}

std::optional<std::int64_t> JsonMembers::IntegerWithin(const char* name, std::int64_t min, std::int64_t max) {
  const Json* value = Any(name);
  if (!value) return std::nullopt;
  const auto within = [&] { return "is no whole number from " + ValueText(min) + " to " + ValueText(max); };
  // An unsigned value past the signed range would come back negative.
  if (!value->is_number_integer()) Refuse(name, within());
  if (value->is_number_unsigned() && value->get<std::uint64_t>() > INT64_MAX) Refuse(name, within());
  const auto number = value->get<std::int64_t>();
  if (number < min || number > max) Refuse(name, within());
  return number;
}

bool JsonMembers::Number(const char* name, double& target, double min, double max) {
  const Json* value = Any(name);
  if (!value) return false;
  // A value of another type becomes NaN, which no range holds.
  const double number = value->is_number() ? value->get<double>() : std::numeric_limits<double>::quiet_NaN();
  if (!(number >= min && number <= max)) Refuse(name, "is no number from " + ValueText(min) + " to " + ValueText(max));
  target = number;
  return true;
}

bool JsonMembers::Number(const char* name, std::optional<double>& target) {
  double number = 0.0;
  if (!Number(name, number, -kLargestNumber, kLargestNumber)) return false;
  target = number;
  return true;
}

bool JsonMembers::Flag(const char* name, bool& target) {
  const Json* value = Any(name);
  if (!value) return false;
  if (!value->is_boolean()) Refuse(name, "is neither true nor false");
  target = value->get<bool>();
  return true;
}

bool JsonMembers::Text(const char* name, std::string& target) {
  const Json* value = Any(name);
  if (!value) return false;
  if (!value->is_string()) Refuse(name, "is no text");
  target = value->get<std::string>();
  return true;
}

bool JsonMembers::Choice(const char* name, const std::vector<std::string_view>& choices, int& target) {
  const Json* value = Any(name);
  if (!value) return false;
  const auto found =
      value->is_string() ? std::find(choices.begin(), choices.end(), value->get<std::string>()) : choices.end();
  if (found == choices.end()) {
    std::string list;
    for (const std::string_view choice : choices) list += (list.empty() ? "" : ", ") + std::string(choice);
    Refuse(name, "is none of " + list);
  }
  target = static_cast<int>(found - choices.begin());
  return true;
}

bool JsonMembers::Texts(const char* name, std::vector<std::string>& target) {
  const Json* value = Any(name);
  if (!value) return false;
  if (!value->is_array()) Refuse(name, kNoTexts);
  std::vector<std::string> texts;
  for (const Json& element : *value) {
    if (!element.is_string()) Refuse(name, kNoTexts);
    texts.push_back(element.get<std::string>());
  }
  target = std::move(texts);
  return true;
}

bool JsonMembers::Object(const char* name, const std::function<void(JsonMembers&)>& read) {
  const Json* value = Any(name);
  if (!value) return false;
  JsonMembers members(*value, PathOf(name));
  read(members);
  members.RefuseOthers();
  return true;
}

bool JsonMembers::Objects(const char* name, const std::function<void(JsonMembers&)>& read) {
  const Json* value = Any(name);
  if (!value) return false;
  if (!value->is_array()) Refuse(name, "is no array");
  for (std::size_t i = 0; i < value->size(); ++i) {
    JsonMembers members((*value)[i], PathOf(name) + "[" + std::to_string(i) + "]");
    read(members);
    members.RefuseOthers();
  }
  return true;
}

void JsonMembers::RefuseOthers() const {
  for (const auto& [name, value] : m_object.items()) {
    if (m_asked.count(name) == 0) throw std::invalid_argument(PathOf(name) + ": there is no such member");
  }
}

}  // namespace Simulator
