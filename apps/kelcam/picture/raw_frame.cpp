// raw_frame.cpp
// The frame of a camera as it came, found in the picture that the driver made of it.
#include "picture/raw_frame.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <tuple>

#include "base/failure.h"
#include "bcolorconverter.h"
#include "bsmartref.h"

namespace Kelcam {
namespace {

constexpr wchar_t kBayerTypeKey[] = L"Bayertype";

// By the letters of the 2 x 2 tile, row by row.
struct BayerOrderName {
  int order;
  const char* tile;
  const wchar_t* name;
};
constexpr BayerOrderName kBayerOrders[] = {{BColorConverter::eBGGR, "BGGR", L"BGGR"},
                                           {BColorConverter::eRGGB, "RGGB", L"RGGB"},
                                           {BColorConverter::eGBRG, "GBRG", L"GBRG"},
                                           {BColorConverter::eGRBG, "GRBG", L"GRBG"}};

// Of a grey picture every channel is the same.
constexpr const char* kAllRed = "RRRR";

const char* TileOf(int bayer_order) {
  const auto* const found = std::find_if(std::begin(kBayerOrders), std::end(kBayerOrders),
                                         [&](const BayerOrderName& known) { return known.order == bayer_order; });
  return found->tile;
}

std::size_t ChannelOf(char colour) { return colour == 'R' ? 0 : colour == 'G' ? 1 : 2; }

BImage8u SamplesOf(const BImageRgb& picture, const char* tile) {
  const BSize size = picture.Size();
  BImage8u samples(size);
  for (int y = 0; y < size.height; ++y) {
    const std::uint8_t* from = picture.Row(y);
    std::uint8_t* to = samples.Row(y);
    const char* row = y % 2 == 0 ? tile : tile + 2;
    const std::size_t channels[] = {ChannelOf(row[0]), ChannelOf(row[1])};
    for (int x = 0; x < size.width; ++x, from += BImageRgb::kChannels) to[x] = from[channels[x % 2]];
  }
  return samples;
}

bool AreEqual(const BImageRgb& a, const BImageRgb& b) {
  const std::size_t row_bytes = static_cast<std::size_t>(a.Size().width) * BImageRgb::kChannels;
  for (int y = 0; y < a.Size().height; ++y) {
    if (std::memcmp(a.Row(y), b.Row(y), row_bytes) != 0) return false;
  }
  return true;
}

bool IsFromMosaic(const BImageRgb& picture, const BImage8u& mosaic, int bayer_order) {
  const BSize size = picture.Size();
  const int padding_bytes = static_cast<int>(mosaic.LineLength()) - size.width;
  const BSmartRef<BColorConverter> converter(new BColorConverter(size, bayer_order, padding_bytes));
  BImageRgb again(size);
  converter->ConvertFastRawToRGB(mosaic.Row(0), again);
  return AreEqual(picture, again);
}

bool IsFromGrey(const BImageRgb& picture, const BImage8u& grey) {
  BImageRgb again(picture.Size());
  again.TakeGrey(grey);
  return AreEqual(picture, again);
}

}  // namespace

int BayerOrderOf(const IProfile& profile) {
  WString name;
  std::ignore = profile.ReadString(kBayerTypeKey, name);
  const auto* const found = std::find_if(std::begin(kBayerOrders), std::end(kBayerOrders),
                                         [&](const BayerOrderName& known) { return name.IEquals(known.name); });
  return found == std::end(kBayerOrders) ? static_cast<int>(BColorConverter::eGRBG) : found->order;
}

RawFrame RawFrameOf(const BImageRgb& picture, std::optional<int> bayer_order) {
  if (!bayer_order) {
    RawFrame frame{SamplesOf(picture, kAllRed), {}};
    if (!IsFromGrey(picture, frame.image))
      throw Failure("the camera's frame is not grey, so there is no raw picture of it");
    return frame;
  }
  const char* const tile = TileOf(*bayer_order);
  RawFrame frame{SamplesOf(picture, tile), tile};
  if (!IsFromMosaic(picture, frame.image, *bayer_order)) {
    throw Failure("the camera's frame is not a Bayer mosaic, so there is no raw picture of it");
  }
  return frame;
}

}  // namespace Kelcam
