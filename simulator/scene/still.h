// scene/still.h
// A subject's parts in the form in which frames are made from them: eight-bit sRGB codes of the samples that a format
// needs.
#pragma once

#include <cstdint>
#include <vector>

#include "scene/subject.h"

namespace Simulator {

enum class Samples { kLuminance, kMosaic, kRgb };

// Bayer orders: 0 BGGR, 1 RGGB, 2 GBRG, 3 GRBG. Gives 0 red, 1 green, 2 blue.
int MosaicChannel(int bayer_order, int x, int y);

struct StillKind {
  Samples samples = Samples::kLuminance;
  int bayer_order = 0;
  int binning_x = 1;
  int binning_y = 1;

  int Channels() const { return samples == Samples::kRgb ? 3 : 1; }
  bool operator==(const StillKind& other) const;
};

// In binned pixels.
struct Window {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

// A window of the picture: at the default exposure these codes are what the camera gives.
struct Still {
  StillKind kind;
  Window window;
  std::vector<std::uint8_t> codes;

  // Copies the part of row `y` (of the whole picture) that lies in `count` pixels from column `x` to where it belongs
  // there.
  void CopyRow(int x, int y, int count, std::uint8_t* row) const;
};

// The pixels that the box touches, as far as they lie within the bounds.
Window WindowAround(const Box& box, const StillKind& kind, const Window& bounds);

// The subject's still parts with these moving ones on top.
Still DrawStill(const Subject& subject, const std::vector<MovingPart>& parts, const StillKind& kind,
                const Window& window);

}  // namespace Simulator
