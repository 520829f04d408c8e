// raw_frame.h
// The frame of a camera as it came, found in the picture that the driver made of it.
#pragma once

#include <optional>
#include <string>

#include "bimage8u.h"
#include "bimagergb.h"
#include "iprofile.h"
#include "picture/pixels.h"

namespace Kelcam {

// The text of an area whose picture holds the frame: it is converted fastest.
inline constexpr const char* kRawAreaText = "[l]";

// A driver hands out pictures, not frames. It fills an RGB picture, which it never turns, from a grey frame by writing
// each value three times, and from a mosaic by keeping the sample of each pixel and adding the two colours that the
// pixel lacks. So every frame of the two kinds can be read off its picture.
struct RawFrame {
  BImage8u image;
  std::string bayer_order;  // such as "RGGB"; empty: the frame is no mosaic

  Pixels View() const { return {image.Row(0), image.LineLength(), image.Size(), 1}; }
};

// The order of colours in which the driver reads mosaics under this profile, a BColorConverter::BayerOrder.
int BayerOrderOf(const IProfile& profile);

// picture: an RGB picture, taken with kRawAreaText. bayer_order: that of a colour camera, none of a monochrome one. The
// frame is converted again and compared with the picture, so that none is returned that is not the camera's. Throws
// Failure where the frame was of another kind.
RawFrame RawFrameOf(const BImageRgb& picture, std::optional<int> bayer_order);

}  // namespace Kelcam
