// bcolorconverter.h
// Turns a camera's raw frames into the host's images.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bsize.h"
#include "bsmartobj.h"
#include "kel_tools_api.h"

class BImage8u;
class BImageRgb;

// A reference-counted object that never changes once it is made: any number of threads may convert with it at the same
// time, each into an image of its own. [any thread]
//
// A source is a frame of the converter's size in 8-bit samples, its rows `line_padding_bytes` longer than their pixels.
// It is read within these rows only, padding excluded, and must not overlap the target; with a size without pixels it
// may be null. A target should have the converter's size; of one with another size the common part at the top left is
// filled, and the rest stays. No conversion allocates or fails. All are exact: the formulae below give every pixel on
// every machine, whatever vector unit does the work.
//
// Beyond the frame's edges the mosaic is mirrored about its outermost row or column (index -1 is 1, index n is n - 2),
// so that every place keeps its colour. A frame that is one pixel wide or high has only that column or row to offer,
// whatever colour is wanted there: a colour without samples takes its neighbours', and grey stays grey down to 1 x 1.
class KEL_TOOLS_API BColorConverter : public BSmartObj {
 public:
  // The 2 x 2 tile at the frame's top left, first row first. Any other number means eGRBG.
  enum BayerOrder : int { eBGGR = 0, eRGGB = 1, eGBRG = 2, eGRBG = 3 };

  // Pixels, and bytes; a negative side or padding counts as 0.
  BColorConverter(const BSize& size, int bayer_order, int line_padding_bytes = 0);

  // Good: gradient-corrected linear interpolation with the 5 x 5 coefficients of H. S. Malvar, L. He and R. Cutler,
  // "High-quality linear interpolation for demosaicing of Bayer-patterned color images", ICASSP 2004. Each missing
  // colour is one sum in sixteenths, (sum + 8) >> 4, limited to 0..255.
  void ConvertRawToRGB(const std::uint8_t* raw, BImageRgb& target) const;

  // Fast: bilinear. A missing colour is the mean of its two or four samples next to the pixel, rounded, halves up.
  void ConvertFastRawToRGB(const std::uint8_t* raw, BImageRgb& target) const;

  // Grey out of the good interpolation's red, green and blue. Flag 0: the luma of ITU-R BT.601 (0.299, 0.587, 0.114),
  // with weights in 1/65536 and each product rounded down to 1/256: ((19595 red >> 8) + (38470 green >> 8) + (7471 blue
  // >> 8) + 128) >> 8. Any other flag: (red + 2 green + blue + 2) >> 2, which weighs colours as the mosaic does.
  void ConvertRawToMono(const std::uint8_t* raw, BImage8u& target, int flag) const;

  // Grey out of the fast one. Flag 0: the same luma of the bilinear red, green and blue. Any other flag: the binomial
  // kernel (1 2 1; 2 4 2; 1 2 1), (sum + 8) >> 4, over the mosaic. At red and blue pixels that is (red + 2 green +
  // blue) / 4 of the bilinear values before they are rounded; at green ones green counts as the mean of the pixel and
  // the mean of the four greens around it, so that all pixels are smoothed alike and no pattern of the mosaic stays.
  void ConvertFastRawToMono(const std::uint8_t* raw, BImage8u& target, int flag) const;

  // Bytes U Y V Y, two pixels; rows are 2 * width bytes and the padding. Matrix of ITU-R BT.601 at full range (Y, U and
  // V 0..255, neutral chroma 128), as GenICam's pixel format naming convention has it for YUV, and ITU-T T.871 for JPEG
  // files:
  //   red = Y + 1.402 (V-128), green = Y - 0.344136 (U-128) - 0.714136 (V-128), blue = Y + 1.772 (U-128)
  // in 64ths: a chroma product is (weight in 1/16384 * (chroma - 128)) >> 8, a colour (64 Y + products + 32) >> 6,
  // limited to 0..255; never more than 1 off the rounded real-valued formula. In a row of odd width the last pixel has
  // a U but no V of its own: it takes the V of the pixel before it, and in a row of one pixel the neutral 128.
  void ConvertYUV422ToRGB(const std::uint8_t* yuv, BImageRgb& target) const;

  // Luma of the studio range 16..235 (ITU-R BT.601) stretched to 0..255: (Y - 16) * 255 / 219, rounded, limited to
  // 0..255.
  void StretchYUV(const std::uint8_t* luma, BImage8u& target) const;

  WString ArchiveName() const override;
  WString Properties() const override;

 private:
  std::size_t LineLength(int bytes_per_pixel) const;

  BSize m_size;
  int m_bayer_order;  // a BayerOrder
  int m_line_padding_bytes;
};
