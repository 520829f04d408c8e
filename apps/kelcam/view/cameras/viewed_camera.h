// viewed_camera.h
// An open camera that is looked at.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "bbaseaoi.h"
#include "commands/camera_setup.h"
#include "device/acquisition_run.h"
#include "device/bandwidth_link.h"
#include "device/camera_session.h"
#include "device/trigger_setting.h"
#include "messages/frame_ids.h"
#include "picture/picture_details.h"
#include "view/cameras/camera_state.h"
#include "view/cameras/camera_wishes.h"

namespace Kelcam {

// Whatever changes the camera is remembered among the wishes. What cannot be changed during a run ends it and starts
// it again. [the camera's thread]
class ViewedCamera {
 public:
  // Sets the camera up as the wishes say. Throws Failure and UsageError. link: null, or what the camera
  // shares with others. What is given must outlive the object.
  ViewedCamera(std::unique_ptr<CameraSession> session, CameraWishes& wishes, MessageLog& log, BandwidthLink* link,
               SettingNotices notices);
  // Ends the run and closes the camera.
  ~ViewedCamera();
  ViewedCamera(const ViewedCamera&) = delete;
  ViewedCamera& operator=(const ViewedCamera&) = delete;

  const CameraSession& Session() const { return *m_session; }
  const CameraWishes& Wishes() const { return m_wishes; }
  BBaseAoi::Kind Kind() const;
  // Of the frames that come now.
  const PictureDetails& Details() const { return m_details; }

  bool Runs() const { return m_run.has_value(); }
  // Why it did not start. Without a fault it runs.
  std::optional<Fault> StartRun();
  void EndRun();
  // The next image of the run. is_awaited: an image that was asked for and has not come yet, so that no other one is.
  std::optional<Fault> Snap(BBaseAoi& area, std::chrono::milliseconds timeout, bool is_awaited);
  // One image of its own. The run must not be on.
  std::optional<Fault> TakeShot(BBaseAoi& area);

  // All throw UsageError for what the camera does not have, Failure for what it does not take.
  void Set(const ControlSetting& setting);
  void SetColor(bool on);
  void SetArea(const std::string& text) { m_wishes.options.area_text = text; }
  void SetTrigger(TriggerChoice choice);
  void SetRate(std::int32_t rate_bytes_per_s);
  void SetRunning(bool on) { m_wishes.runs = on; }

  // Everything but the condition and the problem. Asks the camera.
  void Describe(CameraState& state) const;
  // The stream rate, the ids and the temperatures.
  void Describe(CameraFigures& figures) const;

 private:
  BImagingDevice& Device() const { return m_session->Device(); }
  void ApplyRate();
  template <class Change>
  void ChangeWithoutRun(const Change& change);

  CameraWishes& m_wishes;
  std::unique_ptr<CameraSession> m_session;
  FrameIds m_ids;
  const StreamRateState m_rate_range;
  PictureDetails m_details;
  BandwidthLink* const m_link;
  std::optional<TriggerSetting> m_trigger;
  std::optional<AcquisitionRun> m_run;
};

}  // namespace Kelcam
