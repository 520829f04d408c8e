// camera_probe.h
// Measures what a check says of one camera.
#pragma once

#include <chrono>
#include <cstddef>

#include "check/known_facts.h"
#include "device/acquisition_run.h"
#include "device/camera_session.h"
#include "library/module.h"
#include "messages/message_log.h"

namespace Kelcam {

class CameraProbe {
 public:
  static constexpr int kSnaps = 20;

  // index: the camera's place among the facts, which must be there. What is given must outlive the object.
  CameraProbe(const CameraChoice& choice, std::size_t index, std::chrono::duration<double> run_time,
              const Module& module, MessageLog& log, KnownFacts& known);

  // Opens the camera, takes images, closes it. Faults of the camera are among the facts. Ends early when the program is
  // interrupted. No camera may be open.
  void Measure();

 private:
  using Clock = std::chrono::steady_clock;

  void ReadProfile();
  void MeasureOpened(const CameraSession& camera);
  void Describe(const CameraSession& camera);
  void TakeSingleImages(const CameraSession& camera);
  void Run(const CameraSession& camera);
  void UpdateRates(BImagingDevice& device);
  void AskLibrary();

  // One start, image and stop, and the clock that the driver reads at the start.
  std::optional<Fault> SnapOnce(const CameraSession& camera, BBaseAoi& area);
  void ReadClock(const CameraSession& camera, std::uint64_t first_message);
  // As long as an image may take, with room for a slow network.
  std::chrono::milliseconds TimeoutOf(BImagingDevice& device) const;
  void Begin(Operation operation, std::chrono::milliseconds may_wait = {});
  template <class Change>
  void Update(const Change& change);

  const CameraChoice& m_choice;
  const std::size_t m_index;
  const std::chrono::duration<double> m_run_time;
  const Module& m_module;
  MessageLog& m_log;
  KnownFacts& m_known;
  std::string m_id;  // the library's, of the camera that was opened
  std::chrono::milliseconds m_timeout{0};
};

}  // namespace Kelcam
