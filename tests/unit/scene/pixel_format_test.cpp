// scene/pixel_format_test.cpp
// The pixel formats against each other; area of interest and binning in each.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "unit/scene/shots.h"

namespace SceneTest {

namespace {

constexpr int kWidth = 120;
constexpr int kHeight = 90;

constexpr std::array<std::uint32_t, 7> kFormats{VmbPixelFormatMono8,    VmbPixelFormatBayerGR8, VmbPixelFormatBayerRG8,
                                                VmbPixelFormatBayerGB8, VmbPixelFormatBayerBG8, VmbPixelFormatRgb8,
                                                VmbPixelFormatYuv422};

struct Mosaic {
  std::uint32_t format;
  // The channels of the four corner pixels, in reading order.
  std::array<std::size_t, 4> channels;
};
constexpr std::array<Mosaic, 4> kMosaics{{{VmbPixelFormatBayerGR8, {1, 0, 2, 1}},
                                          {VmbPixelFormatBayerRG8, {0, 1, 1, 2}},
                                          {VmbPixelFormatBayerGB8, {1, 2, 0, 1}},
                                          {VmbPixelFormatBayerBG8, {2, 1, 1, 0}}}};

std::size_t BytesPerPixel(std::uint32_t format) { return (format >> 16 & 0xFF) / 8; }

void ExpectMosaicOf(const Mosaic& mosaic, Simulator::Shot shot) {
  const auto scene = ColourChart(kWidth, kHeight);
  shot.pixel_format = VmbPixelFormatRgb8;
  const Bytes rgb = Take(*scene, shot);
  shot.pixel_format = mosaic.format;
  const Bytes raw = Take(*scene, shot);
  for (int y = 0; y < shot.height; ++y) {
    for (int x = 0; x < shot.width; ++x) {
      const std::size_t channel =
          mosaic.channels[static_cast<std::size_t>((shot.offset_y + y) % 2 * 2 + (shot.offset_x + x) % 2)];
      ASSERT_EQ(raw[static_cast<std::size_t>(y * shot.width + x)], PixelAt(rgb, shot, x, y)[channel])
          << std::hex << mosaic.format << std::dec << " at " << x << ", " << y;
    }
  }
}

Simulator::Shot ColouredShot() {
  Simulator::Shot shot = WholeShot(VmbPixelFormatRgb8, kWidth, kHeight);
  shot.balance_red = 1.3;
  shot.balance_blue = 0.8;
  shot.frame_number = 123456;
  shot.time_s = 0.4;
  return shot;
}

TEST(PixelFormats, BayerSamplesAreTheRgbChannelsOfTheirPlaces) {
  for (const Mosaic& mosaic : kMosaics) ExpectMosaicOf(mosaic, ColouredShot());
}

TEST(PixelFormats, BinnedBayerDataKeepTheFormatsPhase) {
  Simulator::Shot shot = ColouredShot();
  shot.binning_x = 2;
  shot.binning_y = 3;
  shot.width = kWidth / 2;
  shot.height = kHeight / 3;
  for (const Mosaic& mosaic : kMosaics) ExpectMosaicOf(mosaic, shot);
}

TEST(PixelFormats, BayerSamplesFollowTheSensorAtOddOffsets) {
  Simulator::Shot shot = ColouredShot();
  shot.offset_x = 13;
  shot.offset_y = 7;
  shot.width = 80;
  shot.height = 60;
  for (const Mosaic& mosaic : kMosaics) ExpectMosaicOf(mosaic, shot);
}

TEST(PixelFormats, AreaOfInterestIsACropOfTheWholePicture) {
  const auto scene = ColourChart(kWidth, kHeight);
  for (const std::uint32_t format : kFormats) {
    Simulator::Shot shot = ColouredShot();
    shot.pixel_format = format;
    const Bytes whole = Take(*scene, shot);
    shot.offset_x = 24;
    shot.offset_y = 30;
    shot.width = 66;
    shot.height = 51;
    const Bytes part = Take(*scene, shot);
    const std::size_t bytes = BytesPerPixel(format);
    for (std::size_t y = 0; y < 51; ++y) {
      const auto row = part.begin() + static_cast<std::ptrdiff_t>(y * 66 * bytes);
      const auto same = whole.begin() + static_cast<std::ptrdiff_t>(((y + 30) * kWidth + 24) * bytes);
      ASSERT_TRUE(std::equal(row, row + static_cast<std::ptrdiff_t>(66 * bytes), same)) << format << " row " << y;
    }
  }
}

TEST(PixelFormats, WhatLiesBesideTheSensorIsBlack) {
  Simulator::Shot shot = WholeShot(VmbPixelFormatMono8, 4, 4);
  shot.offset_x = kWidth - 2;
  shot.offset_y = kHeight - 1;
  const Bytes picture = Take(*MonoChart(kWidth, kHeight), shot);
  EXPECT_EQ(Bytes(picture.begin(), picture.begin() + 4), (Bytes{243, 243, 0, 0}));
  EXPECT_EQ(Bytes(picture.begin() + 4, picture.end()), Bytes(12, 0));
}

TEST(PixelFormats, BinnedPixelsHaveTheMeanOfTheirLight) {
  const auto scene = MonoChart(kWidth, kHeight);
  Simulator::Shot shot = WholeShot(VmbPixelFormatMono8, kWidth, kHeight);
  const Bytes single = Take(*scene, shot);
  shot.binning_x = 3;
  shot.binning_y = 2;
  shot.width = kWidth / 3;
  shot.height = kHeight / 2;
  const Bytes binned = Take(*scene, shot);
  for (std::size_t i = 0; i < binned.size(); ++i) {
    const std::size_t first = i / 40 * 2 * kWidth + i % 40 * 3;
    double light = 0;
    for (const std::size_t column : {0u, 1u, 2u}) {
      light += Linear(single[first + column]) + Linear(single[first + kWidth + column]);
    }
    ASSERT_NEAR(Linear(binned[i]), light / 6, 0.012) << i % 40 << ", " << i / 40;
  }
}

TEST(PixelFormats, Yuv422IsBt601OfTheRgbPicture) {
  const auto scene = ColourChart(kWidth, kHeight);
  Simulator::Shot shot = ColouredShot();
  const Bytes rgb = Take(*scene, shot);
  shot.pixel_format = VmbPixelFormatYuv422;
  const Bytes yuv = Take(*scene, shot);
  for (std::size_t pair = 0; pair < yuv.size() / 4; ++pair) {
    const std::uint8_t* first = &rgb[pair * 6];
    const auto luma = [](const std::uint8_t* p) { return 0.299 * p[0] + 0.587 * p[1] + 0.114 * p[2]; };
    const double mean = (luma(first) + luma(first + 3)) / 2;
    const std::array<double, 4> expected{128 + (0.5 * (first[2] + first[5]) - mean) / 1.772, luma(first),
                                         128 + (0.5 * (first[0] + first[3]) - mean) / 1.402, luma(first + 3)};
    for (std::size_t i = 0; i < 4; ++i)
      ASSERT_NEAR(yuv[pair * 4 + i], std::min(255.0, expected[i]), 1.0) << pair << ", " << i;
  }
}

TEST(PixelFormats, OddRowsOfYuv422EndAfterTheirLastLuma) {
  const auto scene = ColourChart(kWidth, kHeight);
  for (const int width : {1, 9}) {
    Simulator::Shot shot = ColouredShot();
    shot.pixel_format = VmbPixelFormatYuv422;
    shot.width = width;
    Bytes whole = Take(*scene, shot);
    // Each row at the end of a buffer: what lay behind it stays.
    shot.height = 1;
    for (int y = 0; y < kHeight; ++y) {
      shot.offset_y = y;
      Bytes row(2 * static_cast<std::size_t>(width) + 4, 77);
      scene->Render(shot, row.data());
      const auto begin = whole.begin() + std::ptrdiff_t{y} * 2 * width;
      ASSERT_TRUE(std::equal(begin, begin + std::ptrdiff_t{2} * width, row.begin())) << width << ", " << y;
      ASSERT_EQ(Bytes(row.end() - 4, row.end()), Bytes(4, 77)) << width << ", " << y;
    }
  }
}

TEST(PixelFormats, Mono8OfAColourSensorIsTheLumaOfItsRgbPicture) {
  const auto scene = ColourChart(kWidth, kHeight);
  Simulator::Shot shot = ColouredShot();
  const Bytes rgb = Take(*scene, shot);
  shot.pixel_format = VmbPixelFormatMono8;
  const Bytes mono = Take(*scene, shot);
  for (std::size_t i = 0; i < mono.size(); ++i) {
    ASSERT_NEAR(mono[i], 0.299 * rgb[3 * i] + 0.587 * rgb[3 * i + 1] + 0.114 * rgb[3 * i + 2], 0.6) << i;
  }
}

TEST(PixelFormats, MonochromeSensorIsGreyInEveryFormat) {
  const auto scene = MonoChart(kWidth, kHeight);
  const Bytes mono = Take(*scene, WholeShot(VmbPixelFormatMono8, kWidth, kHeight));
  for (const Mosaic& mosaic : kMosaics) EXPECT_EQ(Take(*scene, WholeShot(mosaic.format, kWidth, kHeight)), mono);
  const Bytes rgb = Take(*scene, WholeShot(VmbPixelFormatRgb8, kWidth, kHeight));
  const Bytes yuv = Take(*scene, WholeShot(VmbPixelFormatYuv422, kWidth, kHeight));
  for (std::size_t i = 0; i < mono.size(); ++i) {
    ASSERT_EQ(
        Bytes(rgb.begin() + static_cast<std::ptrdiff_t>(3 * i), rgb.begin() + static_cast<std::ptrdiff_t>(3 * i + 3)),
        Bytes(3, mono[i]));
    ASSERT_EQ(yuv[2 * i], 128);
    ASSERT_EQ(yuv[2 * i + 1], mono[i]);
  }
}

TEST(PixelFormats, UnknownFormatsAndBinningsAreRefused) {
  const auto scene = MonoChart(kWidth, kHeight);
  std::uint8_t untouched = 77;
  Simulator::Shot shot = WholeShot(0x01100003, 1, 1);
  EXPECT_THROW(scene->Render(shot, &untouched), std::invalid_argument);
  shot.pixel_format = VmbPixelFormatMono8;
  shot.binning_y = 0;
  EXPECT_THROW(scene->Render(shot, &untouched), std::invalid_argument);
  EXPECT_EQ(untouched, 77);
}

}  // namespace

}  // namespace SceneTest
