// event_source.cpp
// Tells pages what happens.
#include "view/events/event_source.h"

#include <utility>

#include "messages/driver_messages.h"
#include "picture/image_time.h"
#include "view/events/event_text.h"

namespace Kelcam {
namespace {

constexpr std::chrono::milliseconds kInterval{100};
constexpr std::chrono::seconds kFiguresInterval{1};

std::string KeyOf(const char* event, std::size_t camera) { return event + std::to_string(camera); }

Json ToJson(const std::optional<Rectangle>& area) {
  return area ? Json{area->x, area->y, area->width, area->height} : Json();
}

Json ToJson(const FrameReport& report, std::size_t camera) {
  Json histograms = Json::array();
  Json clipped = Json::array();
  Json means = Json::array();
  for (const Histogram& histogram : report.histograms) {
    histograms.push_back(histogram);
    clipped.push_back({DarkShareOf(histogram), BrightShareOf(histogram)});
    means.push_back(MeanOf(histogram));
  }
  return {{"camera", camera},
          {"frame", report.frame},
          {"time", LocalTimeOf(report.time).Extended()},
          {"width", report.size.width},
          {"height", report.size.height},
          {"channels", report.histograms.size()},
          {"sent_per_s", report.frames_per_s},
          {"sharpness", report.sharpness},
          {"sharpness_area", ToJson(report.sharpness_area)},
          {"histogram", histograms},
          {"clipped", clipped},
          {"mean", means}};
}

}  // namespace

EventSource::EventSource(Pages& pages, const DriverFeed& feed, std::vector<EventCamera> cameras)
    : m_pages(pages),
      m_feed(feed),
      m_cameras(std::move(cameras)),
      m_versions(m_cameras.size()),
      m_identifiers(m_cameras.size()),
      m_thread([this] { Run(); }) {}

EventSource::~EventSource() {
  {
    const BMutexLock lock(m_mutex);
    m_ends = true;
    m_ended.NotifyAll();
  }
  m_thread.join();
}

void EventSource::Run() {
  BMutexLock lock(m_mutex);
  while (!m_ends) {
    {
      const BMutexUnlock unlock(m_mutex, lock);
      Look();
    }
    const Clock::time_point next = Clock::now() + kInterval;
    while (!m_ends && Clock::now() < next) m_ended.WaitUntil(lock, next);
  }
}

void EventSource::Look() {
  const Clock::time_point now = Clock::now();
  for (const EventCamera& camera : m_cameras) {
    camera.desk.Expire(now);
    camera.commands.Expire(now);
  }
  const bool have_changed = HaveCamerasChanged();
  const bool has_figures = now >= m_next_figures;
  if (has_figures) m_next_figures = now + kFiguresInterval;
  const std::vector<Pages::Page> pages = m_pages.All();
  if (pages.empty()) return;
  std::shared_ptr<const std::string> cameras;
  for (const Pages::Page& page : pages) {
    if (have_changed || page.is_new) {
      if (!cameras) cameras = EventText(kCamerasEvent, CamerasText());
      page.stream->Send(kCamerasEvent, cameras);
    }
    SendMessages(page);
  }
  for (std::size_t i = 0; has_figures && i < m_cameras.size(); ++i) {
    const auto figures = EventText(kFiguresEvent, TextOf(ToJson(m_cameras[i].board.Figures(), i)));
    for (const Pages::Page& page : pages) page.stream->Send(KeyOf(kFiguresEvent, i), figures);
  }
}

bool EventSource::HaveCamerasChanged() {
  bool have_changed = false;
  for (std::size_t i = 0; i < m_cameras.size(); ++i) {
    const std::uint64_t version = m_cameras[i].board.Version();
    if (std::exchange(m_versions[i], version) == version) continue;
    have_changed = true;
    m_identifiers[i] = m_cameras[i].board.State().identifier;
  }
  return have_changed;
}

std::string EventSource::CamerasText() const {
  Json cameras = Json::array();
  for (const EventCamera& camera : m_cameras) cameras.push_back(ToJson(camera.board.State()));
  return TextOf(cameras);
}

int EventSource::CameraIn(const std::string& message) const {
  const std::string title = message.substr(0, message.find('\n'));
  for (std::size_t i = 0; i < m_identifiers.size(); ++i) {
    if (!m_identifiers[i].empty() && Contains(title, "(" + m_identifiers[i] + ")")) return static_cast<int>(i);
  }
  return -1;
}

void EventSource::SendMessages(const Pages::Page& page) {
  std::uint64_t sent = page.messages;
  for (const DriverFeed::Entry& entry : m_feed.Since(page.messages)) {
    const int camera = CameraIn(entry.text);
    Json document = {{"camera", camera < 0 ? Json() : Json(camera)},
                     {"time", LocalTimeOf(entry.time).Extended()},
                     {"text", entry.text}};
    if (entry.number <= page.old_before) document["old"] = true;
    page.stream->Send({}, EventText(kMessageEvent, TextOf(document)));
    sent = entry.number;
  }
  m_pages.NoteSent(page, sent);
}

void SendReport(const FrameReport& report, std::size_t camera, PictureDesk& desk, const Pages& pages) {
  Json document = ToJson(report, camera);
  for (const Pages::Page& page : pages.All()) {
    document["shown_per_s"] = desk.PicturesPerSecond(page.name);
    page.stream->Send(KeyOf(kFrameEvent, camera), EventText(kFrameEvent, TextOf(document)));
  }
}

}  // namespace Kelcam
