// live_camera.cpp
// One camera of live.
#include "live/live_camera.h"

#include <chrono>
#include <utility>

#include "base/interrupt.h"
#include "base/utf8.h"
#include "commands/camera_setup.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

// Asking for it takes a call to the camera.
constexpr std::chrono::seconds kStreamRateInterval{1};
constexpr const char* kFastConversion = "[l]";

}  // namespace

LiveCamera::LiveCamera(const Options& options, const CameraChoice& choice, const Module& module, MessageLog& log,
                       LiveReport& report)
    : m_options(options),
      m_log(log),
      m_report(report),
      m_trigger(options.trigger.value_or(TriggerChoice::kFree)),
      m_camera(options, choice, module, log, m_trigger) {}

LiveCamera::~LiveCamera() {
  if (m_place) m_report.End();
}

void LiveCamera::SetUp() {
  m_camera.SetUp();
  m_ids.emplace(m_log, Session().IdentifierInMessages());
  m_place = m_report.AddCamera(m_camera.Identifier(), m_camera.Label(), *m_ids);
}

void LiveCamera::Run() {
  bool is_lost = RunOnce();
  while (is_lost && m_options.reconnect && !IsOver() && AwaitReturn()) is_lost = RunOnce();
  m_report.Stop(*m_place);
  if (is_lost && m_options.reconnect) m_report.AddLoss(*m_place, m_camera.Loss());
}

bool LiveCamera::IsOver() const {
  return Interrupted() || m_report.HasLostReader() || (m_options.duration && m_report.Elapsed() >= *m_options.duration);
}

bool LiveCamera::RunOnce() {
  AcquisitionRun run(Session(), false, m_trigger);
  bool is_lost = false;
  if (run.StartFault()) {
    m_report.AddFailure(*m_place, *run.StartFault());
    is_lost = m_options.reconnect && m_camera.IsLostAfterStart();
  } else {
    is_lost = RunUntilOverOrLost(run);
  }
  // Asked for before stop-snap, which adapts it for the next run.
  m_report.SetStreamRate(*m_place, StreamRate());
  const std::optional<Fault> fault = run.Stop();
  // That of a lost camera says nothing more.
  if (fault && !(is_lost && m_options.reconnect)) m_report.AddFailure(*m_place, *fault);
  return is_lost;
}

std::int64_t LiveCamera::StreamRate() const {
  const CallWatch::Call call(Session().Watch(), Operation::kControls);
  return Session().Device().GetBandwidth();
}

bool LiveCamera::RunUntilOverOrLost(AcquisitionRun& run) {
  bool is_lost = false;
  const BSmartRef<BBaseAoi> area(
      new BBaseAoi(PictureKind(m_options, Session().Device()),
                   Wide(m_options.area_text.empty() ? kFastConversion : m_options.area_text)));
  Clock::time_point next_rate = Clock::now();
  if (!std::exchange(m_has_started, true)) m_report.Start(*m_place);
  while (!is_lost && !IsOver()) {
    if (Clock::now() >= next_rate) {
      m_report.SetStreamRate(*m_place, StreamRate());
      next_rate = Clock::now() + kStreamRateInterval;
    }
    const std::optional<Fault> fault = run.Snap(*area, m_options.timeout);
    fault ? m_report.AddFailure(*m_place, *fault) : m_report.AddFrame(*m_place);
    is_lost = m_camera.IsLostAfter(fault);
  }
  // Time goes on for a camera that may come back.
  if (is_lost && m_options.reconnect) return true;
  m_report.Stop(*m_place);
  if (is_lost) m_report.AddLoss(*m_place, m_camera.Loss());
  return is_lost;
}

bool LiveCamera::AwaitReturn() {
  if (!std::exchange(m_has_started, true)) m_report.Start(*m_place);
  const bool has_returned = m_camera.AwaitReturn(
      [this] { return IsOver(); }, [this](const CameraEvent& event) { m_report.AddEvent(*m_place, event); },
      [this](const std::string& text) { m_report.AddNotice(*m_place, text); });
  if (has_returned) m_ids->SetIdentifier(Session().IdentifierInMessages());
  return has_returned;
}

}  // namespace Kelcam
