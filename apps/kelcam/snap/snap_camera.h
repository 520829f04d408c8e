// snap_camera.h
// One camera of snap, with its pictures.
#pragma once

#include <optional>
#include <string>

#include "commands/command_line.h"
#include "commands/lasting_camera.h"
#include "device/camera_run.h"
#include "library/module.h"
#include "snap/picture_series.h"

namespace Kelcam {

class SnapCamera : public CameraRun {
 public:
  // Opens the camera. place: where it prints, without the label. What is given must outlive the object.
  SnapCamera(const Options& options, const CameraChoice& choice, const Module& module, MessageLog& log, Screen& screen,
             std::size_t line);

  const CameraSession& Session() const override { return m_camera.Session(); }
  const std::string& Label() const override { return m_camera.Label(); }
  void ShareLink(BandwidthLink& link) override { m_camera.ShareLink(link); }
  void SetUp() override;
  void Run() override;
  bool HasFailed() const override { return m_series && m_series->HasFailed(); }

  // After the run.
  const SnapFigures& Figures() const { return m_series->Figures(); }
  int Taken() const { return m_series->Report().Taken(); }
  void PrintSummary() const { m_series->Report().PrintSummary(m_series->RunFault().has_value()); }
  Json Document() const;

 private:
  const Options& m_options;
  Screen& m_screen;
  const std::size_t m_line;
  const TriggerChoice m_trigger;
  LastingCamera m_camera;
  std::optional<PictureSeries> m_series;
};

}  // namespace Kelcam
