// pixel_formats_test.cpp
// Bayer orders, raw formats and how many bytes a frame needs.
#include "vimba/pixel_formats.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "VimbaC.h"

namespace {

TEST(PixelFormats, AreNamedAsTheCameraNamesThem) {
  EXPECT_STREQ(PixelFormatName::kMono8, "Mono8");
  EXPECT_STREQ(PixelFormatName::kYuv422, "YUV422Packed");
  EXPECT_STREQ(PixelFormatName::kRgb8, "RGB8Packed");
}

TEST(PixelFormats, AProfilesWordGivesTheBayerOrder) {
  struct Row {
    const wchar_t* word;
    int order;
  };
  const Row rows[] = {{L"BGGR", 0},  {L"bggr", 0},  {L"RGGB", 1}, {L"Rggb", 1},  {L"GBRG", 2},
                      {L"gbRG", 2},  {L"GRBG", 3},  {L"", 3},     {L"BGGR ", 3}, {L"RGG", 3},
                      {L"BAYER", 3}, {L" RGGB", 3}, {L"0", 3}};
  for (const Row& row : rows) EXPECT_EQ(BayerOrderOf(row.word), row.order) << testing::PrintToString(row.word);
}

TEST(PixelFormats, EachBayerOrderHasItsRawFormat) {
  EXPECT_STREQ(BayerFormatName(0), "BayerBG8");
  EXPECT_STREQ(BayerFormatName(1), "BayerRG8");
  EXPECT_STREQ(BayerFormatName(2), "BayerGB8");
  EXPECT_STREQ(BayerFormatName(3), "BayerGR8");
}

TEST(PixelFormats, FourNumbersAreRawFormats) {
  for (std::uint32_t format = VmbPixelFormatBayerGR8; format <= VmbPixelFormatBayerBG8; ++format) {
    EXPECT_TRUE(IsBayer8(format)) << format;
  }
  constexpr std::uint32_t kOthers[] = {VmbPixelFormatBayerGR8 - 1, VmbPixelFormatBayerBG8 + 1, VmbPixelFormatMono8,
                                       VmbPixelFormatRgb8,         VmbPixelFormatYuv422,       0,
                                       ~std::uint32_t{0}};
  for (const std::uint32_t format : kOthers) {
    EXPECT_FALSE(IsBayer8(format)) << format;
  }
}

TEST(PixelFormats, AFrameNeedsItsBytesByFormatAndSize) {
  struct Row {
    std::uint32_t format;
    BSize size;
    std::int64_t bytes;
  };
  constexpr std::int32_t kLongest = std::numeric_limits<std::int32_t>::max();
  const Row rows[] = {{VmbPixelFormatMono8, {2464, 2056}, 5'065'984},
                      {VmbPixelFormatBayerGR8, {5, 3}, 15},
                      {VmbPixelFormatBayerRG8, {5, 3}, 15},
                      {VmbPixelFormatBayerGB8, {5, 3}, 15},
                      {VmbPixelFormatBayerBG8, {5, 3}, 15},
                      {VmbPixelFormatYuv422, {5, 3}, 30},
                      {VmbPixelFormatYuv422, {2464, 2056}, 10'131'968},
                      {VmbPixelFormatMono8, {0, 3}, 0},
                      {VmbPixelFormatRgb8, {5, 3}, 0},
                      {0x01080002, {5, 3}, 0},
                      {0, {5, 3}, 0},
                      {VmbPixelFormatMono8, {kLongest, kLongest}, 4'611'686'014'132'420'609},
                      {VmbPixelFormatYuv422, {kLongest, kLongest}, 9'223'372'028'264'841'218}};
  for (const Row& row : rows) EXPECT_EQ(BytesOfFrame(row.format, row.size), row.bytes) << std::hex << row.format;
}

}  // namespace
