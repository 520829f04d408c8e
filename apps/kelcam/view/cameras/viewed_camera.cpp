// viewed_camera.cpp
// An open camera that is looked at.
#include "view/cameras/viewed_camera.h"

#include <utility>

#include "base/utf8.h"
#include "view/cameras/camera_description.h"

namespace Kelcam {

ViewedCamera::ViewedCamera(std::unique_ptr<CameraSession> session, CameraWishes& wishes, MessageLog& log,
                           BandwidthLink* link, SettingNotices notices)
    : m_wishes(wishes),
      m_session(std::move(session)),
      m_ids(log, m_session->IdentifierInMessages()),
      m_rate_range(StreamRateRangeIn(m_session->Messages())),
      m_link(link) {
  SetUpCamera(m_wishes.options, *m_session, notices);
  const CallWatch::Call call(m_session->Watch(), Operation::kControls);
  m_trigger.emplace(Device(), m_wishes.Trigger(), m_wishes.options.trigger.has_value());
  if (m_wishes.rate_bytes_per_s) ApplyRate();
  m_details = DetailsOf(Device());
  if (m_link) m_link->Join(*m_session);
}

ViewedCamera::~ViewedCamera() {
  EndRun();
  if (m_link) m_link->Leave(*m_session);
}

BBaseAoi::Kind ViewedCamera::Kind() const { return PictureKind(m_wishes.options, Device()); }

std::optional<Fault> ViewedCamera::StartRun() {
  m_run.emplace(*m_session, false, m_wishes.Trigger());
  std::optional<Fault> fault = m_run->StartFault();
  if (fault) m_run.reset();
  return fault;
}

void ViewedCamera::EndRun() {
  // A run that does not stop shows in what comes after it.
  if (m_run) std::ignore = m_run->Stop();
  m_run.reset();
}

std::optional<Fault> ViewedCamera::Snap(BBaseAoi& area, std::chrono::milliseconds timeout, bool is_awaited) {
  area.SetText(Wide(AreaTextOf(m_wishes.options)));
  return m_run->Snap(area, timeout, is_awaited ? AcquisitionRun::Firing::kDone : AcquisitionRun::Firing::kDue);
}

std::optional<Fault> ViewedCamera::TakeShot(BBaseAoi& area) {
  area.SetText(Wide(AreaTextOf(m_wishes.options)));
  const TriggerChoice choice = m_wishes.Trigger();
  // A camera that sends frame after frame would not stop at one.
  if (choice == TriggerChoice::kFree) m_trigger.reset();
  std::optional<Fault> fault;
  {
    AcquisitionRun shot(*m_session, true, choice == TriggerChoice::kFree ? TriggerChoice::kSoftware : choice);
    fault = shot.StartFault();
    if (!fault) fault = shot.Snap(area, m_wishes.options.timeout);
    if (const std::optional<Fault> stop = shot.Stop(); stop && !fault) fault = stop;
  }
  if (!m_trigger) m_trigger.emplace(Device(), choice, m_wishes.options.trigger.has_value());
  return fault;
}

template <class Change>
void ViewedCamera::ChangeWithoutRun(const Change& change) {
  const bool ran = Runs();
  EndRun();
  {
    const CallWatch::Call call(m_session->Watch(), Operation::kControls);
    change();
  }
  if (!ran) return;
  if (const std::optional<Fault> fault = StartRun()) throw Failure(*fault);
}

void ViewedCamera::Set(const ControlSetting& setting) {
  const CallWatch::Call call(m_session->Watch(), Operation::kControls);
  ApplyControlSetting(setting, Device(), m_wishes.options.color.value_or(Kind() == BBaseAoi::eRgb));
  m_wishes.Remember(setting);
  m_details = DetailsOf(Device());
}

void ViewedCamera::SetColor(bool on) {
  if (on && !Device().IsColor()) throw UsageError("this camera has no colours");
  ChangeWithoutRun([&] {
    if (!Device().SetColorMode(on)) {
      throw Failure(std::string("the camera refused to switch colour mode ") + (on ? "on" : "off"));
    }
    m_wishes.options.color = on;
    m_wishes.options.kind = on ? BBaseAoi::eRgb : BBaseAoi::eMono8;
  });
}

void ViewedCamera::SetTrigger(TriggerChoice choice) {
  ChangeWithoutRun([&] {
    m_trigger.reset();
    try {
      m_trigger.emplace(Device(), choice, true);
    } catch (...) {
      m_trigger.emplace(Device(), m_wishes.Trigger(), false);
      throw;
    }
    m_wishes.options.trigger = choice;
  });
}

void ViewedCamera::SetRate(std::int32_t rate_bytes_per_s) {
  const CallWatch::Call call(m_session->Watch(), Operation::kControls);
  if (!Device().SetBandwidth(rate_bytes_per_s)) {
    throw Failure("the camera refused a stream rate of " + std::to_string(rate_bytes_per_s) + " bytes/s");
  }
  m_wishes.rate_bytes_per_s = rate_bytes_per_s;
}

// One that the camera refuses is not worth its loss.
void ViewedCamera::ApplyRate() { std::ignore = Device().SetBandwidth(*m_wishes.rate_bytes_per_s); }

void ViewedCamera::Describe(CameraState& state) const {
  const CallWatch::Call call(m_session->Watch(), Operation::kControls);
  state.identifier = m_session->Identifier();
  bool rotated = false;
  state.size = Device().ImageSize(rotated);
  state.has_color = Device().IsColor();
  state.is_color = Kind() == BBaseAoi::eRgb;
  // Drivers turn grey pictures only.
  if (rotated && !state.is_color) std::swap(state.size.width, state.size.height);
  state.area = AreaTextOf(m_wishes.options);
  state.trigger = NameOf(m_wishes.Trigger());
  state.triggers = TriggersOf(Device());
  state.controls = ControlsOf(Device(), state.is_color);
  state.rate = m_rate_range;
  state.rate.value_bytes_per_s = Device().GetBandwidth();
}

void ViewedCamera::Describe(CameraFigures& figures) const {
  const CallWatch::Call call(m_session->Watch(), Operation::kControls);
  figures.missing_frame_ids = m_ids.Missing();
  figures.stream_rate_bytes_per_s = Device().GetBandwidth();
  figures.temperatures = TemperaturesOf(Device());
}

}  // namespace Kelcam
