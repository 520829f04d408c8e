// image_time.h
// The time of an image on the clock on the wall.
#pragma once

#include <chrono>
#include <string>

namespace Kelcam {

// Local time to the millisecond, with its distance from UTC: unambiguous when clocks are put back.
struct LocalTime {
  int year = 0, month = 0, day = 0;
  int hour = 0, minute = 0, second = 0, milliseconds = 0;
  int offset_minutes = 0;  // east of Greenwich

  std::string Basic() const;         // 20261122T055537.123+0100: no letter that a file system refuses
  std::string Extended() const;      // 2026-11-22T05:55:37.123+01:00
  std::string ExifSecond() const;    // 2026:11:22 05:55:37
  std::string ExifFraction() const;  // 123
  std::string ExifOffset() const;    // +01:00
};

LocalTime LocalTimeOf(std::chrono::system_clock::time_point time);

}  // namespace Kelcam
