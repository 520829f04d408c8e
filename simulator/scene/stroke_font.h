// scene/stroke_font.h
// A small built-in font of straight strokes, which scales to any size.
#pragma once

#include <string_view>

#include "scene/canvas.h"

namespace Simulator {

enum class Turn { kUpright, kUpwards, kDownwards };

// One line of text. Capitals are `height` high; the strokes' thickness is a part of it. The font has Latin letters,
// digits and " .,:-+/()"; other characters stay blank.
struct TextLine {
  std::string_view text;
  // The middle of the capitals' height, half-way along the line.
  Point middle;
  double height = 0;
  Turn turn = Turn::kUpright;
  // Part of the height.
  double weight = 0.13;
};

// From the first stroke's middle line to the last one's.
double TextWidth(std::string_view text, double height);
// The height at which the text takes this width, or `most` if that is less.
double HeightToFit(std::string_view text, double width, double most);
// The box that holds every stroke.
Box TextBox(const TextLine& line);
void WriteText(Canvas& canvas, const TextLine& line, const Light& light);

}  // namespace Simulator
