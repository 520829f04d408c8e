// live_camera.h
// One camera of live.
#pragma once

#include <optional>

#include "commands/command_line.h"
#include "commands/lasting_camera.h"
#include "device/acquisition_run.h"
#include "device/camera_run.h"
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

  const CameraSession& Session() const override { return m_camera.Session(); }
  const std::string& Label() const override { return m_camera.Label(); }
  void ShareLink(BandwidthLink& link) override { m_camera.ShareLink(link); }
  void SetUp() override;
  void Run() override;
  bool HasFailed() const override { return m_place && m_report.HasFailed(*m_place); }

  // After the run.
  void PrintTotal() const { m_report.PrintTotal(*m_place); }

 private:
  std::int64_t StreamRate() const;
  bool IsOver() const;
  // Whether it has ended because the camera is lost.
  bool RunOnce();
  bool RunUntilOverOrLost(AcquisitionRun& run);
  // False: it was over before.
  bool AwaitReturn();

  const Options& m_options;
  MessageLog& m_log;
  LiveReport& m_report;
  const TriggerChoice m_trigger;
  LastingCamera m_camera;
  std::optional<FrameIds> m_ids;
  std::optional<LiveReport::Camera> m_place;
  bool m_has_started = false;  // what the report counts
};

}  // namespace Kelcam
