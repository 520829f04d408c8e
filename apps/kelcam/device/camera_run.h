// camera_run.h
// What a command does with one camera.
#pragma once

#include "device/bandwidth_link.h"
#include "device/camera_session.h"

namespace Kelcam {

// The camera is open from the beginning, and as long as it is not lost.
class CameraRun {
 public:
  CameraRun() = default;
  virtual ~CameraRun() = default;
  CameraRun(const CameraRun&) = delete;
  CameraRun& operator=(const CameraRun&) = delete;

  // Before the run.
  virtual const CameraSession& Session() const = 0;
  // With what a line about this camera begins.
  virtual const std::string& Label() const = 0;
  // From now on the camera leaves the link before it is closed in a run, and joins it when it is open again.
  virtual void ShareLink(BandwidthLink& link) = 0;
  // What comes before the first image. Throws Failure or UsageError. [the command's thread]
  virtual void SetUp() = 0;
  // Takes the images. Ends when there is nothing more to do, or the program is interrupted; faults of the camera are
  // among its results. [one thread]
  virtual void Run() = 0;
  virtual bool HasFailed() const = 0;
};

}  // namespace Kelcam
