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
  for (std::uint32_t format = 0x01080008; format <= 0x0108000B; ++format) EXPECT_TRUE(IsBayer8(format)) << format;
  for (const std::uint32_t format : {0x01080007U, 0x0108000CU, 0x01080001U, 0x02180014U, 0x0210001FU, 0U, ~0U}) {
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
  const Row rows[] = {{0x01080001, {2464, 2056}, 5'065'984},
                      {0x01080008, {5, 3}, 15},
                      {0x01080009, {5, 3}, 15},
                      {0x0108000A, {5, 3}, 15},
                      {0x0108000B, {5, 3}, 15},
                      {0x0210001F, {5, 3}, 30},
                      {0x0210001F, {2464, 2056}, 10'131'968},
                      {0x01080001, {0, 3}, 0},
                      {0x02180014, {5, 3}, 0},
                      {0x01080002, {5, 3}, 0},
                      {0, {5, 3}, 0},
                      {0x01080001, {kLongest, kLongest}, 4'611'686'014'132'420'609},
                      {0x0210001F, {kLongest, kLongest}, 9'223'372'028'264'841'218}};
  for (const Row& row : rows) EXPECT_EQ(BytesOfFrame(row.format, row.size), row.bytes) << std::hex << row.format;
}

}  // namespace
