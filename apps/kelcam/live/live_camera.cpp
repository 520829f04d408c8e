// live_camera.cpp
// One camera of live.
#include "live/live_camera.h"

#include <chrono>

#include "base/interrupt.h"
#include "base/utf8.h"
#include "commands/camera_setup.h"
#include "device/camera_presence.h"

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
      m_camera(module, log, choice) {}

LiveCamera::~LiveCamera() {
  if (m_place) m_report.End();
}

void LiveCamera::SetUp() {
  SetUpCamera(m_options, m_camera);
  m_trigger_setting.emplace(m_camera.Device(), m_trigger, m_options.trigger.has_value());
  m_ids.emplace(m_log, m_camera.IdentifierInMessages());
  m_place = m_report.AddCamera(m_camera.Identifier(), m_camera.Label(), *m_ids);
}

void LiveCamera::Run() {
  AcquisitionRun run(m_camera, false, m_trigger);
  if (run.StartFault()) {
    m_report.AddFailure(*m_place, *run.StartFault());
  } else {
    RunUntilOver(run);
  }
  // Asked for before stop-snap, which adapts it for the next run.
  m_report.SetStreamRate(*m_place, StreamRate());
  if (const std::optional<Fault> fault = run.Stop()) m_report.AddFailure(*m_place, *fault);
}

std::int64_t LiveCamera::StreamRate() const {
  const CallWatch::Call call(m_camera.Watch(), Operation::kControls);
  return m_camera.Device().GetBandwidth();
}

void LiveCamera::RunUntilOver(AcquisitionRun& run) {
  LostCamera lost(m_options.lost_after);
  bool is_lost = false;
  const BSmartRef<BBaseAoi> area(
      new BBaseAoi(PictureKind(m_options, m_camera.Device()),
                   Wide(m_options.area_text.empty() ? kFastConversion : m_options.area_text)));
  Clock::time_point next_rate = Clock::now();
  m_report.Start(*m_place);
  while (!Interrupted() && !is_lost && !m_report.HasLostReader() &&
         (!m_options.duration || m_report.Elapsed() < *m_options.duration)) {
    if (Clock::now() >= next_rate) {
      m_report.SetStreamRate(*m_place, StreamRate());
      next_rate = Clock::now() + kStreamRateInterval;
    }
    const std::optional<Fault> fault = run.Snap(*area, m_options.timeout);
    fault ? m_report.AddFailure(*m_place, *fault) : m_report.AddFrame(*m_place);
    is_lost = lost.IsLostAfter(fault && m_camera.LooksGone());
  }
  m_report.Stop(*m_place);
  if (is_lost) m_report.AddLoss(*m_place, lost.AsFault());
}

}  // namespace Kelcam
