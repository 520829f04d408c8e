// picture_desk.h
// Hands out one camera's pictures to those who look at it.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>

#include "base/job_queue.h"
#include "bmutex.h"
#include "view/pictures/encoded_picture.h"
#include "view/pictures/frame.h"
#include "view/pictures/frame_report.h"
#include "view/pictures/rate_meter.h"
#include "view/pictures/rectangle.h"

namespace Kelcam {

struct PictureRequest {
  std::string page;                 // for which the frame is held afterwards, and the one before; empty: for none
  std::uint64_t frame = 0;          // newer than this one, or this one
  std::optional<Rectangle> region;  // none: all of it
  int width = 0;                    // at least 1
};

enum class NoPicture {
  kNotInTime,  // no newer frame has come
  kReplaced,   // the page has asked again
  kGone,       // the frame is no longer held
  kOutside,    // the region is not within the frame
  kFailed,     // out of memory
};

// The camera's thread publishes frames and never waits; encoding is the work of a thread of the desk's own, from the
// newest frame. Who takes too long for all of them gets fewer. [any thread]
class PictureDesk {
 public:
  using Clock = std::chrono::steady_clock;
  using Outcome = std::variant<EncodedPicture, NoPicture>;
  // Called once, on any thread; must not wait.
  using Deliver = std::function<void(const Outcome&)>;
  using Report = std::function<void(const FrameReport&, PictureDesk&)>;

  // report: gets what is found out of frames while there are pages, at most five times a second. Called on the desk's
  // thread.
  explicit PictureDesk(Report report);
  // Those who wait get no answer.
  ~PictureDesk();
  PictureDesk(const PictureDesk&) = delete;
  PictureDesk& operator=(const PictureDesk&) = delete;

  // Frames come with growing numbers.
  void Publish(SharedFrame frame);

  // The next picture of a newer frame than the request's. Of each page one request waits; a second takes its place.
  void Await(PictureRequest request, Deliver deliver);
  // A picture of the request's frame, which the page holds or which is the newest.
  void Encode(PictureRequest request, Deliver deliver);
  // That frame; null: it is gone.
  SharedFrame Find(const std::string& page, std::uint64_t number) const;
  // Runs after the pictures that are under way, on the desk's thread.
  void Do(std::function<void()> job) { m_work.Push(std::move(job)); }

  void AddPage(const std::string& page);
  // Forgets what it holds and what it waits for.
  void RemovePage(const std::string& page);
  // How many pictures a second it has got.
  double PicturesPerSecond(const std::string& page);

  // Where sharpness is measured, from the next frame on.
  void SetSharpnessArea(std::optional<Rectangle> area);

  // Answers those who have waited for too long, and reports the last frame where no other has come since. To be called
  // ten times a second.
  void Expire(Clock::time_point now);

 private:
  struct Waiter {
    PictureRequest request;
    Deliver deliver;
    Clock::time_point deadline;
  };
  // A page shows the frame before until it has decoded the one that it holds.
  struct Page {
    SharedFrame held;
    SharedFrame before;
    RateMeter pictures;
  };

  void ServeIfDue() KEL_REQUIRES(m_mutex);
  bool IsDue(const Waiter& waiter) const KEL_REQUIRES(m_mutex);
  void ReportIfDue(Clock::time_point now) KEL_REQUIRES(m_mutex);
  void Hold(const std::string& page, const SharedFrame& frame) KEL_REQUIRES(m_mutex);
  void Serve();
  void MakeReport();
  Outcome Make(const Frame& frame, const PictureRequest& request);

  const Report m_report;
  mutable BMutex m_mutex;
  SharedFrame m_newest KEL_GUARDED_BY(m_mutex);
  RateMeter m_frames KEL_GUARDED_BY(m_mutex);
  std::deque<Waiter> m_waiters KEL_GUARDED_BY(m_mutex);
  std::map<std::string, Page> m_pages KEL_GUARDED_BY(m_mutex);
  std::optional<Rectangle> m_sharpness_area KEL_GUARDED_BY(m_mutex);
  bool m_serves KEL_GUARDED_BY(m_mutex) = false;
  bool m_reports KEL_GUARDED_BY(m_mutex) = false;
  bool m_ends KEL_GUARDED_BY(m_mutex) = false;
  Clock::time_point m_next_report KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_reported KEL_GUARDED_BY(m_mutex) = 0;  // the number of the last frame of a report
  EncodedPictures m_encoded;                             // the desk's thread alone
  JobQueue m_work;                                       // last: it uses all of the above
};

}  // namespace Kelcam
