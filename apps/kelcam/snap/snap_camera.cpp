// snap_camera.cpp
// One camera of snap, with its pictures.
#include "snap/snap_camera.h"

#include "base/interrupt.h"
#include "snap/picture_notices.h"

namespace Kelcam {
namespace {

TriggerChoice TriggerOf(const Options& options) {
  return options.trigger.value_or(options.mode == SnapMode::kSingle ? TriggerChoice::kSoftware : TriggerChoice::kFree);
}

}  // namespace

SnapCamera::SnapCamera(const Options& options, const CameraChoice& choice, const Module& module, MessageLog& log,
                       Screen& screen, std::size_t line)
    : m_options(options),
      m_screen(screen),
      m_line(line),
      m_trigger(TriggerOf(options)),
      m_camera(options, choice, module, log, m_trigger) {}

void SnapCamera::SetUp() {
  PictureSeries::CheckFiles(m_options, &Session().Device());
  m_camera.SetUp();
  PrintPictureNotices(m_options, Session());
  m_series.emplace(m_options, m_camera, PlaceOnScreen{m_screen, m_line, m_camera.Label()});
}

void SnapCamera::Run() {
  m_options.mode == SnapMode::kSingle ? m_series->TakeSingle(m_trigger) : m_series->TakeContinuous(m_trigger);
}

Json SnapCamera::Document() const {
  Json document = {{"camera", m_camera.Identifier()},
                   {"kind", m_series->KindName()},
                   {"images", m_series->Report().Images()},
                   {"taken", Taken()},
                   {"interrupted", Interrupted()}};
  if (const Json events = m_series->Report().Events(); !events.empty()) document["events"] = events;
  if (m_series->RunFault()) document["error"] = ToJson(*m_series->RunFault());
  return document;
}

}  // namespace Kelcam
