// scaled_picture_test.cpp
// Pictures made smaller, against a plain reference.
#include "view/pictures/scaled_picture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

#include "gtest/gtest.h"

namespace {

using Kelcam::Pixels;
using Kelcam::ScaledDown;
using Kelcam::ScaledPicture;

// Rows with a gap between them, of noise: nothing in it is smooth.
struct NoisePicture {
  NoisePicture(BSize size, std::size_t channels, unsigned seed)
      : line_length_bytes(static_cast<std::size_t>(size.width) * channels + 13),
        bytes(line_length_bytes * static_cast<std::size_t>(size.height)),
        pixels{bytes.data(), line_length_bytes, size, channels} {
    std::mt19937 random(seed);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
  }

  std::size_t line_length_bytes;
  std::vector<std::uint8_t> bytes;
  Pixels pixels;
};

// How much of source pixel `at` lies between the two ends.
double Covered(int at, double begin, double end) {
  return std::max(0.0, std::min(at + 1.0, end) - std::max<double>(at, begin));
}

double MeanOver(const Pixels& pixels, double left, double right, double top, double bottom, std::size_t channel) {
  double sum = 0.0;
  double weights = 0.0;
  for (int y = static_cast<int>(top); y < std::min<double>(bottom, pixels.size.height); ++y) {
    for (int x = static_cast<int>(left); x < std::min<double>(right, pixels.size.width); ++x) {
      const double weight = Covered(x, left, right) * Covered(y, top, bottom);
      sum += weight * pixels.Row(y)[static_cast<std::size_t>(x) * pixels.channels + channel];
      weights += weight;
    }
  }
  return sum / weights;
}

double LargestDifference(const ScaledPicture& scaled, const Pixels& pixels) {
  const double step_x = static_cast<double>(pixels.size.width) / scaled.size.width;
  const double step_y = static_cast<double>(pixels.size.height) / scaled.size.height;
  double largest = 0.0;
  for (int y = 0; y < scaled.size.height; ++y) {
    for (int x = 0; x < scaled.size.width; ++x) {
      for (std::size_t c = 0; c < scaled.channels; ++c) {
        const double mean = MeanOver(pixels, step_x * x, step_x * (x + 1), step_y * y, step_y * (y + 1), c);
        const int value = scaled.View().Row(y)[static_cast<std::size_t>(x) * scaled.channels + c];
        largest = std::max(largest, std::abs(value - mean));
      }
    }
  }
  return largest;
}

TEST(ScaledPictures, EachPixelIsTheMeanOfWhatItCovers) {
  for (const std::size_t channels : {std::size_t{1}, std::size_t{3}}) {
    const NoisePicture picture({97, 61}, channels, 7);
    for (const int width : {1, 2, 3, 10, 31, 48, 49, 60, 96, 97}) {
      const ScaledPicture scaled = ScaledDown(picture.pixels, width);

      EXPECT_EQ(scaled.size.width, width);
      // Weights are parts of 256, of which each of the few pixels at a border may have half a part too much.
      EXPECT_LT(LargestDifference(scaled, picture.pixels), 2.5) << width << " of " << channels << " channels";
    }
  }
}

TEST(ScaledPictures, AnEvenPictureStaysEven) {
  for (const int value : {0, 1, 127, 254, 255}) {
    NoisePicture picture({1000, 333}, 1, 1);
    std::fill(picture.bytes.begin(), picture.bytes.end(), static_cast<std::uint8_t>(value));
    for (const int width : {1, 7, 333, 640, 999}) {
      const ScaledPicture scaled = ScaledDown(picture.pixels, width);

      EXPECT_EQ(static_cast<int>(*std::min_element(scaled.bytes.begin(), scaled.bytes.end())), value) << width;
      EXPECT_EQ(static_cast<int>(*std::max_element(scaled.bytes.begin(), scaled.bytes.end())), value) << width;
    }
  }
}

TEST(ScaledPictures, AtItsOwnWidthAPictureStaysAsItIs) {
  const NoisePicture picture({64, 48}, 3, 3);

  const ScaledPicture scaled = ScaledDown(picture.pixels, 64);

  for (int y = 0; y < 48; ++y) {
    EXPECT_TRUE(std::equal(picture.pixels.Row(y), picture.pixels.Row(y) + 64 * 3, scaled.View().Row(y)));
  }
}

TEST(ScaledPictures, TheHeightKeepsTheProportionsAndIsNeverNothing) {
  EXPECT_EQ(Kelcam::HeightFor(1280, {2464, 2056}), 1068);
  EXPECT_EQ(Kelcam::HeightFor(1, {2464, 2}), 1);
}

}  // namespace
