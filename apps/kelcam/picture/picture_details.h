// picture_details.h
// What a file says of its picture: the camera, when and how it was taken.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bimagingdevice.h"
#include "picture/file_pattern.h"

namespace Kelcam {

// Texts are in UTF-8 and have no control characters.
struct PictureDetails {
  std::string camera;    // its identifier
  std::string serial;    // SerialOf
  std::string exposure;  // with its unit; empty: the camera has no such control
  std::string gain;
  std::optional<std::chrono::duration<double>> exposure_time;  // none: in a unit that is no time
  std::chrono::system_clock::time_point time;                  // when the image arrived
  std::string bayer_order;                                     // of a frame that was not converted, such as "RGGB"
};

// The camera's serial number, which ends its identifier; empty when it has none.
std::string SerialOf(const BImagingDevice& device);

// What a picture's name may hold of the device.
PictureIdentity IdentityOf(const BImagingDevice& device);

// Of the pictures that the device takes as it is set now; the time is left open.
PictureDetails DetailsOf(BImagingDevice& device);

// The same as keywords, those of PNG where it has one, and texts. What is not known is left out.
std::vector<std::pair<std::string_view, std::string>> TextsOf(const PictureDetails& details);

// The program and its version.
std::string SoftwareName();

}  // namespace Kelcam
