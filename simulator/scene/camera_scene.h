// scene/camera_scene.h
// The scene that a camera sees of any subject.
#pragma once

#include <memory>
#include <vector>

#include "bmutex.h"
#include "scene/scene.h"
#include "scene/still.h"

namespace Simulator {

// Draws the still parts once for each kind of samples asked for, keeps the latest few of these drawings, and makes
// each frame from them.
class CameraScene : public Scene {
 public:
  // A monochrome sensor gives its luminance in every format.
  CameraScene(std::unique_ptr<const Subject> subject, int sensor_width, int sensor_height, bool colour);
  void Render(const Shot& shot, std::uint8_t* out) const override;

 private:
  std::shared_ptr<const Still> StillOf(const StillKind& kind) const;
  // The windows in which this shot differs from the still parts, as far as the shot shows them.
  std::vector<Still> MovingWindows(const Shot& shot, const StillKind& kind) const;
  // The binned sensor.
  Window SensorOf(const StillKind& kind) const;

  const std::unique_ptr<const Subject> m_subject;
  const int m_sensor_width;
  const int m_sensor_height;
  const bool m_colour;
  // Held while a still is drawn, so that none is drawn twice.
  mutable BMutex m_mutex;
  mutable std::vector<std::shared_ptr<const Still>> m_stills KEL_GUARDED_BY(m_mutex);
};

}  // namespace Simulator
