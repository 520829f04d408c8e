// scene/chart_colours.h
// The colours that the test chart is drawn in, its patches aside.
#pragma once

#include <array>

#include "scene/canvas.h"

namespace Simulator {

inline const Light kBackground = LightOfSrgb(112, 114, 117);
inline const Light kGrid = LightOfSrgb(140, 142, 145);
inline const Light kPlate = LightOfSrgb(26, 28, 32);
inline const Light kInk = LightOfSrgb(22, 22, 22);
inline const Light kPaper = LightOfSrgb(243, 243, 242);
inline const Light kLegend = LightOfSrgb(168, 174, 182);
inline const Light kHand = LightOfSrgb(255, 112, 32);
inline const Light kDigits = LightOfSrgb(255, 196, 64);
// Red, green, blue, cyan, magenta, yellow.
inline const std::array<Light, 6> kBars{LightOfSrgb(226, 34, 40),  LightOfSrgb(24, 170, 64),
                                        LightOfSrgb(34, 84, 224),  LightOfSrgb(24, 184, 214),
                                        LightOfSrgb(214, 52, 184), LightOfSrgb(246, 214, 28)};

}  // namespace Simulator
