// pixel_formats.cpp
// The pixel formats that the driver sets and converts.
#include "vimba/pixel_formats.h"

#include <array>

#include "VimbaC.h"

namespace {

struct BayerOrder {
  const wchar_t* profile_text;  // null: any other text
  const char* format;
};

// By Bayer order.
constexpr std::array<BayerOrder, 4> kBayerOrders{{
    {L"BGGR", "BayerBG8"},
    {L"RGGB", "BayerRG8"},
    {L"GBRG", "BayerGB8"},
    {nullptr, "BayerGR8"},
}};
constexpr int kOtherOrder = 3;

}  // namespace

int BayerOrderOf(const WString& profile_text) {
  for (int order = 0; order < kOtherOrder; ++order) {
    if (profile_text.IEquals(kBayerOrders[static_cast<std::size_t>(order)].profile_text)) return order;
  }
  return kOtherOrder;
}

const char* BayerFormatName(int bayer_order) { return kBayerOrders.at(static_cast<std::size_t>(bayer_order)).format; }

bool IsBayer8(std::uint32_t pixel_format) {
  return pixel_format >= VmbPixelFormatBayerGR8 && pixel_format <= VmbPixelFormatBayerBG8;
}

std::int64_t BytesOfFrame(std::uint32_t pixel_format, const BSize& size) {
  const std::int64_t width = size.width;
  const std::int64_t height = size.height;
  if (pixel_format == VmbPixelFormatMono8 || IsBayer8(pixel_format)) return width * height;
  if (pixel_format == VmbPixelFormatYuv422) return 2 * width * height;
  return 0;
}
