// scene/picture_subject.h
// A picture of the user's as what the camera sees.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "scene/subject.h"

namespace Simulator {

class PictureSubject : public Subject {
 public:
  // Throws std::runtime_error as MakePictureScene says.
  PictureSubject(const std::string& utf8_path, int sensor_width, int sensor_height);

  void Paint(Canvas& canvas) const override;
  std::vector<MovingPart> MovingParts(std::uint64_t frame_number, Seconds time) const override;

 private:
  const int m_width;
  const int m_height;
  // sRGB, three bytes a pixel, of the sensor's size.
  const std::vector<std::uint8_t> m_pixels;
};

}  // namespace Simulator
