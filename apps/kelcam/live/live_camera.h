// live_camera.h
// One camera of live.
#pragma once

#include <optional>

#include "commands/command_line.h"
#include "device/acquisition_run.h"
#include "device/camera_run.h"
#include "device/trigger_setting.h"
#include "library/module.h"
#include "live/live_report.h"
#include "messages/frame_ids.h"
#include "messages/message_log.h"

namespace Kelcam {

class LiveCamera : public CameraRun {
 public:
  // Opens the camera. What is given must outlive the object.
  LiveCamera(const Options& options, const CameraChoice& choice, const Module& module, MessageLog& log,
             LiveReport& report);
  // Ends the report, which reads the camera's frame ids.
  ~LiveCamera() override;

  const CameraSession& Session() const override { return m_camera; }
  void SetUp() override;
  void Run() override;
  bool HasFailed() const override { return m_place && m_report.HasFailed(*m_place); }

  // After the run.
  void PrintTotal() const { m_report.PrintTotal(*m_place); }

 private:
  std::int64_t StreamRate() const;
  void RunUntilOver(AcquisitionRun& run);

  const Options& m_options;
  MessageLog& m_log;
  LiveReport& m_report;
  const TriggerChoice m_trigger;
  const CameraSession m_camera;
  std::optional<TriggerSetting> m_trigger_setting;
  std::optional<FrameIds> m_ids;
  std::optional<LiveReport::Camera> m_place;
};

}  // namespace Kelcam
