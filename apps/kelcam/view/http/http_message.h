// http_message.h
// A request of a browser, and what it is answered.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/report.h"

namespace Kelcam {

using Bytes = std::vector<std::uint8_t>;

namespace Http {

inline constexpr int kOk = 200;
inline constexpr int kNoContent = 204;
inline constexpr int kBadRequest = 400;
inline constexpr int kForbidden = 403;
inline constexpr int kNotFound = 404;
inline constexpr int kMethodNotAllowed = 405;
inline constexpr int kConflict = 409;
inline constexpr int kGone = 410;
inline constexpr int kTooLarge = 413;
inline constexpr int kUnsupportedType = 415;
inline constexpr int kHeaderTooLarge = 431;
inline constexpr int kInternalError = 500;
inline constexpr int kUnavailable = 503;
inline constexpr int kTooLate = 504;

inline constexpr const char* kGet = "GET";
inline constexpr const char* kPost = "POST";

}  // namespace Http

struct HttpRequest {
  std::string method;
  std::string path;                          // as it was sent, without the query
  std::map<std::string, std::string> query;  // as it was sent; of several values of one name the first
  std::string body;
  // Header fields; empty: not sent.
  std::string host;
  std::string origin;
  std::string content_type;
  std::string fetch_site;   // Sec-Fetch-Site
  std::string kelcam_mark;  // X-Kelcam
};

struct HttpAnswer {
  int status = Http::kOk;
  std::string type;                                         // of the body
  std::vector<std::pair<std::string, std::string>> fields;  // in addition to those that every answer has
  std::shared_ptr<const Bytes> body;                        // null: none
};

HttpAnswer JsonAnswer(const Json& document, int status = Http::kOk);
// {"error": sentence}
HttpAnswer ErrorAnswer(int status, const std::string& sentence);

// On one line, for documents that travel as text; bytes of a camera's texts that are no UTF-8 are replaced.
std::string TextOf(const Json& document);

// Takes the target of a request apart: "/api/cameras/0/pixel?x=1&y=2". Nothing in it is decoded.
void TakeTarget(const std::string& target, HttpRequest& request);

}  // namespace Kelcam
