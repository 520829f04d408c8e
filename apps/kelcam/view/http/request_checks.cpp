// request_checks.cpp
// Which requests are answered at all.
#include "view/http/request_checks.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <random>

namespace Kelcam {
namespace {

constexpr const char* kTokenName = "token";
constexpr const char* kJsonType = "application/json";
constexpr const char* kSameOrigin = "same-origin";
constexpr const char* kByPerson = "none";
constexpr const char* kOwnMark = "1";
constexpr std::string_view kInterface = "/api/";

constexpr const char* kLocalNames[] = {"127.0.0.1", "localhost", "[::1]"};

// Takes as long for a wrong one as for the right one, wherever they differ.
bool IsToken(const std::string& text, const std::string& token) {
  if (text.size() != token.size()) return false;
  unsigned difference = 0;
  for (std::size_t i = 0; i < token.size(); ++i) {
    difference |= static_cast<unsigned char>(text[i]) ^ static_cast<unsigned char>(token[i]);
  }
  return difference == 0;
}

bool IsLocal(const std::string& host, std::uint16_t port) {
  constexpr std::uint16_t kUsualPort = 80;
  return std::any_of(std::begin(kLocalNames), std::end(kLocalNames), [&](const std::string& name) {
    return host == name + ":" + std::to_string(port) || (port == kUsualPort && host == name);
  });
}

std::string ValueOf(const HttpRequest& request, const char* name) {
  const auto found = request.query.find(name);
  return found == request.query.end() ? std::string() : found->second;
}

// The browser says where a request comes from: of the interface nothing is for other pages, not even for those of
// another port of this machine.
bool IsFromAnotherPage(const HttpRequest& request) {
  if (!request.origin.empty() && request.origin != "http://" + request.host) return true;
  if (!request.path.starts_with(kInterface) || request.fetch_site.empty()) return false;
  return request.fetch_site != kSameOrigin && request.fetch_site != kByPerson;
}

// "application/json; charset=utf-8" is one, too.
bool IsJson(const std::string& type) { return type.substr(0, type.find(';')) == kJsonType; }

}  // namespace

std::optional<HttpAnswer> RefusalOf(const HttpRequest& request, const Gate& gate) {
  if (!gate.token.empty()) {
    if (!IsToken(ValueOf(request, kTokenName), gate.token)) {
      return ErrorAnswer(Http::kForbidden, "the address lacks the token that kelcam has printed");
    }
  } else if (!IsLocal(request.host, gate.port)) {
    return ErrorAnswer(Http::kForbidden, "this server answers under 127.0.0.1 and localhost alone");
  }
  if (IsFromAnotherPage(request)) return ErrorAnswer(Http::kForbidden, "this request comes from another page");
  if (request.method != Http::kPost) return std::nullopt;
  if (request.kelcam_mark != kOwnMark) return ErrorAnswer(Http::kForbidden, "the field X-Kelcam: 1 is missing");
  if (!IsJson(request.content_type)) return ErrorAnswer(Http::kUnsupportedType, "the body must be application/json");
  return std::nullopt;
}

std::string NewToken() {
  constexpr const char* kDigits = "0123456789abcdef";
  constexpr int kBytes = 16;
  constexpr unsigned kByteValues = 256;
  std::random_device source;
  std::string token;
  for (int i = 0; i < kBytes; ++i) {
    const unsigned byte = source() % kByteValues;
    token += kDigits[byte / 16];
    token += kDigits[byte % 16];
  }
  return token;
}

}  // namespace Kelcam
