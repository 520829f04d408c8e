// pixel_formats.h
// The pixel formats that the driver sets and converts.
#pragma once

#include <cstdint>

#include "bsize.h"
#include "wstring.h"

// Feature entries of "PixelFormat".
namespace PixelFormatName {
inline constexpr char kMono8[] = "Mono8";
inline constexpr char kYuv422[] = "YUV422Packed";
inline constexpr char kRgb8[] = "RGB8Packed";
}  // namespace PixelFormatName

// A profile's word for the sensor's colour filter, as the number that the host's colour converter takes: 0 "BGGR",
// 1 "RGGB", 2 "GBRG", 3 any other.
int BayerOrderOf(const WString& profile_text);

// The raw format of a sensor with that order.
const char* BayerFormatName(int bayer_order);

bool IsBayer8(std::uint32_t pixel_format);

// Bytes of a frame of this size; 0 for a format that the driver does not copy.
std::int64_t BytesOfFrame(std::uint32_t pixel_format, const BSize& size);
