// http_message.cpp
// A request of a browser, and what it is answered.
#include "view/http/http_message.h"

namespace Kelcam {
namespace {

constexpr const char* kJsonType = "application/json";

}  // namespace

std::string TextOf(const Json& document) { return document.dump(-1, ' ', false, Json::error_handler_t::replace); }

HttpAnswer JsonAnswer(const Json& document, int status) {
  const std::string text = TextOf(document);
  return {status, kJsonType, {}, std::make_shared<const Bytes>(text.begin(), text.end())};
}

HttpAnswer ErrorAnswer(int status, const std::string& sentence) { return JsonAnswer({{"error", sentence}}, status); }

void TakeTarget(const std::string& target, HttpRequest& request) {
  const std::size_t mark = target.find('?');
  request.path = target.substr(0, mark);
  if (mark == std::string::npos) return;
  for (std::size_t at = mark + 1; at <= target.size();) {
    const std::size_t end = std::min(target.find('&', at), target.size());
    const std::string part = target.substr(at, end - at);
    const std::size_t equals = part.find('=');
    if (!part.empty()) {
      request.query.emplace(part.substr(0, equals), equals == std::string::npos ? "" : part.substr(equals + 1));
    }
    at = end + 1;
  }
}

}  // namespace Kelcam
