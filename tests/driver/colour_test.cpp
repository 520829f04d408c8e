// colour_test.cpp
// What a colour camera's profile makes of its pixels: which of them are red, and whether grey values are stretched.
#include <array>

#include "VimbaC.h"
#include "bbaseaoi.h"
#include "driver/opened_camera.h"
#include "support/picture_file.h"

namespace {

using ChannelSums = std::array<long, 3>;  // red, green, blue

struct Colour : OpenedCamera {
  // A camera that looks at an even, grey picture, without noise.
  bool OpenAtGrey(const SimulatedCamera& camera) {
    const std::filesystem::path file = profile.Path().parent_path() / "grey.png";
    WriteGreyPng(file, 64, 48, std::vector<std::uint8_t>(std::size_t{64} * 48, 90));
    return Open(SimulatedCamera(camera).With("noise", false).With("scene", {{"picture", file.string()}}));
  }
  void SnapInto(BBaseAoi& aoi) {
    Device().StartSnap(true);
    ASSERT_EQ(Device().Snap(&aoi, 5000), BError());
    Device().StopSnap();
  }
  ChannelSums Sums() {
    BBaseAoi aoi(BBaseAoi::eRgb, L"[l]");
    SnapInto(aoi);
    ChannelSums sums{};
    for (int y = 0; y < 48; ++y) {
      for (std::size_t i = 0; i < std::size_t{3} * 64; ++i) sums[i % 3] += aoi.Rgb()->Row(y)[i];
    }
    return sums;
  }
};

struct Mosaic {
  const char* name;
  const char* profile;  // or null
  const char* sensor;
};

struct Mosaics : Colour, testing::WithParamInterface<Mosaic> {};

// Only where the converter knows the sensor's order does more red light make the red channel brighter and no other.
TEST_P(Mosaics, AreConvertedInTheProfilesOrder) {
  if (GetParam().profile) profile.Key("Bayertype", GetParam().profile);
  profile.Key("WHITEBALANCERED", "100").Key("WBCOLORRED", "100");
  ASSERT_TRUE(OpenAtGrey(SimulatedCamera().Colour(GetParam().sensor)));
  const ChannelSums before = Sums();
  ASSERT_TRUE(Device().SetWhiteBalanceRed(180, true));
  const ChannelSums after = Sums();
  EXPECT_GT(after[0], before[0] * 5 / 4);
  EXPECT_EQ(after[1], before[1]);
  EXPECT_EQ(after[2], before[2]);
}

constexpr Mosaic kMosaics[] = {
    {"Bggr", "BGGR", "BGGR"}, {"Rggb", "RGGB", "RGGB"},  {"Gbrg", "GBRG", "GBRG"},
    {"Grbg", "GRBG", "GRBG"}, {"None", nullptr, "GRBG"},
};

INSTANTIATE_TEST_SUITE_P(EveryOrder, Mosaics, testing::ValuesIn(kMosaics),
                         [](const auto& mosaic) { return mosaic.param.name; });

// The area as a snap of one frame that calls itself Mono8 leaves it.
std::vector<std::uint8_t> PixelsOf(BBaseAoi& aoi) {
  std::vector<std::uint8_t> pixels;
  for (int y = 0; y < 48; ++y) pixels.insert(pixels.end(), aoi.Mono()->Row(y), aoi.Mono()->Row(y) + 64);
  return pixels;
}

TEST_F(Colour, GreyValuesAreStretchedOnlyWhereTheProfileAsksForIt) {
  std::vector<std::vector<std::uint8_t>> pictures;
  for (const char* stretch : {"", "0", "1"}) {
    profile.Key("Bayertype", "RGGB").Key("YUVSTRETCH", stretch);
    ASSERT_TRUE(OpenAtGrey(SimulatedCamera().Colour()));
    Device().StartSnap(false);
    cameras->Deliver({{"pixelFormat", VmbPixelFormatMono8}});
    BBaseAoi aoi(BBaseAoi::eMono8);
    ASSERT_EQ(Device().Snap(&aoi, 5000), BError());
    pictures.push_back(PixelsOf(aoi));
    device.reset();
  }
  EXPECT_EQ(pictures[0], pictures[1]);
  EXPECT_NE(pictures[0], pictures[2]);
}

}  // namespace
