// scene/pixel_format_test.cpp
// The pixel formats against each other; area of interest and binning in each.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "unit/scene/shots.h"

namespace SceneTest {
namespace {

using Simulator::Shot;

constexpr int kWidth = 120;
constexpr int kHeight = 90;
// What a byte holds that nothing is written to.
constexpr std::uint8_t kUntouched = 77;

constexpr std::array<VmbPixelFormat_t, 7> kFormats{
    VmbPixelFormatMono8,    VmbPixelFormatBayerGR8, VmbPixelFormatBayerRG8, VmbPixelFormatBayerGB8,
    VmbPixelFormatBayerBG8, VmbPixelFormatRgb8,     VmbPixelFormatYuv422};

struct Mosaic {
  VmbPixelFormat_t format;
  // The channels of the four corner pixels, in reading order.
  std::array<std::size_t, 4> channels;
};
constexpr std::array<Mosaic, 4> kMosaics{{{VmbPixelFormatBayerGR8, {1, 0, 2, 1}},
                                          {VmbPixelFormatBayerRG8, {0, 1, 1, 2}},
                                          {VmbPixelFormatBayerGB8, {1, 2, 0, 1}},
                                          {VmbPixelFormatBayerBG8, {2, 1, 1, 0}}}};

void ExpectMosaicOf(const Mosaic& mosaic, Shot shot) {
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

Shot ColouredShot() {
  Shot shot = WholeShot(VmbPixelFormatRgb8, kWidth, kHeight);
  shot.balance_red = 1.3;
  shot.balance_blue = 0.8;
  shot.frame_number = 123456;
  shot.time = Simulator::Seconds(0.4);
  return shot;
}

TEST(PixelFormats, BayerSamplesAreTheRgbChannelsOfTheirPlaces) {
  for (const Mosaic& mosaic : kMosaics) ExpectMosaicOf(mosaic, ColouredShot());
}

TEST(PixelFormats, BinnedBayerDataKeepTheFormatsPhase) {
  Shot shot = ColouredShot();
  shot.binning_x = 2;
  shot.binning_y = 3;
  shot.width = kWidth / 2;
  shot.height = kHeight / 3;

  for (const Mosaic& mosaic : kMosaics) ExpectMosaicOf(mosaic, shot);
}

TEST(PixelFormats, BayerSamplesFollowTheSensorAtOddOffsets) {
  Shot shot = ColouredShot();
  shot.offset_x = 13;
  shot.offset_y = 7;
  shot.width = 80;
  shot.height = 60;

  for (const Mosaic& mosaic : kMosaics) ExpectMosaicOf(mosaic, shot);
}

// The bytes of the pixels (x, y) to (x + width - 1, y) of a picture that is `picture_width` pixels wide.
Bytes PartOfRow(const Bytes& picture, std::size_t bytes_per_pixel, int picture_width, int x, int y, int width) {
  const auto begin =
      picture.begin() + (std::ptrdiff_t{y} * picture_width + x) * static_cast<std::ptrdiff_t>(bytes_per_pixel);
  return {begin, begin + std::ptrdiff_t{width} * static_cast<std::ptrdiff_t>(bytes_per_pixel)};
}

class AreaOfInterest : public testing::TestWithParam<VmbPixelFormat_t> {};

TEST_P(AreaOfInterest, IsACropOfTheWholePicture) {
  const auto scene = ColourChart(kWidth, kHeight);
  const std::size_t bytes_per_pixel = BytesPerPixel(GetParam());
  Shot shot = ColouredShot();
  shot.pixel_format = GetParam();
  const Bytes whole = Take(*scene, shot);

  shot.offset_x = 24;
  shot.offset_y = 30;
  shot.width = 66;
  shot.height = 51;
  const Bytes part = Take(*scene, shot);

  for (int y = 0; y < shot.height; ++y) {
    ASSERT_EQ(PartOfRow(part, bytes_per_pixel, shot.width, 0, y, shot.width),
              PartOfRow(whole, bytes_per_pixel, kWidth, shot.offset_x, shot.offset_y + y, shot.width))
        << "row " << y;
  }
}

INSTANTIATE_TEST_SUITE_P(PixelFormats, AreaOfInterest, testing::ValuesIn(kFormats));

TEST(PixelFormats, PixelsOutsideTheSensorAreBlack) {
  Shot shot = WholeShot(VmbPixelFormatMono8, 4, 4);
  shot.offset_x = kWidth - 2;
  shot.offset_y = kHeight - 1;

  const Bytes picture = Take(*MonoChart(kWidth, kHeight), shot);

  EXPECT_EQ(Bytes(picture.begin(), picture.begin() + 4), (Bytes{243, 243, 0, 0}));
  EXPECT_EQ(Bytes(picture.begin() + 4, picture.end()), Bytes(12, 0));
}

TEST(PixelFormats, BinnedPixelsHaveTheMeanOfTheirLight) {
  const auto scene = MonoChart(kWidth, kHeight);
  Shot shot = WholeShot(VmbPixelFormatMono8, kWidth, kHeight);
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
  Shot shot = ColouredShot();
  const Bytes rgb = Take(*scene, shot);

  shot.pixel_format = VmbPixelFormatYuv422;
  const Bytes yuv = Take(*scene, shot);

  for (std::size_t pair = 0; pair < yuv.size() / 4; ++pair) {
    const std::uint8_t* first = &rgb[pair * 6];
    const auto luma = [](const std::uint8_t* p) { return 0.299 * p[0] + 0.587 * p[1] + 0.114 * p[2]; };
    const double mean = (luma(first) + luma(first + 3)) / 2;
    const std::array<double, 4> expected{128 + (0.5 * (first[2] + first[5]) - mean) / 1.772, luma(first),
                                         128 + (0.5 * (first[0] + first[3]) - mean) / 1.402, luma(first + 3)};
    for (std::size_t i = 0; i < 4; ++i) {
      ASSERT_NEAR(yuv[pair * 4 + i], std::min(255.0, expected[i]), 1.0) << pair << ", " << i;
    }
  }
}

class OddRowOfYuv422 : public testing::TestWithParam<int> {};

TEST_P(OddRowOfYuv422, EndsAfterItsLastLuma) {
  constexpr std::size_t kBytesPerPixel = 2;
  const int width = GetParam();
  const auto scene = ColourChart(kWidth, kHeight);
  Shot shot = ColouredShot();
  shot.pixel_format = VmbPixelFormatYuv422;
  shot.width = width;
  const Bytes whole = Take(*scene, shot);

  shot.height = 1;
  for (int y = 0; y < kHeight; ++y) {
    shot.offset_y = y;
    // The row alone and four bytes behind it, which stay as they are.
    Bytes expected = PartOfRow(whole, kBytesPerPixel, width, 0, y, width);
    expected.resize(expected.size() + 4, kUntouched);
    Bytes row(expected.size(), kUntouched);
    scene->Render(shot, row.data());
    ASSERT_EQ(row, expected) << "row " << y;
  }
}

INSTANTIATE_TEST_SUITE_P(PixelFormats, OddRowOfYuv422, testing::Values(1, 9));

TEST(PixelFormats, Mono8OfAColourSensorIsTheLumaOfItsRgbPicture) {
  const auto scene = ColourChart(kWidth, kHeight);
  Shot shot = ColouredShot();
  const Bytes rgb = Take(*scene, shot);

  shot.pixel_format = VmbPixelFormatMono8;
  const Bytes mono = Take(*scene, shot);

  for (std::size_t i = 0; i < mono.size(); ++i) {
    ASSERT_NEAR(mono[i], 0.299 * rgb[3 * i] + 0.587 * rgb[3 * i + 1] + 0.114 * rgb[3 * i + 2], 0.6) << i;
  }
}

TEST(PixelFormats, MonochromeSensorIsGreyInEveryFormat) {
  constexpr std::uint8_t kNoColour = 128;
  const auto scene = MonoChart(kWidth, kHeight);
  const Bytes mono = Take(*scene, WholeShot(VmbPixelFormatMono8, kWidth, kHeight));
  Bytes rgb;
  Bytes yuv;
  for (const std::uint8_t grey : mono) {
    rgb.insert(rgb.end(), 3, grey);
    yuv.insert(yuv.end(), {kNoColour, grey});
  }

  for (const Mosaic& mosaic : kMosaics) EXPECT_EQ(Take(*scene, WholeShot(mosaic.format, kWidth, kHeight)), mono);
  EXPECT_EQ(Take(*scene, WholeShot(VmbPixelFormatRgb8, kWidth, kHeight)), rgb);
  EXPECT_EQ(Take(*scene, WholeShot(VmbPixelFormatYuv422, kWidth, kHeight)), yuv);
}

TEST(PixelFormats, UnknownFormatIsRefused) {
  constexpr VmbPixelFormat_t kMono10 = 0x01100003;
  std::uint8_t byte = kUntouched;

  EXPECT_THROW(MonoChart(kWidth, kHeight)->Render(WholeShot(kMono10, 1, 1), &byte), std::invalid_argument);

  EXPECT_EQ(byte, kUntouched);
}

TEST(PixelFormats, BinningBelowOneIsRefused) {
  Shot shot = WholeShot(VmbPixelFormatMono8, 1, 1);
  shot.binning_y = 0;
  std::uint8_t byte = kUntouched;

  EXPECT_THROW(MonoChart(kWidth, kHeight)->Render(shot, &byte), std::invalid_argument);

  EXPECT_EQ(byte, kUntouched);
}

}  // namespace
}  // namespace SceneTest
