// http_connection.h
// One connection of a browser.
#pragma once

#include <atomic>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/serializer.hpp>
#include <boost/beast/http/span_body.hpp>
#include <boost/beast/http/string_body.hpp>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "view/http/http_exchange.h"

namespace Kelcam {

// Reads a request, waits for its answer, writes it, and so on until the browser or a limit ends it. It lives as long as
// something is under way or somebody has its exchange. Everything that is not tagged runs on the server's thread.
class HttpConnection final : public HttpExchange,
                             public EventStream,
                             public std::enable_shared_from_this<HttpConnection> {
 public:
  // count: of the connections that live. The handler must outlive the object.
  HttpConnection(boost::asio::ip::tcp::socket socket, const HttpHandler& handler, std::atomic<std::size_t>& count);
  ~HttpConnection() override;
  HttpConnection(const HttpConnection&) = delete;
  HttpConnection& operator=(const HttpConnection&) = delete;

  void ReadNext();

  const HttpRequest& Request() const override { return m_request; }
  void Answer(HttpAnswer answer) override;  // [any thread]
  std::shared_ptr<EventStream> OpenStream(std::function<void()> on_closed) override;

  void Send(const std::string& key, std::shared_ptr<const std::string> text) override;  // [any thread]
  void Close() override;                                                                // [any thread]

 private:
  using Error = boost::system::error_code;
  using Body = boost::beast::http::span_body<const std::uint8_t>;
  using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;
  using Message = boost::beast::http::response<Body>;
  using Serializer = boost::beast::http::response_serializer<Body>;

  struct Event {
    std::string key;
    std::shared_ptr<const std::string> text;
  };

  void ReadRequest();
  void OnRequest(const Error& error, std::size_t bytes);
  void TakeRequest();
  void Refuse(int status, const std::string& sentence);
  void Write(HttpAnswer answer);
  void WriteOn();
  void WaitForEndOfStream();
  void Add(Event event);
  void WriteEvents();
  void Drop();

  boost::beast::tcp_stream m_stream;
  const HttpHandler& m_handler;
  std::atomic<std::size_t>& m_count;
  boost::beast::flat_buffer m_buffer;
  std::optional<Parser> m_parser;
  HttpRequest m_request;
  bool m_keep_alive = false;

  HttpAnswer m_answer;
  Message m_message;
  std::optional<Serializer> m_serializer;

  std::function<void()> m_on_closed;
  std::deque<Event> m_events;  // not written yet
  std::size_t m_event_bytes = 0;
  std::string m_outgoing;  // being written; empty: nothing is
  bool m_is_dropped = false;
};

}  // namespace Kelcam
