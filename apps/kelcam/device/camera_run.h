// camera_run.h
// What a command does with one camera.
#pragma once

#include "device/camera_session.h"

namespace Kelcam {

// The camera is open for as long as the object lives.
class CameraRun {
 public:
  CameraRun() = default;
  virtual ~CameraRun() = default;
  CameraRun(const CameraRun&) = delete;
  CameraRun& operator=(const CameraRun&) = delete;

  virtual const CameraSession& Session() const = 0;
  // What comes before the first image. Throws Failure or UsageError. [the command's thread]
  virtual void SetUp() = 0;
  // Takes the images. Ends when there is nothing more to do, or the program is interrupted; faults of the camera are
  // among its results. [one thread]
  virtual void Run() = 0;
  virtual bool HasFailed() const = 0;
};

}  // namespace Kelcam
