// scene/canvas.h
// Anti-aliased drawing in linear light, into a band of rows of the whole picture.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace Simulator {

using Light = std::array<std::uint16_t, 3>;

// The light of a patch that looks like this sRGB colour.
Light LightOfSrgb(int red, int green, int blue);

struct Point {
  double x = 0;
  double y = 0;
};

struct Box {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  double Width() const { return right - left; }
  double Height() const { return bottom - top; }
};

// Coordinates are those of the whole picture, in pixels from its top left corner. What falls outside the window is
// clipped. The window can be a band of rows, so that a large picture is drawn in little memory.
class Canvas {
 public:
  Canvas(int left, int top, int width, int height);

  int Left() const { return m_left; }
  int Top() const { return m_top; }
  int Width() const { return m_width; }
  int Height() const { return m_height; }
  bool Touches(const Box& box) const;
  // Row `y` of the whole picture: red, green, blue of each pixel.
  const std::uint16_t* Row(int y) const { return &m_pixels[Index(0, y)]; }
  std::uint16_t* Row(int y) { return &m_pixels[Index(0, y)]; }

  void Fill(const Light& light);
  void FillBox(const Box& box, const Light& light);
  void FillDisc(Point centre, double radius, const Light& light);
  void FillRing(Point centre, double radius, double thickness, const Light& light);
  // A straight stroke with round ends; a dot when both ends are the same point.
  void Stroke(Point from, Point to, double thickness, const Light& light);
  // Corners in either order.
  void FillTriangle(Point a, Point b, Point c, const Light& light);

  // Paints each pixel within the box by `coverage(x, y)` of its middle: 0 and below leave it, 1 and above cover it.
  template <typename Coverage>
  void Paint(const Box& box, const Light& light, Coverage coverage) {
    const Window window = Clip(box);
    for (int y = window.top; y < window.bottom; ++y) {
      std::uint16_t* pixel = &m_pixels[Index(window.left - m_left, y)];
      for (int x = window.left; x < window.right; ++x, pixel += 3) {
        Blend(pixel, light, coverage(x + 0.5, y + 0.5));
      }
    }
  }

 private:
  struct Window {
    int left;
    int top;
    int right;
    int bottom;
  };
  Window Clip(const Box& box) const;
  static void Blend(std::uint16_t* pixel, const Light& light, double coverage);
  std::size_t Index(int column, int y) const {
    return (static_cast<std::size_t>(y - m_top) * static_cast<std::size_t>(m_width) +
            static_cast<std::size_t>(column)) *
           3;
  }

  int m_left;
  int m_top;
  int m_width;
  int m_height;
  std::vector<std::uint16_t> m_pixels;
};

}  // namespace Simulator
