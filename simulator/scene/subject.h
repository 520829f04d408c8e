// scene/subject.h
// What a scene shows: still parts, drawn once, and parts that differ from frame to frame.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "scene/canvas.h"
#include "scene/times.h"

namespace Simulator {

// A part that is painted over the still ones, all of it within the box.
struct MovingPart {
  Box box;
  std::function<void(Canvas&)> paint;
};

class Subject {
 public:
  virtual ~Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  // Fills every pixel of the canvas, which may be any window of the sensor. [any thread]
  virtual void Paint(Canvas& canvas) const = 0;
  // What lies over the still parts in this frame, exposed at this camera time. [any thread]
  virtual std::vector<MovingPart> MovingParts(std::uint64_t frame_number, Seconds time) const = 0;

 protected:
  Subject() = default;
};

}  // namespace Simulator
