// http_exchange.h
// What a handler of requests does with one of them.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "view/http/http_message.h"

namespace Kelcam {

// Server-sent events to one browser. [any thread]
class EventStream {
 public:
  virtual ~EventStream() = default;

  // text: the event as it travels, with its empty line. An event with a key takes the place of one with the same key
  // that has not left yet; where too much waits, the oldest without a key is dropped.
  virtual void Send(const std::string& key, std::shared_ptr<const std::string> text) = 0;
  virtual void Close() = 0;
};

// A request, and where its answer goes: one call of Answer or OpenStream. If there is none before the object goes, the
// connection is closed. Neither waits for the browser.
class HttpExchange {
 public:
  virtual ~HttpExchange() = default;

  // [the server's thread, until it is answered]
  virtual const HttpRequest& Request() const = 0;
  // [any thread]
  virtual void Answer(HttpAnswer answer) = 0;
  // on_closed: called once, on the server's thread, when the browser has gone or does not read. [the server's thread]
  virtual std::shared_ptr<EventStream> OpenStream(std::function<void()> on_closed) = 0;
};

// Called on the server's thread for each request. Must not wait.
using HttpHandler = std::function<void(const std::shared_ptr<HttpExchange>&)>;

}  // namespace Kelcam
