// yuv_test.cpp
// YUV422 and stretched luma against the real-valued formulas, in every vector unit's way of doing it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "bcolorconverter.h"
#include "every_kernel.h"
#include "pictures.h"

namespace {

using Pictures::Bytes;
using Pictures::Frame;

int Rounded(double value) { return static_cast<int>(std::clamp(std::floor(value + 0.5), 0.0, 255.0)); }

// BT.601 at full range, from its two defining weights.
std::array<int, 3> RealRgb(int y, int u, int v) {
  constexpr double kRed = 0.299;
  constexpr double kBlue = 0.114;
  const double red = y + 2 * (1 - kRed) * (v - 128);
  const double blue = y + 2 * (1 - kBlue) * (u - 128);
  const double green = y - (kRed * (red - y) + kBlue * (blue - y)) / (1 - kRed - kBlue);
  return {Rounded(red), Rounded(green), Rounded(blue)};
}

// The same as the header defines it in whole numbers: 64ths, each chroma product rounded down.
std::array<int, 3> DefinedRgb(int y, int u, int v) {
  const auto product = [](double weight, int chroma) { return std::floor(weight * (chroma - 128) / 256); };
  return {Rounded((64 * y + product(22970, v)) / 64), Rounded((64 * y - product(5638, u) - product(11700, v)) / 64),
          Rounded((64 * y + product(29032, u)) / 64)};
}

Bytes DefinedImage(const Frame& frame) {
  Bytes bytes;
  const int width = frame.size.width;
  for (int y = 0; y < frame.size.height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int pair = x / 2 * 4;
      const bool alone = x % 2 == 0 && x + 1 == width;
      const int v = !alone ? frame.At(pair + 2, y) : x > 0 ? frame.At(pair - 2, y) : 128;
      for (int value : DefinedRgb(frame.At(2 * x + 1, y), frame.At(pair, y), v)) {
        bytes.push_back(static_cast<std::uint8_t>(value));
      }
    }
  }
  return bytes;
}

class Yuv : public EveryKernel {
 protected:
  static Bytes Converted(const Frame& frame) {
    auto target = Pictures::GuardedImage<BImageRgb>(frame.size);
    BColorConverter(frame.size, 0, frame.padding).ConvertYUV422ToRGB(frame.bytes.data(), target);
    EXPECT_EQ(Pictures::TouchedGuards(target), 0);
    return Pictures::PixelsOf(target);
  }
};

// One row for each sampled pair of chroma values; all values of luma lie in it.
TEST_P(Yuv, EveryColourIsWithinOneOfTheRoundedFormula) {
  Frame row{{256, 1}, 0, 2, Bytes(512)};
  for (int u = 0; u < 256; u += u % 17 == 0 ? 1 : 4) {
    for (int v = 0; v < 256; v += 3) {
      for (int x = 0; x < 256; ++x) {
        row.bytes[std::size_t{2} * static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(x % 2 == 0 ? u : v);
        row.bytes[std::size_t{2} * static_cast<std::size_t>(x) + 1] = static_cast<std::uint8_t>(x);
      }
      const Bytes made = Converted(row);
      for (int i = 0; i < 256 * 3; ++i) {
        const auto at = static_cast<std::size_t>(i);
        ASSERT_NEAR(made[at], RealRgb(i / 3, u, v)[at % 3], 1) << "y " << i / 3 << ", u " << u << ", v " << v;
        ASSERT_EQ(made[at], DefinedRgb(i / 3, u, v)[at % 3]) << "y " << i / 3 << ", u " << u << ", v " << v;
      }
    }
  }
}

TEST_P(Yuv, EverySizeMeetsTheDefinitionWithAndWithoutPadding) {
  for (int width = 1; width <= 280; ++width) {
    for (int padding : {0, 3}) {
      const Frame frame = Pictures::RandomFrame({width, 2}, padding, static_cast<unsigned>(width), 2);
      ASSERT_EQ(Converted(frame), DefinedImage(frame)) << "width " << width << ", padding " << padding;
    }
  }
}

TEST_P(Yuv, GreyStaysGrey) {
  Frame frame{{256, 1}, 0, 2, Bytes(512, 128)};
  Bytes expected;
  for (int x = 0; x < 256; ++x) {
    frame.bytes[std::size_t{2} * static_cast<std::size_t>(x) + 1] = static_cast<std::uint8_t>(x);
    expected.insert(expected.end(), 3, static_cast<std::uint8_t>(x));
  }
  EXPECT_EQ(Converted(frame), expected);
}

TEST_P(Yuv, StretchingTakes16To235To0To255) {
  for (int width = 1; width <= 280; ++width) {
    Frame frame{{width, 2}, width % 3, 1, {}};
    frame.bytes.resize(frame.LineLength() * 2);
    for (std::size_t i = 0; i < frame.bytes.size(); ++i) frame.bytes[i] = static_cast<std::uint8_t>(i);
    auto target = Pictures::GuardedImage<BImage8u>(frame.size);

    BColorConverter(frame.size, 0, frame.padding).StretchYUV(frame.bytes.data(), target);

    Bytes expected;
    for (int i = 0; i < 2 * width; ++i) {
      expected.push_back(static_cast<std::uint8_t>(Rounded((frame.At(i % width, i / width) - 16) * 255.0 / 219.0)));
    }
    ASSERT_EQ(Pictures::PixelsOf(target), expected) << "width " << width;
    ASSERT_EQ(Pictures::TouchedGuards(target), 0);
  }
}

TEST_P(Yuv, StretchingIsExactForEveryValue) {
  Frame frame{{256, 1}, 0, 1, Bytes(256)};
  Bytes expected;
  for (int y = 0; y < 256; ++y) {
    frame.bytes[static_cast<std::size_t>(y)] = static_cast<std::uint8_t>(y);
    expected.push_back(static_cast<std::uint8_t>(Rounded((y - 16) * 255.0 / 219.0)));
  }
  BImage8u target(frame.size);

  BColorConverter(frame.size, 0).StretchYUV(frame.bytes.data(), target);

  EXPECT_EQ(Pictures::PixelsOf(target), expected);
}

INSTANTIATE_TEST_SUITE_P(Kernels, Yuv, testing::ValuesIn(KernelNames()), KernelOf);

}  // namespace
