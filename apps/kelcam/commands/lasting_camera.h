// lasting_camera.h
// The camera of a run that may outlast its losses.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "commands/camera_event.h"
#include "commands/command_line.h"
#include "device/bandwidth_link.h"
#include "device/camera_presence.h"
#include "device/camera_return.h"
#include "device/camera_session.h"
#include "device/trigger_setting.h"
#include "library/module.h"
#include "messages/message_log.h"

namespace Kelcam {

// Owns the open camera, with what the command line sets. A camera that is lost is closed, and with --reconnect opened
// anew until it answers, and set up as before. [one thread] but what says otherwise.
class LastingCamera {
 public:
  using IsOver = CameraReturn::IsOver;
  // What is to be printed. [the thread of AwaitReturn]
  using OnEvent = std::function<void(const CameraEvent&)>;
  using OnNotice = std::function<void(const std::string& text)>;

  // Opens the camera, and throws as CameraSession does. What is given must outlive the object.
  LastingCamera(const Options& options, const CameraChoice& choice, const Module& module, MessageLog& log,
                TriggerChoice trigger);
  ~LastingCamera() = default;
  LastingCamera(const LastingCamera&) = delete;
  LastingCamera& operator=(const LastingCamera&) = delete;

  // Colour mode, controls and trigger of the command line. Throws Failure or UsageError.
  void SetUp();
  // From now on it leaves the link while it is away. The link must exist until the end of the run.
  void ShareLink(BandwidthLink& link) { m_link = &link; }

  // The open camera; there is none between a loss and the return.
  bool IsOpen() const { return m_session != nullptr; }
  const CameraSession& Session() const { return *m_session; }
  // As at the beginning of the run, open or not. [any thread]
  const std::string& Identifier() const { return m_identifier; }
  const std::string& Label() const { return m_label; }

  // After each image: whether the camera is lost. With --reconnect one that the library reports missing is lost with
  // its first failed image.
  bool IsLostAfter(const std::optional<Fault>& fault);
  // The same where the camera's run did not start.
  bool IsLostAfterStart();
  const Fault& Loss() const { return m_loss; }

  // Closes the lost camera, which nothing may use any more, and waits until it is back. False: it is over, and there is
  // no camera.
  bool AwaitReturn(const IsOver& is_over, const OnEvent& on_event, const OnNotice& on_notice);

 private:
  std::unique_ptr<CameraSession> OpenAndSetUp();
  void Close();
  void Report(const CameraEvent& event, const OnEvent& on_event);

  const Options& m_options;
  MessageLog& m_log;
  const TriggerChoice m_trigger;
  std::unique_ptr<CameraSession> m_session;
  std::unique_ptr<TriggerSetting> m_trigger_setting;
  const std::shared_ptr<CameraSource> m_source;
  const std::string m_identifier;
  const std::string m_label;
  BandwidthLink* m_link = nullptr;
  LostCamera m_lost;
  Fault m_loss;
  bool m_has_returned = false;
  const OnNotice* m_on_notice = nullptr;
  CameraReturn m_return;
};

}  // namespace Kelcam
