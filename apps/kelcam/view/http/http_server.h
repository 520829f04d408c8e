// http_server.h
// Listens for browsers and hands their requests to a handler.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>

#include "view/http/http_exchange.h"

namespace Kelcam {

// One thread serves all connections. What is larger or slower than these limits ends its connection.
struct HttpLimits {
  static constexpr std::size_t kConnections = 128;
  static constexpr std::uint32_t kHeaderBytes = 8U << 10U;
  static constexpr std::uint64_t kBodyBytes = 64U << 10U;
  static constexpr int kRequestSeconds = 10;  // from a request's first byte to its last
  static constexpr int kIdleSeconds = 60;     // from an answer to the next request
  static constexpr int kStallSeconds = 10;    // without a byte that the browser takes
};

class HttpServer {
 public:
  // Takes the port; 0: any that is free. Throws Failure that names it. address: as numbers.
  HttpServer(const std::string& address, std::uint16_t port);
  // All exchanges and streams must be gone.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  std::uint16_t Port() const;
  void Start(HttpHandler handler);
  // Ends all connections. The handler is not called any more, answers are dropped. Without a start it does nothing.
  void Stop();

 private:
  struct Listener;

  std::shared_ptr<Listener> m_listener;
  std::thread m_thread;
};

// The name or address under which this machine can be reached where a listener has all addresses.
std::string HostNameFor(const std::string& address);

}  // namespace Kelcam
