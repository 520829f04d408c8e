// request_values.h
// The values in a request, with what is wrong with them.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "base/report.h"
#include "view/http/http_message.h"
#include "view/pictures/rectangle.h"

namespace Kelcam {

// A request that is answered with an error. [as all of these functions throw it]
class RefusedRequest : public std::runtime_error {
 public:
  RefusedRequest(int status, const std::string& sentence) : std::runtime_error(sentence), m_status(status) {}
  int Status() const { return m_status; }

 private:
  int m_status;
};

// A method that the path does not have.
class WrongMethod : public RefusedRequest {
 public:
  explicit WrongMethod(const char* allowed)
      : RefusedRequest(Http::kMethodNotAllowed, std::string("here is ") + allowed + " alone"), m_allowed(allowed) {}
  const char* Allowed() const { return m_allowed; }

 private:
  const char* m_allowed;
};

// Decimal digits alone.
std::uint64_t NumberOf(const HttpRequest& request, const std::string& name);
int IntOf(const HttpRequest& request, const std::string& name);
// Empty: there is none.
std::string TextOf(const HttpRequest& request, const std::string& name);
// x, y, w and h; none of them: nothing.
std::optional<Rectangle> RegionOf(const HttpRequest& request);

// The body, which is an object.
Json BodyOf(const HttpRequest& request);
std::string TextIn(const Json& body, const std::string& name);
bool SwitchIn(const Json& body, const std::string& name);
std::int32_t NumberIn(const Json& body, const std::string& name);
// [x, y, width, height], or null.
std::optional<Rectangle> AreaIn(const Json& body, const std::string& name);

}  // namespace Kelcam
