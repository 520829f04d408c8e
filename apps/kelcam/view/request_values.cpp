// request_values.cpp
// The values in a request, with what is wrong with them.
#include "view/request_values.h"

#include <charconv>
#include <limits>

namespace Kelcam {
namespace {

[[noreturn]] void Refuse(const std::string& sentence) { throw RefusedRequest(Http::kBadRequest, sentence); }

const Json& MemberOf(const Json& body, const std::string& name) {
  const auto found = body.find(name);
  if (found == body.end()) Refuse("the body has no \"" + name + "\"");
  return *found;
}

std::int32_t IntegerOf(const Json& value, const std::string& name) {
  const bool is_small = value.is_number_integer() && value.get<std::int64_t>() >= 0 &&
                        value.get<std::int64_t>() <= std::numeric_limits<std::int32_t>::max();
  if (!is_small) Refuse("\"" + name + "\" is not a whole number from 0 on");
  return value.get<std::int32_t>();
}

}  // namespace

std::string TextOf(const HttpRequest& request, const std::string& name) {
  const auto found = request.query.find(name);
  return found == request.query.end() ? std::string() : found->second;
}

std::uint64_t NumberOf(const HttpRequest& request, const std::string& name) {
  const std::string text = TextOf(request, name);
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) Refuse("\"" + name + "\" is not a whole number from 0 on");
  return number;
}

int IntOf(const HttpRequest& request, const std::string& name) {
  const std::uint64_t number = NumberOf(request, name);
  if (number > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) Refuse("\"" + name + "\" is too large");
  return static_cast<int>(number);
}

std::optional<Rectangle> RegionOf(const HttpRequest& request) {
  const auto has = [&](const char* name) { return request.query.contains(name); };
  if (!has("x") && !has("y") && !has("w") && !has("h")) return std::nullopt;
  return Rectangle{IntOf(request, "x"), IntOf(request, "y"), IntOf(request, "w"), IntOf(request, "h")};
}

Json BodyOf(const HttpRequest& request) {
  Json body = Json::parse(request.body, nullptr, false);
  if (!body.is_object()) Refuse("the body is not a JSON object");
  return body;
}

std::string TextIn(const Json& body, const std::string& name) {
  const Json& value = MemberOf(body, name);
  if (!value.is_string()) Refuse("\"" + name + "\" is not a text");
  return value.get<std::string>();
}

bool SwitchIn(const Json& body, const std::string& name) {
  const Json& value = MemberOf(body, name);
  if (!value.is_boolean()) Refuse("\"" + name + "\" is neither true nor false");
  return value.get<bool>();
}

std::int32_t NumberIn(const Json& body, const std::string& name) { return IntegerOf(MemberOf(body, name), name); }

std::optional<Rectangle> AreaIn(const Json& body, const std::string& name) {
  constexpr std::size_t kSides = 4;
  const Json& value = MemberOf(body, name);
  if (value.is_null()) return std::nullopt;
  if (!value.is_array() || value.size() != kSides) Refuse("\"" + name + "\" is neither [x, y, width, height] nor null");
  return Rectangle{IntegerOf(value[0], name), IntegerOf(value[1], name), IntegerOf(value[2], name),
                   IntegerOf(value[3], name)};
}

}  // namespace Kelcam
