// command_view.cpp
// kelcam view: cameras in the browser.
#include <iostream>
#include <optional>
#include <thread>
#include <utility>

#include "base/interrupt.h"
#include "base/report.h"
#include "commands/commands.h"
#include "device/bandwidth_link.h"
#include "device/distinct_cameras.h"
#include "profile_text/profile_check.h"
#include "view/events/driver_feed.h"
#include "view/events/event_source.h"
#include "view/events/pages.h"
#include "view/http/http_server.h"
#include "view/routes.h"
#include "view/view_camera.h"

namespace Kelcam {
namespace {

// How long the end may wait: the signal of an interrupt cannot wake a thread up.
constexpr std::chrono::milliseconds kPollInterval{50};
constexpr const char* kLocalAddress = "127.0.0.1";

std::vector<EventCamera> EventCamerasOf(std::deque<ViewCamera>& cameras) {
  std::vector<EventCamera> all;
  all.reserve(cameras.size());
  for (ViewCamera& camera : cameras) {
    all.push_back({camera.thread.Board(), camera.thread.Commands(), camera.desk});
  }
  return all;
}

void PrintAddress(const Options& options, const std::string& address, const Gate& gate) {
  const std::string url = "http://" + HostNameFor(address) + ":" + std::to_string(gate.port) + "/" +
                          (gate.token.empty() ? "" : "?token=" + gate.token);
  if (options.json) {
    PrintLine({{"event", "listening"}, {"url", url}, {"port", gate.port}});
  } else {
    std::cout << url + "\n" << std::flush;
  }
}

// The handler runs for as long as this lives.
class Serving {
 public:
  Serving(HttpServer& server, HttpHandler handler) : m_server(server) { m_server.Start(std::move(handler)); }
  ~Serving() { m_server.Stop(); }
  Serving(const Serving&) = delete;
  Serving& operator=(const Serving&) = delete;

 private:
  HttpServer& m_server;
};

void OpenCameras(std::deque<ViewCamera>& cameras, const Options& options) {
  for (std::size_t i = 0; i < cameras.size(); ++i) {
    if (Interrupted()) return;
    if (!options.cameras[i].profile_file.empty()) PrintUnusedKeys(options.cameras[i].profile_file);
    cameras[i].thread.Open();
  }
  for (ViewCamera& camera : cameras) camera.thread.Start();
}

}  // namespace

ExitCode RunView(const Options& options, const Module& module, MessageLog& log) {
  const std::string address = options.listen.value_or(kLocalAddress);
  HttpServer server(address, options.port);
  const Gate gate{server.Port(), options.listen ? NewToken() : std::string()};
  if (options.cameras.size() > 1) CheckDistinct(options.cameras, module);
  const DriverFeed feed(log);
  Pages pages;
  std::optional<BandwidthLink> link;
  if (options.link) link.emplace(std::vector<const CameraSession*>());
  std::deque<ViewCamera> cameras;
  for (std::size_t i = 0; i < options.cameras.size(); ++i) {
    const auto send = [&pages, i](const FrameReport& report, PictureDesk& desk) { SendReport(report, i, desk, pages); };
    cameras.emplace_back(i, options, options.cameras[i], module, log, link ? &*link : nullptr, send);
  }
  Routes routes(cameras, pages, feed, gate);
  std::optional<EventSource> events(std::in_place, pages, feed, EventCamerasOf(cameras));
  std::optional<Serving> serving(std::in_place, server,
                                 [&routes](const std::shared_ptr<HttpExchange>& exchange) { routes.Handle(exchange); });
  PrintAddress(options, address, gate);
  OpenCameras(cameras, options);
  while (!Interrupted()) std::this_thread::sleep_for(kPollInterval);
  serving.reset();
  events.reset();
  for (ViewCamera& camera : cameras) camera.thread.AskToEnd();
  while (!cameras.empty()) cameras.pop_back();
  return kDone;
}

}  // namespace Kelcam
