// event_source.h
// Tells pages what happens.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "bmutex.h"
#include "view/cameras/camera_thread.h"
#include "view/events/driver_feed.h"
#include "view/events/pages.h"
#include "view/pictures/frame_report.h"
#include "view/pictures/picture_desk.h"

namespace Kelcam {

// What there is of one camera.
struct EventCamera {
  CameraBoard& board;
  CommandQueue& commands;
  PictureDesk& desk;
};

// A thread that looks ten times a second what is new, and answers what has waited for too long.
class EventSource {
 public:
  // What is given must outlive the object.
  EventSource(Pages& pages, const DriverFeed& feed, std::vector<EventCamera> cameras);
  ~EventSource();
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;

 private:
  using Clock = std::chrono::steady_clock;

  void Run();
  void Look();
  bool HaveCamerasChanged();
  std::string CamerasText() const;
  void SendMessages(const Pages::Page& page);
  // Which one a message names; -1: none.
  int CameraIn(const std::string& message) const;

  Pages& m_pages;
  const DriverFeed& m_feed;
  const std::vector<EventCamera> m_cameras;
  std::vector<std::uint64_t> m_versions;  // of the cameras' states, as pages have them
  std::vector<std::string> m_identifiers;
  Clock::time_point m_next_figures;

  BMutex m_mutex;
  BCondition m_ended;
  bool m_ends KEL_GUARDED_BY(m_mutex) = false;
  std::thread m_thread;  // last: it uses all of the above
};

// To every page, with what it has got of this camera's pictures.
void SendReport(const FrameReport& report, std::size_t camera, PictureDesk& desk, const Pages& pages);

}  // namespace Kelcam
