// picture_desk.cpp
// Hands out one camera's pictures to those who look at it.
#include "view/pictures/picture_desk.h"

#include <algorithm>
#include <limits>
#include <new>
#include <set>
#include <utility>
#include <vector>

namespace Kelcam {
namespace {

constexpr std::chrono::seconds kLongestWait{5};
constexpr std::chrono::milliseconds kReportInterval{200};
// What all pages hold together; of more, the oldest goes.
constexpr std::size_t kMostHeldFrames = 12;

// Jobs are few: one that serves, one that reports, and what a connection each asks for.
constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

}  // namespace

PictureDesk::PictureDesk(Report report) : m_report(std::move(report)), m_work(kAnyNumber) {}

PictureDesk::~PictureDesk() {
  const BMutexLock lock(m_mutex);
  m_ends = true;
  m_waiters.clear();
}

void PictureDesk::Publish(SharedFrame frame) {
  const Clock::time_point now = Clock::now();
  // Its memory goes back without the lock.
  SharedFrame before;
  const BMutexLock lock(m_mutex);
  before = std::exchange(m_newest, std::move(frame));
  m_frames.Add(now);
  ServeIfDue();
  ReportIfDue(now);
}

// A page that knows another number has it from an earlier frame, or from a program that ran before this one.
bool PictureDesk::IsDue(const Waiter& waiter) const { return m_newest && m_newest->number != waiter.request.frame; }

void PictureDesk::ServeIfDue() {
  const auto is_due = [this](const Waiter& waiter) KEL_REQUIRES(m_mutex) { return IsDue(waiter); };
  if (m_serves || std::none_of(m_waiters.begin(), m_waiters.end(), is_due)) return;
  m_serves = true;
  m_work.Push([this] { Serve(); });
}

void PictureDesk::ReportIfDue(Clock::time_point now) {
  const bool is_idle = m_reports || m_pages.empty() || !m_newest;
  if (is_idle || m_newest->number == m_reported || now < m_next_report) return;
  m_reports = true;
  m_next_report = now + kReportInterval;
  m_work.Push([this] { MakeReport(); });
}

void PictureDesk::Await(PictureRequest request, Deliver deliver) {
  Deliver replaced;
  {
    const BMutexLock lock(m_mutex);
    const auto same = std::find_if(m_waiters.begin(), m_waiters.end(), [&](const Waiter& waiter) {
      return !request.page.empty() && waiter.request.page == request.page;
    });
    if (same != m_waiters.end()) {
      replaced = std::move(same->deliver);
      m_waiters.erase(same);
    }
    m_waiters.push_back({std::move(request), std::move(deliver), Clock::now() + kLongestWait});
    ServeIfDue();
  }
  if (replaced) replaced(NoPicture::kReplaced);
}

void PictureDesk::Serve() {
  for (;;) {
    Waiter waiter;
    SharedFrame frame;
    {
      const BMutexLock lock(m_mutex);
      const auto is_due = [this](const Waiter& one) KEL_REQUIRES(m_mutex) { return IsDue(one); };
      const auto due = std::find_if(m_waiters.begin(), m_waiters.end(), is_due);
      m_serves = due != m_waiters.end() && !m_ends;
      if (!m_serves) return;
      waiter = std::move(*due);
      m_waiters.erase(due);
      frame = m_newest;
      Hold(waiter.request.page, frame);
    }
    waiter.deliver(Make(*frame, waiter.request));
  }
}

void PictureDesk::Hold(const std::string& page, const SharedFrame& frame) {
  const auto found = m_pages.find(page);
  if (found == m_pages.end()) return;
  Page& own = found->second;
  if (own.held != frame) own.before = std::exchange(own.held, frame);
  own.pictures.Add(Clock::now());
  std::set<std::uint64_t> numbers;
  for (const auto& [name, other] : m_pages) {
    for (const SharedFrame& one : {other.held, other.before}) {
      if (one) numbers.insert(one->number);
    }
  }
  if (numbers.size() <= kMostHeldFrames) return;
  for (auto& [name, other] : m_pages) {
    for (SharedFrame* const one : {&other.held, &other.before}) {
      if (*one && (*one)->number == *numbers.begin()) one->reset();
    }
  }
}

PictureDesk::Outcome PictureDesk::Make(const Frame& frame, const PictureRequest& request) {
  const Rectangle region = request.region.value_or(Rectangle::All(frame.pixels.size));
  if (!region.IsWithin(frame.pixels.size)) return NoPicture::kOutside;
  try {
    return m_encoded.Get(frame, region, request.width);
  } catch (const std::exception&) {
    return NoPicture::kFailed;
  }
}

void PictureDesk::Encode(PictureRequest request, Deliver deliver) {
  const SharedFrame frame = Find(request.page, request.frame);
  if (!frame) return deliver(NoPicture::kGone);
  m_work.Push(
      [this, frame, request = std::move(request), deliver = std::move(deliver)] { deliver(Make(*frame, request)); });
}

SharedFrame PictureDesk::Find(const std::string& page, std::uint64_t number) const {
  const BMutexLock lock(m_mutex);
  if (m_newest && m_newest->number == number) return m_newest;
  const auto found = m_pages.find(page);
  if (found == m_pages.end()) return nullptr;
  for (const SharedFrame& one : {found->second.held, found->second.before}) {
    if (one && one->number == number) return one;
  }
  return nullptr;
}

void PictureDesk::AddPage(const std::string& page) {
  const BMutexLock lock(m_mutex);
  m_pages.try_emplace(page);
  // Of a camera that is stopped no other frame comes.
  m_reported = 0;
  ReportIfDue(Clock::now());
}

void PictureDesk::RemovePage(const std::string& page) {
  const BMutexLock lock(m_mutex);
  m_pages.erase(page);
  std::erase_if(m_waiters, [&](const Waiter& waiter) { return waiter.request.page == page; });
}

double PictureDesk::PicturesPerSecond(const std::string& page) {
  const BMutexLock lock(m_mutex);
  const auto found = m_pages.find(page);
  return found == m_pages.end() ? 0.0 : found->second.pictures.PerSecond(Clock::now());
}

void PictureDesk::SetSharpnessArea(std::optional<Rectangle> area) {
  const BMutexLock lock(m_mutex);
  m_sharpness_area = area;
  m_reported = 0;
  ReportIfDue(Clock::now());
}

void PictureDesk::MakeReport() {
  FrameReport report;
  SharedFrame frame;
  {
    const BMutexLock lock(m_mutex);
    m_reports = false;
    if (m_ends || m_pages.empty()) return;
    frame = m_newest;
    m_reported = frame->number;
    report.sharpness_area = m_sharpness_area;
    report.frames_per_s = m_frames.PerSecond(Clock::now());
  }
  const Pixels& pixels = frame->pixels;
  // The frame may have become smaller.
  if (report.sharpness_area && !report.sharpness_area->IsWithin(pixels.size)) report.sharpness_area.reset();
  report.frame = frame->number;
  report.time = frame->details.time;
  report.size = pixels.size;
  report.histograms = HistogramsOf(pixels);
  report.sharpness = SharpnessOf(report.sharpness_area ? report.sharpness_area->Of(pixels) : pixels);
  m_report(report, *this);
}

void PictureDesk::Expire(Clock::time_point now) {
  std::vector<Deliver> late;
  {
    const BMutexLock lock(m_mutex);
    for (Waiter& waiter : m_waiters) {
      if (waiter.deadline <= now) late.push_back(std::move(waiter.deliver));
    }
    std::erase_if(m_waiters, [&](const Waiter& waiter) { return waiter.deadline <= now; });
    ReportIfDue(now);
  }
  for (const Deliver& deliver : late) deliver(NoPicture::kNotInTime);
}

}  // namespace Kelcam
