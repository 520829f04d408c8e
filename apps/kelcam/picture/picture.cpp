// picture.cpp
// Pictures as the bytes of their files.
#include "picture/picture.h"

#include <string>

#include "base/failure.h"
#include "picture/png.h"
#include "picture/tiff.h"

namespace Kelcam {
namespace {

// PGM (channels 1) and PPM (channels 3) differ in their first letters and in how often they repeat a grey value.
std::vector<std::uint8_t> EncodePlain(const Pixels& pixels, std::size_t channels, const PictureDetails& details) {
  if (pixels.channels > channels) throw Failure("a .pgm file cannot hold a colour picture");
  const std::string comment = details.bayer_order.empty() ? "" : "# Bayer order " + details.bayer_order + "\n";
  const std::string head = (channels == 1 ? "P5\n" : "P6\n") + comment + std::to_string(pixels.size.width) + " " +
                           std::to_string(pixels.size.height) + "\n255\n";
  std::vector<std::uint8_t> file(head.begin(), head.end());
  const std::size_t copies = channels / pixels.channels;
  file.reserve(head.size() + pixels.Bytes() * copies);
  for (int y = 0; y < pixels.size.height; ++y) {
    const std::uint8_t* const row = pixels.Row(y);
    if (copies == 1) {
      file.insert(file.end(), row, row + pixels.RowBytes());
    } else {
      for (std::size_t x = 0; x < pixels.RowBytes(); ++x) file.insert(file.end(), copies, row[x]);
    }
  }
  return file;
}

}  // namespace

Pixels PixelsOf(BBaseAoi& area) {
  if (const BImage8u* mono = area.Mono(); mono && mono->Size().height > 0) {
    return {mono->Row(0), mono->LineLength(), mono->Size(), 1};
  }
  if (const BImageRgb* rgb = area.Rgb(); rgb && rgb->Size().height > 0) {
    return {rgb->Row(0), rgb->LineLength(), rgb->Size(), BImageRgb::kChannels};
  }
  throw Failure("the driver delivered no picture");
}

std::vector<std::uint8_t> Encode(const Pixels& pixels, PictureFormat format, const PictureDetails& details) {
  switch (format) {
    case PictureFormat::kPng:
      return EncodePng(pixels, details);
    case PictureFormat::kTiff:
      return EncodeTiff(pixels, details);
    case PictureFormat::kPgm:
      return EncodePlain(pixels, 1, details);
    default:
      return EncodePlain(pixels, BImageRgb::kChannels, details);
  }
}

}  // namespace Kelcam
