// routes.cpp
// What a server does with a request, by its path.
#include "view/routes.h"

#include <charconv>
#include <utility>

#include "base/utf8.h"
#include "picture/file_pattern.h"
#include "picture/image_time.h"
#include "picture/picture.h"
#include "view/camera_actions.h"
#include "view/page_files.h"
#include "view/request_values.h"

namespace Kelcam {
namespace {

constexpr const char* kIndex = "index.html";
constexpr std::string_view kPagePath = "/page/";
constexpr std::string_view kCamerasPath = "/api/cameras/";
constexpr const char* kAllCamerasPath = "/api/cameras";
constexpr const char* kEventsPath = "/api/events";

constexpr std::pair<std::string_view, const char*> kTypes[] = {{".html", "text/html; charset=utf-8"},
                                                               {".css", "text/css; charset=utf-8"},
                                                               {".js", "text/javascript; charset=utf-8"},
                                                               {".svg", "image/svg+xml"}};

const char* TypeOf(std::string_view name) {
  for (const auto& [ending, type] : kTypes) {
    if (name.ends_with(ending)) return type;
  }
  return "application/octet-stream";
}

// With a token, every file of the page is asked for with it: "/page/NAME" in a file becomes "/page/NAME?token=HEX".
std::string WithToken(std::string content, const std::string& token) {
  if (token.empty()) return content;
  for (const PageFile& file : PageFiles()) {
    const std::string path = std::string(kPagePath) + std::string(file.name);
    for (std::size_t at = content.find(path); at != std::string::npos; at = content.find(path, at)) {
      at += path.size();
      const std::string query = "?token=" + token;
      content.insert(at, query);
      at += query.size();
    }
  }
  return content;
}

HttpAnswer FileAnswer(const PageFile& file, const std::string& token) {
  const std::string content = WithToken(std::string(file.content), token);
  return {Http::kOk,
          TypeOf(file.name),
          {{"Cache-Control", "no-cache"}},
          std::make_shared<const Bytes>(content.begin(), content.end())};
}

HttpAnswer AnswerOf(const EncodedPicture& picture) {
  const Rectangle& region = picture.region;
  return {Http::kOk,
          picture.type,
          {{"X-Kelcam-Frame", std::to_string(picture.frame)},
           {"X-Kelcam-Width", std::to_string(picture.whole.width)},
           {"X-Kelcam-Height", std::to_string(picture.whole.height)},
           {"X-Kelcam-Region", std::to_string(region.x) + "," + std::to_string(region.y) + "," +
                                   std::to_string(region.width) + "," + std::to_string(region.height)}},
          picture.bytes};
}

HttpAnswer AnswerOf(NoPicture reason) {
  switch (reason) {
    case NoPicture::kNotInTime:
    case NoPicture::kReplaced:
      return {Http::kNoContent, {}, {}, nullptr};
    case NoPicture::kGone:
      return ErrorAnswer(Http::kGone, "this frame is no longer there");
    case NoPicture::kOutside:
      return ErrorAnswer(Http::kBadRequest, "the region is not within the picture");
    default:
      return ErrorAnswer(Http::kInternalError, "the picture could not be made");
  }
}

PictureDesk::Deliver DeliverTo(std::shared_ptr<HttpExchange> exchange) {
  return [exchange = std::move(exchange)](const PictureDesk::Outcome& outcome) {
    exchange->Answer(std::visit([](const auto& one) { return AnswerOf(one); }, outcome));
  };
}

int WidthOf(const HttpRequest& request) {
  const int width = IntOf(request, "width");
  if (width < 1) throw RefusedRequest(Http::kBadRequest, "\"width\" is not a whole number from 1 on");
  return width;
}

void CheckMethod(const HttpRequest& request, const char* method) {
  if (request.method != method) throw WrongMethod(method);
}

// What a file of this frame is called.
std::string FileNameOf(const Frame& frame) {
  std::string camera;
  for (const char c : frame.details.serial) {
    const bool is_plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
    camera += is_plain ? c : '_';
  }
  return camera + (camera.empty() ? "" : "-") + LocalTimeOf(frame.details.time).Basic() + ".png";
}

HttpAnswer SavedAnswer(const Frame& frame) try {
  const auto bytes = std::make_shared<const Bytes>(Encode(frame.pixels, PictureFormat::kPng, frame.details));
  const std::string disposition = "attachment; filename=\"" + FileNameOf(frame) + "\"";
  return {Http::kOk, kPngType, {{"Content-Disposition", disposition}}, bytes};
} catch (const std::exception&) {
  return ErrorAnswer(Http::kInternalError, "the picture could not be made");
}

}  // namespace

Routes::Routes(std::deque<ViewCamera>& cameras, Pages& pages, const DriverFeed& feed, Gate gate)
    : m_cameras(cameras), m_pages(pages), m_feed(feed), m_gate(std::move(gate)) {
  for (const PageFile& file : PageFiles()) {
    m_files.emplace(file.name, FileAnswer(file, m_gate.token));
  }
}

void Routes::Handle(const std::shared_ptr<HttpExchange>& exchange) {
  try {
    if (std::optional<HttpAnswer> refusal = RefusalOf(exchange->Request(), m_gate)) {
      return exchange->Answer(std::move(*refusal));
    }
    Route(exchange);
  } catch (const WrongMethod& wrong) {
    HttpAnswer answer = ErrorAnswer(wrong.Status(), wrong.what());
    answer.fields.emplace_back("Allow", wrong.Allowed());
    exchange->Answer(std::move(answer));
  } catch (const RefusedRequest& refused) {
    exchange->Answer(ErrorAnswer(refused.Status(), refused.what()));
  } catch (const std::exception&) {
    exchange->Answer(ErrorAnswer(Http::kInternalError, "out of memory"));
  }
}

void Routes::Route(const Exchange& exchange) {
  const HttpRequest& request = exchange->Request();
  const std::string& path = request.path;
  if (path.starts_with(kCamerasPath)) return RouteCamera(exchange, path.substr(kCamerasPath.size()));
  const bool is_file = path == "/" || path.starts_with(kPagePath);
  if (!is_file && path != kEventsPath && path != kAllCamerasPath) {
    throw RefusedRequest(Http::kNotFound, "there is nothing of this name");
  }
  CheckMethod(request, Http::kGet);
  if (path == kEventsPath) return OpenEvents(exchange);
  if (is_file) return SendFile(exchange, path == "/" ? kIndex : path.substr(kPagePath.size()));
  Json cameras = Json::array();
  for (ViewCamera& camera : m_cameras) cameras.push_back(ToJson(camera.thread.Board().State()));
  exchange->Answer(JsonAnswer(cameras));
}

void Routes::SendFile(const Exchange& exchange, const std::string& name) const {
  const auto found = m_files.find(name);
  if (found == m_files.end()) throw RefusedRequest(Http::kNotFound, "the page has no file of this name");
  exchange->Answer(found->second);
}

void Routes::OpenEvents(const Exchange& exchange) {
  const std::string name = TextOf(exchange->Request(), "page");
  if (!Pages::IsName(name)) {
    throw RefusedRequest(Http::kBadRequest, "\"page\" is not a word of 8 to 32 letters and digits");
  }
  if (!m_pages.HasRoomFor(name)) {
    throw RefusedRequest(Http::kUnavailable,
                         "there are " + std::to_string(Pages::kMost) + " open pages; close one of them");
  }
  const auto opening = std::make_shared<std::uint64_t>(0);
  const auto stream = exchange->OpenStream([this, name, opening] {
    if (!m_pages.Remove(name, *opening)) return;
    for (ViewCamera& camera : m_cameras) camera.desk.RemovePage(name);
  });
  *opening = m_pages.Add(name, stream, m_feed.Count());
  for (ViewCamera& camera : m_cameras) camera.desk.AddPage(name);
}

void Routes::RouteCamera(const Exchange& exchange, const std::string& rest) {
  using Send = void (Routes::*)(const Exchange&, ViewCamera&);
  static const std::map<std::string, Send> kReading = {{"picture", &Routes::SendPicture},
                                                       {"region", &Routes::SendRegion},
                                                       {"pixel", &Routes::SendPixel},
                                                       {"save", &Routes::SendSaved}};
  std::size_t index = 0;
  const char* const end = rest.data() + rest.size();
  const auto [slash, error] = std::from_chars(rest.data(), end, index);
  const std::string name = slash == end ? std::string() : std::string(slash + 1, end);
  const auto reading = kReading.find(name);
  const bool has_place = error == std::errc() && slash != end && *slash == '/';
  if (!has_place || (reading == kReading.end() && !IsAction(name))) {
    throw RefusedRequest(Http::kNotFound, "there is nothing of this name");
  }
  CheckMethod(exchange->Request(), reading == kReading.end() ? Http::kPost : Http::kGet);
  if (index >= m_cameras.size()) throw RefusedRequest(Http::kNotFound, "there is no camera of this number");
  if (reading == kReading.end()) return RunAction(name, exchange, m_cameras[index]);
  (this->*reading->second)(exchange, m_cameras[index]);
}

std::string Routes::PageOf(const HttpRequest& request) const {
  std::string name = TextOf(request, "page");
  if (!name.empty() && !m_pages.Has(name)) {
    throw RefusedRequest(Http::kConflict, "this page has no open stream of events");
  }
  return name;
}

void Routes::SendPicture(const Exchange& exchange, ViewCamera& camera) {
  const HttpRequest& request = exchange->Request();
  camera.desk.Await({PageOf(request), NumberOf(request, "after"), RegionOf(request), WidthOf(request)},
                    DeliverTo(exchange));
}

void Routes::SendRegion(const Exchange& exchange, ViewCamera& camera) {
  const HttpRequest& request = exchange->Request();
  camera.desk.Encode({PageOf(request), NumberOf(request, "frame"), RegionOf(request), WidthOf(request)},
                     DeliverTo(exchange));
}

SharedFrame Routes::FrameOf(const HttpRequest& request, ViewCamera& camera) const {
  SharedFrame frame = camera.desk.Find(PageOf(request), NumberOf(request, "frame"));
  if (!frame) throw RefusedRequest(Http::kGone, "this frame is no longer there");
  return frame;
}

void Routes::SendPixel(const Exchange& exchange, ViewCamera& camera) {
  const HttpRequest& request = exchange->Request();
  const SharedFrame frame = FrameOf(request, camera);
  const Rectangle pixel{IntOf(request, "x"), IntOf(request, "y"), 1, 1};
  if (!pixel.IsWithin(frame->pixels.size)) {
    throw RefusedRequest(Http::kBadRequest, "the pixel is not within the picture");
  }
  const Pixels values = pixel.Of(frame->pixels);
  exchange->Answer(JsonAnswer(
      {{"x", pixel.x}, {"y", pixel.y}, {"values", Bytes(values.first_row, values.first_row + values.channels)}}));
}

void Routes::SendSaved(const Exchange& exchange, ViewCamera& camera) {
  const SharedFrame frame = FrameOf(exchange->Request(), camera);
  camera.desk.Do([exchange, frame] { exchange->Answer(SavedAnswer(*frame)); });
}

}  // namespace Kelcam
