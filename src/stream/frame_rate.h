// frame_rate.h
// How fast the camera can deliver, and whether it may run in its fast mode.
#pragma once

class BImagingDeviceControl;
class VimbaCamera;

// [host thread]
class FrameRate {
 public:
  // The camera must outlive this object.
  explicit FrameRate(const VimbaCamera& camera) : m_camera(camera) {}

  // Caps what the camera reports; 0 or less: no cap, as at the beginning.
  void SetCameraFrequency(double frames_per_second) { m_camera_frequency = frames_per_second; }
  // The longest exposure of the fast mode, in the exposure control's integer unit; -1 at the beginning, so that no
  // exposure is short enough.
  void SetMaxShutterForFast(int max_shutter) { m_max_shutter_for_fast = max_shutter; }
  int MaxShutterForFast() const { return m_max_shutter_for_fast; }

  // The highest rate now, untouched when the camera does not report it. True when the camera may run at it in its fast
  // mode. A camera without an exposure control (null) may not.
  bool FramesPerSecond(BImagingDeviceControl* shutter, double& frames_per_second) const;

 private:
  const VimbaCamera& m_camera;
  double m_camera_frequency = -1.0;
  int m_max_shutter_for_fast = -1;
};
