// camera_thread.cpp
// The thread that owns one camera.
#include "view/cameras/camera_thread.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "picture/picture.h"

namespace Kelcam {
namespace {

// The longest time for which commands and the end of the program have to wait.
constexpr std::chrono::milliseconds kLongestSnap{400};
constexpr std::chrono::seconds kFigureInterval{1};
// Between two looks whether a camera is there that sends nothing.
constexpr std::chrono::milliseconds kLongestPause{500};
// So many failures are no longer single ones.
constexpr int kFailuresOfAProblem = 3;

std::shared_ptr<CameraSource> SharedSourceOf(const Module& module, MessageLog& log, const CameraChoice& choice) {
  return std::make_shared<CameraSource>(SourceOf(module, log, choice));
}

}  // namespace

CameraThread::CameraThread(std::size_t index, const Options& options, const CameraChoice& choice, const Module& module,
                           MessageLog& log, BandwidthLink* link, PictureDesk& desk)
    : m_wishes(options),
      m_log(log),
      m_link(link),
      m_desk(desk),
      m_source(SharedSourceOf(module, log, choice)),
      m_board(index, choice.Name()) {}

CameraThread::~CameraThread() {
  AskToEnd();
  if (m_thread.joinable()) m_thread.join();
}

void CameraThread::Open() {
  try {
    m_camera = Opened(CameraSession::Inquiry::kEverywhere);
  } catch (const UsageError&) {
    throw;
  } catch (...) {
    const Fault fault = FaultOfCurrentException();
    std::cerr << fault.Sentence() + "\n" + fault.reason.Text();
    ShowCondition(Condition::kLost, fault);
  }
}

void CameraThread::Start() {
  m_thread = std::thread([this] { Run(); });
}

void CameraThread::AskToEnd() {
  m_ends = true;
  m_commands.End();
}

std::unique_ptr<ViewedCamera> CameraThread::Opened(CameraSession::Inquiry inquiry) {
  const bool is_first = inquiry == CameraSession::Inquiry::kEverywhere;
  return std::make_unique<ViewedCamera>(std::make_unique<CameraSession>(m_source, inquiry), m_wishes, m_log, m_link,
                                        is_first ? SettingNotices::kPrinted : SettingNotices::kSilent);
}

void CameraThread::Run() {
  while (!m_ends) {
    if (!m_camera && !AwaitReturn()) break;
    RunUntilLost();
    m_camera.reset();
  }
  m_camera.reset();
}

bool CameraThread::AwaitReturn() {
  const auto is_over = [this] {
    m_commands.RefuseAll();
    return m_ends.load();
  };
  const auto open = [this]() -> std::unique_ptr<ViewedCamera> {
    return IsThere(*m_source) ? Opened(CameraSession::Inquiry::kDriverOnly) : nullptr;
  };
  int tries = 0;
  do {
    if (is_over()) return false;
    ++tries;
    try {
      m_camera = open();
    } catch (...) {
      ShowCondition(Condition::kLost, FaultOfCurrentException());
    }
  } while (!m_camera && m_pauses.Wait(is_over));
  if (!m_camera) return false;
  const CameraState before = m_board.State();
  const std::string& identifier = m_camera->Session().Identifier();
  Report({.camera = before.identifier.empty() ? identifier : before.identifier,
          .time = std::chrono::system_clock::now(),
          .loss = {},
          .away = std::chrono::system_clock::now() - before.since,
          .tries = tries,
          .returned_as = before.identifier.empty() || identifier == before.identifier ? std::string() : identifier});
  return true;
}

void CameraThread::Report(const CameraEvent& event) {
  m_log.Note(event.Line());
  std::cerr << "notice: " + event.Line() + "\n" << std::flush;
  if (m_wishes.options.json) PrintLine(ToJson(event));
}

void CameraThread::RunUntilLost() {
  LostCamera lost(m_wishes.options.lost_after);
  m_failures_in_a_row = 0;
  m_is_awaited = false;
  ShowState();
  ShowCondition(m_wishes.runs ? Condition::kRunning : Condition::kStopped, std::nullopt);
  while (!m_ends) {
    DoCommands();
    NoteFiguresIfDue();
    std::optional<Fault> fault;
    if (KeepRunning()) fault = TakeFrame();
    if (IsLostAfter(fault, lost)) return;
  }
}

void CameraThread::DoCommands() {
  if (!m_commands.DoAll(*m_camera)) return;
  ShowState();
}

bool CameraThread::KeepRunning() {
  if (!m_wishes.runs) {
    m_camera->EndRun();
    m_is_awaited = false;
    m_commands.Await(Clock::now() + kLongestPause);
    return false;
  }
  if (m_camera->Runs()) return true;
  m_is_awaited = false;
  const std::optional<Fault> fault = m_camera->StartRun();
  if (!fault) return true;
  CountFailure(*fault);
  ShowCondition(Condition::kRunning, fault);
  m_commands.Await(Clock::now() + kLongestPause);
  return false;
}

// A long wait is taken in pieces, between which commands are done. It is a failure when all of the time has passed.
std::optional<Fault> CameraThread::TakeFrame() {
  if (!m_is_awaited) m_awaited_since = Clock::now();
  const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_awaited_since);
  const std::chrono::milliseconds left = std::max(m_wishes.options.timeout - waited, std::chrono::milliseconds(0));
  const BSmartRef<BBaseAoi> area = m_areas.Take(m_camera->Kind());
  std::optional<Fault> fault = m_camera->Snap(*area, std::min(left, kLongestSnap), m_is_awaited);
  m_is_awaited = fault && fault->code == BError::eTimeout && left > kLongestSnap;
  if (!fault) {
    std::ignore = Publish(area);
    m_pauses.Reset();
    if (std::exchange(m_failures_in_a_row, 0) >= kFailuresOfAProblem) ShowCondition(Condition::kRunning, std::nullopt);
  } else if (!m_is_awaited) {
    CountFailure(*fault);
    if (++m_failures_in_a_row == kFailuresOfAProblem) ShowCondition(Condition::kRunning, fault);
  }
  return fault;
}

std::uint64_t CameraThread::Publish(const BSmartRef<BBaseAoi>& area) {
  const Clock::time_point now = Clock::now();
  Frame frame{++m_frames, m_camera->Details(), area, PixelsOf(*area)};
  frame.details.time = std::chrono::system_clock::now();
  m_desk.Publish(m_areas.Share(std::move(frame)));
  m_rate.Add(now);
  m_board.ChangeFigures([&](CameraFigures& figures) { figures.frames = m_frames; });
  return m_frames;
}

std::uint64_t CameraThread::TakeShot() {
  if (m_wishes.runs) throw Failure("the camera runs; stop it for a single image");
  m_camera->EndRun();
  const BSmartRef<BBaseAoi> area = m_areas.Take(m_camera->Kind());
  const std::optional<Fault> fault = m_camera->TakeShot(*area);
  if (!fault) return Publish(area);
  CountFailure(*fault);
  throw Failure(*fault);
}

void CameraThread::CountFailure(const Fault& fault) {
  m_board.ChangeFigures([&](CameraFigures& figures) { ++figures.failures[fault.code]; });
}

bool CameraThread::IsLostAfter(const std::optional<Fault>& fault, LostCamera& lost) {
  const bool is_gone = (fault || !m_camera->Runs()) && m_camera->Session().LooksGone();
  if (!lost.IsLostAfter(is_gone)) return false;
  Fault loss = lost.AsFault();
  if (fault) loss.reason = fault->reason;
  ShowCondition(Condition::kLost, loss);
  Report({.camera = m_camera->Session().Identifier(), .time = std::chrono::system_clock::now(), .loss = loss});
  return true;
}

void CameraThread::NoteFiguresIfDue() {
  const Clock::time_point now = Clock::now();
  if (now < m_next_figures) return;
  m_next_figures = now + kFigureInterval;
  CameraFigures read;
  m_camera->Describe(read);
  m_board.ChangeFigures([&](CameraFigures& figures) {
    figures.missing_frame_ids = read.missing_frame_ids;
    figures.stream_rate_bytes_per_s = read.stream_rate_bytes_per_s;
    figures.temperatures = read.temperatures;
    figures.frames_per_s = m_rate.PerSecond(now);
  });
}

void CameraThread::ShowCondition(Condition condition, const std::optional<Fault>& problem) {
  m_board.ChangeState([&](CameraState& state) {
    state.condition = condition;
    state.problem = problem;
  });
}

void CameraThread::ShowState() {
  CameraState read;
  m_camera->Describe(read);
  m_board.ChangeState([&](CameraState& state) {
    read.index = state.index;
    read.title = state.title;
    read.since = state.since;
    read.problem = state.problem;
    read.condition = m_wishes.runs ? Condition::kRunning : Condition::kStopped;
    if (state.condition != read.condition) read.problem = std::nullopt;
    state = read;
  });
}

}  // namespace Kelcam
