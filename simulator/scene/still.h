// scene/still.h
// A subject's parts in the form in which frames are made from them: eight-bit sRGB codes of the samples that a format
// needs.
#pragma once

#include <cstdint>
#include <vector>

#include "scene/bayer_order.h"
#include "scene/subject.h"

namespace Simulator {

enum class Samples { kLuminance, kMosaic, kRgb };

// The colour of a sensor's pixel: 0 red, 1 green, 2 blue.
int MosaicChannel(BayerOrder bayer_order, int x, int y);

struct StillKind {
  Samples samples = Samples::kLuminance;
  BayerOrder bayer_order = BayerOrder::kBggr;
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

  // Of the `count` pixels from column `x` of the whole picture's row `y`, copies those that lie in this window to their
  // places in `row`, which begins with column `x`.
  void CopyRow(int x, int y, int count, std::uint8_t* row) const;
};

// The pixels within the bounds that the box touches.
Window WindowAround(const Box& box, const StillKind& kind, const Window& bounds);

// The subject's still parts with these moving ones on top.
Still DrawStill(const Subject& subject, const std::vector<MovingPart>& parts, const StillKind& kind,
                const Window& window);

}  // namespace Simulator
