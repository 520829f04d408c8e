// scene/stroke_font.cpp
// A small built-in font of straight strokes, which scales to any size.
#include "scene/stroke_font.h"

#include <algorithm>
#include <array>

namespace Simulator {
namespace {

struct Glyph {
  char character;
  int width;
  // Strokes apart by blanks; each is a row of points, column and row in one digit each. The base line is row 2, small
  // letters end at row 6, capitals at row 8, and row 0 lies below the base line.
  std::string_view strokes;
};

constexpr double kBaseLine = 2.0;
constexpr double kCapitals = 6.0;
constexpr double kGap = 2.0;
constexpr Glyph kUnknown{'\0', 2, ""};

constexpr std::array<Glyph, 71> kGlyphs{{
    {'A', 4, "020718384742 0444"},
    {'B', 4, "02083847463505 3544433202"},
    {'C', 4, "4738180703123243"},
    {'D', 4, "02083847433202"},
    {'E', 4, "48080242 0535"},
    {'F', 4, "480802 0535"},
    {'G', 4, "47381807031232434525"},
    {'H', 4, "0208 4248 0545"},
    {'I', 0, "0208"},
    {'J', 3, "0312223338"},
    {'K', 4, "0208 480542"},
    {'L', 4, "080242"},
    {'M', 4, "0208254842"},
    {'N', 4, "02084248"},
    {'O', 4, "123243473818070312"},
    {'P', 4, "02083847453405 3405"},
    {'Q', 4, "123243473818070312 2441"},
    {'R', 4, "02083847463505 2542"},
    {'S', 4, "473818070615354443321203"},
    {'T', 4, "0848 2822"},
    {'U', 4, "080312324348"},
    {'V', 4, "082248"},
    {'W', 4, "0812263248"},
    {'X', 4, "0248 0842"},
    {'Y', 4, "082548 2522"},
    {'Z', 4, "08480242"},
    {'a', 4, "16364542120314 1444"},
    {'b', 4, "0802324345360605"},
    {'c', 4, "4536160503123243"},
    {'d', 4, "48421203051646"},
    {'e', 4, "044445361605031232"},
    {'f', 3, "38281712 0636"},
    {'g', 4, "46413010 46160503 03124242"},
    {'h', 4, "0802 0516364542"},
    {'i', 0, "0206 0808"},
    {'j', 2, "26211000 2828"},
    {'k', 4, "0802 460442"},
    {'l', 1, "080312"},
    {'m', 6, "0206 0516263532 3546566562"},
    {'n', 4, "0206 0516364542"},
    {'o', 4, "123243453616050312"},
    {'p', 4, "00063645433202"},
    {'q', 4, "40461605031242"},
    {'r', 3, "0206 051636"},
    {'s', 4, "4616051434433202"},
    {'t', 3, "18132232 0636"},
    {'u', 4, "06031242 4246"},
    {'v', 4, "062246"},
    {'w', 4, "0612253246"},
    {'x', 4, "0246 0642"},
    {'y', 4, "06031242 46413010"},
    {'z', 4, "06460242"},
    {'0', 4, "123243473818070312"},
    {'1', 4, "162822 1232"},
    {'2', 4, "071838474602 0242"},
    {'3', 4, "071838474635 15354443321203"},
    {'4', 4, "32380444"},
    {'5', 4, "48080535444332 321203"},
    {'6', 4, "3818070312324344 443505"},
    {'7', 4, "084822"},
    {'8', 4, "150607183847463515 150403123243443515"},
    {'9', 4, "1232434738180706 061545"},
    {' ', 2, ""},
    {'.', 0, "0202"},
    {',', 1, "1201"},
    {':', 0, "0303 0606"},
    {'-', 3, "0535"},
    {'+', 4, "0545 2723"},
    {'/', 4, "0248"},
    {'(', 1, "18070312"},
    {')', 1, "08171302"},
}};

const Glyph& GlyphOf(char character) {
  const auto found = std::find_if(kGlyphs.begin(), kGlyphs.end(),
                                  [character](const Glyph& glyph) { return glyph.character == character; });
  return found == kGlyphs.end() ? kUnknown : *found;
}

double TextUnits(std::string_view text) {
  double units = 0.0;
  for (const char character : text) units += GlyphOf(character).width + kGap;
  return std::max(0.0, units - kGap);
}

// From the font's grid, its origin in the middle of the text, to the picture.
Point Place(const TextLine& line, double along, double up) {
  const double scale = line.height / kCapitals;
  switch (line.turn) {
    case Turn::kUpwards:
      return {line.middle.x - up * scale, line.middle.y - along * scale};
    case Turn::kDownwards:
      return {line.middle.x + up * scale, line.middle.y + along * scale};
    default:
      return {line.middle.x + along * scale, line.middle.y - up * scale};
  }
}

void DrawGlyph(Canvas& canvas, const TextLine& line, const Glyph& glyph, double start, const Light& light) {
  const auto point = [&](std::size_t i) {
    const double column = glyph.strokes[i] - '0';
    const double row = glyph.strokes[i + 1] - '0';
    return Place(line, start + column, row - kBaseLine - 0.5 * kCapitals);
  };
  for (std::size_t i = 0; i + 3 < glyph.strokes.size(); i += 2) {
    if (glyph.strokes[i + 2] == ' ') {
      ++i;
      continue;
    }
    canvas.Stroke(point(i), point(i + 2), line.weight * line.height, light);
  }
}

}  // namespace

double TextWidth(std::string_view text, double height) { return TextUnits(text) * height / kCapitals; }

double HeightToFit(std::string_view text, double width, double most) {
  return std::min(most, width * kCapitals / std::max(1.0, TextUnits(text)));
}

Box TextBox(const TextLine& line) {
  const double half = 0.5 * TextUnits(line.text) + line.weight * kCapitals;
  const double reach = 0.5 * kCapitals + kBaseLine + line.weight * kCapitals;
  const Point first = Place(line, -half, reach);
  const Point last = Place(line, half, -reach);
  return {std::min(first.x, last.x) - 1.0, std::min(first.y, last.y) - 1.0, std::max(first.x, last.x) + 1.0,
          std::max(first.y, last.y) + 1.0};
}

void WriteText(Canvas& canvas, const TextLine& line, const Light& light) {
  double start = -0.5 * TextUnits(line.text);
  for (const char character : line.text) {
    const Glyph& glyph = GlyphOf(character);
    DrawGlyph(canvas, line, glyph, start, light);
    start += glyph.width + kGap;
  }
}

}  // namespace Simulator
