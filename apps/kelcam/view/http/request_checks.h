// request_checks.h
// Which requests are answered at all.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "view/http/http_message.h"

namespace Kelcam {

// From whom a server takes requests.
struct Gate {
  std::uint16_t port = 0;
  std::string token;  // empty: from this machine alone, which names the server by one of its local names
};

// What a request is refused with that may come from a page of somebody else: a page that has this machine's address
// under a name of its own, or that sends requests across. Nothing: it is in order.
std::optional<HttpAnswer> RefusalOf(const HttpRequest& request, const Gate& gate);

// A random one of 128 bits, in hexadecimal digits.
std::string NewToken();

}  // namespace Kelcam
