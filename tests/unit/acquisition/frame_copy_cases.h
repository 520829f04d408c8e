// frame_copy_cases.h
// Frames, cameras and areas for the tests of the frame copy, and what the host's own conversions make of them.
#pragma once

#include <cstdint>
#include <cstring>
#include <utility>

#include "VimbaC.h"
#include "acquisition/frame_copy.h"
#include "bbaseaoi.h"
#include "bcolorconverter.h"
#include "unit/kel.tools/pictures.h"

namespace FrameCopyCases {

using Pictures::Bytes;
using Pictures::PixelsOf;
using BFrame = BFrameQueue::BFrame;

inline constexpr BSize kSize{6, 4};
inline constexpr std::int64_t kPixels = std::int64_t{kSize.width} * kSize.height;
inline constexpr unsigned kSeed = 20240607;
inline constexpr std::uint32_t kBayerFormats[] = {VmbPixelFormatBayerGR8, VmbPixelFormatBayerRG8,
                                                  VmbPixelFormatBayerGB8, VmbPixelFormatBayerBG8};
// The neighbours of the listed numbers, and formats that a camera may have beside them.
inline constexpr std::uint32_t kUnlistedFormats[] = {0,          0x01080000, 0x01080002, 0x01080007, 0x0108000C,
                                                     0x02180014, 0x0210001E, 0x02100020, 0x02100032, 0xFFFFFFFF};

inline const BColorConverter& Converter() {
  static const BColorConverter kConverter(kSize, BColorConverter::eRGGB);
  return kConverter;
}

// Room for two bytes a pixel, so that every listed format fits.
inline FrameLayout ColorCamera() { return {kSize, 2 * kPixels, 0, true, false, &Converter()}; }

inline FrameLayout MonoCamera(int rotation = 0) { return {kSize, kPixels, rotation, false, false, nullptr}; }

inline BSmartRef<BFrame> RandomFrame(std::uint32_t format) {
  const Bytes bytes = Pictures::RandomBytes(static_cast<std::size_t>(2 * kPixels), kSeed);
  BSmartRef<BFrame> frame(new BFrame(bytes.size(), format, 0, L"DEV"));
  std::memcpy(frame->Data(), bytes.data(), bytes.size());
  return frame;
}

// As the host hands it in: of the camera's size, with known pixels.
struct MonoArea : BBaseAoi {
  explicit MonoArea(WString text = {}) : BBaseAoi(eMono8, std::move(text)) {
    Reset(kSize);
    *Mono() = Pictures::GuardedImage<BImage8u>(kSize);
  }
  Bytes Pixels() { return PixelsOf(*Mono()); }
};

struct RgbArea : BBaseAoi {
  explicit RgbArea(WString text = {}) : BBaseAoi(eRgb, std::move(text)) {
    Reset(kSize);
    *Rgb() = Pictures::GuardedImage<BImageRgb>(kSize);
  }
  Bytes Pixels() { return PixelsOf(*Rgb()); }
};

inline Bytes UntouchedMono() { return PixelsOf(Pictures::GuardedImage<BImage8u>(kSize)); }
inline Bytes UntouchedRgb() { return PixelsOf(Pictures::GuardedImage<BImageRgb>(kSize)); }

// What the host's own conversions make of a frame.
using ToRgb = void (*)(const std::uint8_t*, BImageRgb&);
inline constexpr ToRgb kGoodRgb = [](const std::uint8_t* raw, BImageRgb& image) {
  Converter().ConvertRawToRGB(raw, image);
};
inline constexpr ToRgb kFastRgb = [](const std::uint8_t* raw, BImageRgb& image) {
  Converter().ConvertFastRawToRGB(raw, image);
};
inline constexpr ToRgb kYuvRgb = [](const std::uint8_t* raw, BImageRgb& image) {
  Converter().ConvertYUV422ToRGB(raw, image);
};
inline constexpr ToRgb kGreyRgb = [](const std::uint8_t* raw, BImageRgb& image) {
  image.TakeGrey(raw, std::size_t{kSize.width}, kSize);
};

using ToMono = void (*)(const std::uint8_t*, BImage8u&);
inline constexpr ToMono kGoodMono = [](const std::uint8_t* raw, BImage8u& image) {
  Converter().ConvertRawToMono(raw, image, 0);
};
inline constexpr ToMono kPlainMono = [](const std::uint8_t* raw, BImage8u& image) {
  Converter().ConvertRawToMono(raw, image, 1);
};
inline constexpr ToMono kFastMono = [](const std::uint8_t* raw, BImage8u& image) {
  Converter().ConvertFastRawToMono(raw, image, 1);
};
inline constexpr ToMono kStretchedMono = [](const std::uint8_t* raw, BImage8u& image) {
  Converter().StretchYUV(raw, image);
};
inline constexpr ToMono kRowsMono = [](const std::uint8_t* raw, BImage8u& image) {
  image.CopyRows(raw, std::size_t{kSize.width}, kSize);
};

inline Bytes Expected(ToRgb conversion, const BFrame& frame) {
  BImageRgb image(kSize);
  conversion(frame.Data(), image);
  return PixelsOf(image);
}

inline Bytes Expected(ToMono conversion, const BFrame& frame, const BSize& size = kSize) {
  BImage8u image(size);
  conversion(frame.Data(), image);
  return PixelsOf(image);
}

}  // namespace FrameCopyCases
