// lasting_camera.cpp
// The camera of a run that may outlast its losses.
#include "commands/lasting_camera.h"

#include <utility>

#include "commands/camera_setup.h"

namespace Kelcam {
namespace {

GrowingPauses::Limits PausesOf(const Options& options) {
  return {.first = GrowingPauses::Limits().first,
          .longest = std::chrono::duration_cast<std::chrono::milliseconds>(options.longest_pause)};
}

}  // namespace

LastingCamera::LastingCamera(const Options& options, const CameraChoice& choice, const Module& module, MessageLog& log,
                             TriggerChoice trigger)
    : m_options(options),
      m_log(log),
      m_trigger(trigger),
      m_session(std::make_unique<CameraSession>(module, log, choice)),
      m_source(m_session->Source()),
      m_identifier(m_session->Identifier()),
      m_label(m_session->Label()),
      m_lost(options.lost_after),
      m_return([this] { return OpenAndSetUp(); },
               [this](const Fault& fault) {
                 (*m_on_notice)("it is there, and does not open: " + fault.Sentence() + "\n" + fault.reason.Text());
               },
               PausesOf(options)) {}

void LastingCamera::SetUp() {
  SetUpCamera(m_options, *m_session, SettingNotices::kPrinted);
  m_trigger_setting = std::make_unique<TriggerSetting>(m_session->Device(), m_trigger, m_options.trigger.has_value());
}

bool LastingCamera::IsLostAfter(const std::optional<Fault>& fault) {
  if (!fault) m_return.NoteSuccess();
  const bool is_gone = fault && m_session->LooksGone();
  const bool is_lost = m_lost.IsLostAfter(is_gone);
  m_loss = m_lost.AsFault();
  return is_lost || (is_gone && m_options.reconnect && m_session->IsReportedMissing());
}

bool LastingCamera::IsLostAfterStart() {
  const bool is_gone = m_session->LooksGone();
  m_loss = {Fault::kNoCode, is_gone ? "camera lost: it does not answer, and its run has not started"
                                    : "camera lost: its run has not started"};
  return is_gone || m_has_returned;
}

bool LastingCamera::AwaitReturn(const IsOver& is_over, const OnEvent& on_event, const OnNotice& on_notice) {
  const auto lost_at = std::chrono::steady_clock::now();
  Report({.camera = m_identifier, .time = std::chrono::system_clock::now(), .loss = m_loss}, on_event);
  Close();
  m_on_notice = &on_notice;
  m_session = m_return.Await(is_over);
  if (!m_session) return false;
  m_has_returned = true;
  m_lost.Reset();
  const std::string& identifier = m_session->Identifier();
  Report({.camera = m_identifier,
          .time = std::chrono::system_clock::now(),
          .loss = {},
          .away = std::chrono::steady_clock::now() - lost_at,
          .tries = m_return.Tries(),
          .returned_as = identifier == m_identifier ? std::string() : identifier},
         on_event);
  return true;
}

void LastingCamera::Close() {
  m_trigger_setting.reset();
  if (m_link) m_link->Leave(*m_session);
  m_session.reset();
}

// What throws on the way undoes what was done, the camera's closing last.
std::unique_ptr<CameraSession> LastingCamera::OpenAndSetUp() {
  std::unique_ptr<CameraSession> session = OpenAgain(m_source);
  if (!session) return nullptr;
  SetUpCamera(m_options, *session, SettingNotices::kSilent);
  auto trigger = std::make_unique<TriggerSetting>(session->Device(), m_trigger, m_options.trigger.has_value());
  if (m_link) m_link->Join(*session);
  m_trigger_setting = std::move(trigger);
  return session;
}

void LastingCamera::Report(const CameraEvent& event, const OnEvent& on_event) {
  m_log.Note(event.Line());
  on_event(event);
}

}  // namespace Kelcam
