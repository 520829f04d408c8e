// http_connection.cpp
// One connection of a browser.
#include "view/http/http_connection.h"

#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/write.hpp>
#include <chrono>
#include <utility>

#include "view/http/http_server.h"

namespace Kelcam {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;

constexpr std::size_t kReadBytes = 4096;
constexpr std::size_t kBufferBytes = HttpLimits::kHeaderBytes;
constexpr std::size_t kMostEventBytes = 4U << 20U;
constexpr std::size_t kEventBytesAtOnce = 64U << 10U;
constexpr unsigned kHttpVersion = 11;

// What every answer has: nothing is kept, read as another type, shown in another page or sent on.
constexpr std::pair<const char*, const char*> kCommonFields[] = {
    {"X-Content-Type-Options", "nosniff"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Content-Security-Policy",
     "default-src 'self'; img-src 'self' blob:; frame-ancestors 'none'; base-uri 'none'; form-action 'none'"},
};

constexpr const char* kStreamHead =
    "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nCache-Control: no-store\r\nConnection: close\r\n"
    "X-Content-Type-Options: nosniff\r\nReferrer-Policy: no-referrer\r\nCross-Origin-Resource-Policy: same-origin\r\n"
    "\r\n";

std::string FieldOf(const http::request<http::string_body>& message, const char* name) {
  const auto value = message[name];
  return {value.data(), value.size()};
}

}  // namespace

HttpConnection::HttpConnection(asio::ip::tcp::socket socket, const HttpHandler& handler,
                               std::atomic<std::size_t>& count)
    : m_stream(std::move(socket)), m_handler(handler), m_count(count), m_buffer(kBufferBytes) {
  ++m_count;
}

HttpConnection::~HttpConnection() { --m_count; }

void HttpConnection::ReadNext() {
  if (m_buffer.size() > 0) return ReadRequest();
  m_stream.expires_after(std::chrono::seconds(HttpLimits::kIdleSeconds));
  m_stream.async_read_some(m_buffer.prepare(kReadBytes),
                           [self = shared_from_this()](const Error& error, std::size_t bytes) {
                             if (error) return;
                             self->m_buffer.commit(bytes);
                             self->ReadRequest();
                           });
}

void HttpConnection::ReadRequest() {
  m_parser.emplace();
  m_parser->header_limit(HttpLimits::kHeaderBytes);
  m_parser->body_limit(HttpLimits::kBodyBytes);
  m_stream.expires_after(std::chrono::seconds(HttpLimits::kRequestSeconds));
  http::async_read(m_stream, m_buffer, *m_parser, [self = shared_from_this()](const Error& error, std::size_t bytes) {
    self->OnRequest(error, bytes);
  });
}

void HttpConnection::OnRequest(const Error& error, std::size_t bytes) {
  if (error == http::error::header_limit || error == http::error::buffer_overflow) {
    return Refuse(Http::kHeaderTooLarge, "the header of the request is too long");
  }
  if (error == http::error::body_limit) return Refuse(Http::kTooLarge, "the body of the request is too long");
  if (error == http::error::end_of_stream || error == http::error::partial_message) return;
  if (error && error.category() == make_error_code(http::error::bad_target).category()) {
    return Refuse(Http::kBadRequest, "this is no request of HTTP/1.1");
  }
  if (error) return;
  // The parser's own limit holds for a header that comes in pieces.
  if (bytes - m_parser->get().body().size() > HttpLimits::kHeaderBytes) {
    return Refuse(Http::kHeaderTooLarge, "the header of the request is too long");
  }
  TakeRequest();
  m_handler(shared_from_this());
}

void HttpConnection::TakeRequest() {
  const auto& message = m_parser->get();
  m_keep_alive = message.keep_alive();
  m_request = HttpRequest();
  m_request.method = std::string(message.method_string());
  TakeTarget(std::string(message.target()), m_request);
  m_request.body = message.body();
  m_request.host = FieldOf(message, "Host");
  m_request.origin = FieldOf(message, "Origin");
  m_request.content_type = FieldOf(message, "Content-Type");
  m_request.fetch_site = FieldOf(message, "Sec-Fetch-Site");
  m_request.kelcam_mark = FieldOf(message, "X-Kelcam");
}

void HttpConnection::Refuse(int status, const std::string& sentence) {
  // Where the next request begins is not known.
  m_keep_alive = false;
  Write(ErrorAnswer(status, sentence));
}

void HttpConnection::Answer(HttpAnswer answer) {
  asio::post(m_stream.get_executor(),
             [self = shared_from_this(), answer = std::move(answer)]() mutable { self->Write(std::move(answer)); });
}

void HttpConnection::Write(HttpAnswer answer) {
  m_answer = std::move(answer);
  m_message = Message();
  m_message.version(kHttpVersion);
  m_message.result(static_cast<unsigned>(m_answer.status));
  for (const auto& [name, value] : kCommonFields) m_message.set(name, value);
  m_message.set(http::field::cache_control, "no-store");
  if (!m_answer.type.empty()) m_message.set(http::field::content_type, m_answer.type);
  for (const auto& [name, value] : m_answer.fields) m_message.set(name, value);
  if (m_answer.body) m_message.body() = {m_answer.body->data(), m_answer.body->size()};
  m_message.keep_alive(m_keep_alive);
  m_message.prepare_payload();
  m_serializer.emplace(m_message);
  WriteOn();
}

// Piece by piece: the time is that of one, so that a slow line may take a large picture.
void HttpConnection::WriteOn() {
  m_stream.expires_after(std::chrono::seconds(HttpLimits::kStallSeconds));
  http::async_write_some(m_stream, *m_serializer, [self = shared_from_this()](const Error& error, std::size_t) {
    if (error) return;
    if (!self->m_serializer->is_done()) return self->WriteOn();
    self->m_serializer.reset();
    self->m_answer = HttpAnswer();
    if (self->m_keep_alive) return self->ReadNext();
    Error ignored;
    self->m_stream.socket().shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
  });
}

std::shared_ptr<EventStream> HttpConnection::OpenStream(std::function<void()> on_closed) {
  m_on_closed = std::move(on_closed);
  Add({{}, std::make_shared<const std::string>(kStreamHead)});
  WaitForEndOfStream();
  WriteEvents();
  return shared_from_this();
}

// A browser sends nothing more, so whatever comes is the end. Without a limit of time: nothing has to come.
void HttpConnection::WaitForEndOfStream() {
  m_stream.expires_never();
  m_stream.async_read_some(m_buffer.prepare(1),
                           [self = shared_from_this()](const Error&, std::size_t) { self->Drop(); });
}

void HttpConnection::Send(const std::string& key, std::shared_ptr<const std::string> text) {
  asio::post(m_stream.get_executor(), [self = shared_from_this(), key, text = std::move(text)]() mutable {
    self->Add({key, std::move(text)});
    self->WriteEvents();
  });
}

void HttpConnection::Add(Event event) {
  if (m_is_dropped) return;
  m_event_bytes += event.text->size();
  for (Event& waiting : m_events) {
    if (event.key.empty() || waiting.key != event.key) continue;
    m_event_bytes -= waiting.text->size();
    waiting = std::move(event);
    return;
  }
  m_events.push_back(std::move(event));
  for (auto it = m_events.begin(); m_event_bytes > kMostEventBytes && it != m_events.end();) {
    if (!it->key.empty()) {
      ++it;
      continue;
    }
    m_event_bytes -= it->text->size();
    it = m_events.erase(it);
  }
}

void HttpConnection::WriteEvents() {
  if (m_is_dropped || !m_outgoing.empty()) return;
  while (!m_events.empty() && m_outgoing.size() < kEventBytesAtOnce) {
    m_outgoing += *m_events.front().text;
    m_event_bytes -= m_events.front().text->size();
    m_events.pop_front();
  }
  if (m_outgoing.empty()) return;
  m_stream.expires_after(std::chrono::seconds(HttpLimits::kStallSeconds));
  asio::async_write(m_stream, asio::buffer(m_outgoing), [self = shared_from_this()](const Error& error, std::size_t) {
    if (error) return self->Drop();
    self->m_outgoing.clear();
    self->WriteEvents();
  });
}

void HttpConnection::Close() {
  asio::post(m_stream.get_executor(), [self = shared_from_this()] { self->Drop(); });
}

void HttpConnection::Drop() {
  if (std::exchange(m_is_dropped, true)) return;
  m_events.clear();
  m_stream.close();
  // What it holds may hold this object.
  const std::function<void()> on_closed = std::exchange(m_on_closed, nullptr);
  if (on_closed) on_closed();
}

}  // namespace Kelcam
