// routes.h
// What a server does with a request, by its path.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>

#include "view/events/driver_feed.h"
#include "view/events/pages.h"
#include "view/http/http_exchange.h"
#include "view/http/request_checks.h"
#include "view/view_camera.h"

namespace Kelcam {

// [the server's thread]
class Routes {
 public:
  // What is given must outlive the object.
  Routes(std::deque<ViewCamera>& cameras, Pages& pages, const DriverFeed& feed, Gate gate);

  void Handle(const std::shared_ptr<HttpExchange>& exchange);

 private:
  using Exchange = std::shared_ptr<HttpExchange>;

  void Route(const Exchange& exchange);
  void SendFile(const Exchange& exchange, const std::string& name) const;
  void OpenEvents(const Exchange& exchange);
  void RouteCamera(const Exchange& exchange, const std::string& rest);
  // The page that a request names, empty for none. Throws RefusedRequest.
  std::string PageOf(const HttpRequest& request) const;

  void SendPicture(const Exchange& exchange, ViewCamera& camera);
  void SendRegion(const Exchange& exchange, ViewCamera& camera);
  void SendPixel(const Exchange& exchange, ViewCamera& camera);
  void SendSaved(const Exchange& exchange, ViewCamera& camera);
  SharedFrame FrameOf(const HttpRequest& request, ViewCamera& camera) const;

  std::deque<ViewCamera>& m_cameras;
  Pages& m_pages;
  const DriverFeed& m_feed;
  const Gate m_gate;
  std::map<std::string, HttpAnswer> m_files;
};

}  // namespace Kelcam
