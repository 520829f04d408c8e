// http_server.cpp
// Listens for browsers and hands their requests to a handler.
#include "view/http/http_server.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/host_name.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <utility>

#include "base/failure.h"
#include "base/platform.h"
#include "view/http/http_connection.h"

namespace Kelcam {

namespace asio = boost::asio;
using boost::system::error_code;

struct HttpServer::Listener {
  asio::io_context context{1};
  asio::ip::tcp::acceptor acceptor{context};
  asio::steady_timer pause{context};
  HttpHandler handler;
  std::atomic<std::size_t> connections = 0;

  void Open(const std::string& address, std::uint16_t port);
  void Accept();
};

namespace {

constexpr std::chrono::milliseconds kPauseAfterFailure{100};

[[noreturn]] void FailToListen(const std::string& address, std::uint16_t port, const error_code& error) {
  const std::string place = address + ", port " + std::to_string(port);
  Fault fault{Fault::kNoCode, "nobody can be served at " + place + ": " + error.message()};
  if (error == asio::error::address_in_use) {
    fault.text = "port " + std::to_string(port) + " of " + address + " is taken";
    fault.reason.why = "another program listens there, perhaps a second kelcam view";
    fault.reason.to_do = "end that program, or take another port: --port N, or --port 0 for any that is free";
  } else if (error == asio::error::access_denied) {
    fault.reason.to_do = "take a port from 1024 on: --port N, or --port 0 for any that is free";
  } else {
    fault.reason.to_do = "give --listen an address of this machine, as numbers";
  }
  throw Failure(fault);
}

}  // namespace

void HttpServer::Listener::Open(const std::string& address, std::uint16_t port) {
  error_code error;
  const auto number = asio::ip::make_address(address, error);
  if (error) FailToListen(address, port, error);
  const asio::ip::tcp::endpoint endpoint(number, port);
  std::ignore = acceptor.open(endpoint.protocol(), error);
  if (!error && kAddressesNeedReuse) {
    std::ignore = acceptor.set_option(asio::socket_base::reuse_address(true), error);
  }
  if (!error) std::ignore = acceptor.bind(endpoint, error);
  if (!error) std::ignore = acceptor.listen(asio::socket_base::max_listen_connections, error);
  if (error) FailToListen(address, port, error);
}

// One connection more than there may be is closed at once. Where the system has no place for one, trying again at once
// would do nothing else.
void HttpServer::Listener::Accept() {
  acceptor.async_accept([this](const error_code& error, asio::ip::tcp::socket socket) {
    if (error == asio::error::operation_aborted) return;
    if (!error && connections < HttpLimits::kConnections) {
      error_code ignored;
      std::ignore = socket.set_option(asio::ip::tcp::no_delay(true), ignored);
      std::make_shared<HttpConnection>(std::move(socket), handler, connections)->ReadNext();
    }
    if (!error) return Accept();
    pause.expires_after(kPauseAfterFailure);
    pause.async_wait([this](const error_code& ended) {
      if (!ended) Accept();
    });
  });
}

HttpServer::HttpServer(const std::string& address, std::uint16_t port) : m_listener(std::make_shared<Listener>()) {
  m_listener->Open(address, port);
}

HttpServer::~HttpServer() { Stop(); }

std::uint16_t HttpServer::Port() const { return m_listener->acceptor.local_endpoint().port(); }

void HttpServer::Start(HttpHandler handler) {
  m_listener->handler = std::move(handler);
  m_listener->Accept();
  m_thread = std::thread([this] { m_listener->context.run(); });
}

void HttpServer::Stop() {
  m_listener->context.stop();
  if (m_thread.joinable()) m_thread.join();
}

std::string HostNameFor(const std::string& address) {
  error_code error;
  const auto number = asio::ip::make_address(address, error);
  if (error || !number.is_unspecified()) return number.is_v6() ? "[" + address + "]" : address;
  const std::string name = asio::ip::host_name(error);
  return error ? address : name;
}

}  // namespace Kelcam
