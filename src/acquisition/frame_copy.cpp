// frame_copy.cpp
// From a captured frame into the host's image.
#include "acquisition/frame_copy.h"

#include <cstddef>

#include "VimbaC.h"
#include "bbaseaoi.h"
#include "bcolorconverter.h"
#include "nboard.h"
#include "vimba/pixel_formats.h"

namespace {

// How a host asks for another conversion, in the area's text.
constexpr wchar_t kFastConversion[] = L"[l]";
constexpr wchar_t kPlainConversion[] = L"[p]";

bool Holds(const FrameLayout& layout, std::uint32_t pixel_format) {
  const std::int64_t needed = BytesOfFrame(pixel_format, layout.size);
  return needed > 0 && needed <= layout.payload_bytes;
}

void ResetUnlessPlain(BBaseAoi& aoi, const BSize& size) {
  if (aoi.ImageSize() != size || !aoi.IsPlain() || aoi.Offset() != BPoint{}) aoi.Reset(size, BPoint{});
}

void CopyFromColorCamera(const BFrameQueue::BFrame& frame, const FrameLayout& layout, const WString& wanted,
                         BImage8u& image) {
  if (IsBayer8(frame.PixelFormat())) {
    if (!layout.converter) return;
    if (wanted.IEquals(kPlainConversion)) {
      layout.converter->ConvertRawToMono(frame.Data(), image, 1);
    } else if (wanted.IEquals(kFastConversion)) {
      layout.converter->ConvertFastRawToMono(frame.Data(), image, 1);
    } else {
      layout.converter->ConvertRawToMono(frame.Data(), image, 0);
    }
  } else if (frame.PixelFormat() == VmbPixelFormatMono8) {
    if (layout.yuv_stretch && layout.converter) {
      layout.converter->StretchYUV(frame.Data(), image);
    } else {
      image.CopyRows(frame.Data(), static_cast<std::size_t>(layout.size.width), layout.size);
    }
  }
}

// One byte a pixel, whatever the frame says: a monochrome camera is set to nothing else.
void CopyFromMonoCamera(const BFrameQueue::BFrame& frame, const FrameLayout& layout, BImage8u& image) {
  const auto line_length = static_cast<std::size_t>(layout.size.width);
  if (layout.rotation != 0) {
    image.CopyRotated(frame.Data(), line_length, layout.size, layout.rotation >= 1);
  } else {
    image.CopyRows(frame.Data(), line_length, layout.size);
  }
}

}  // namespace

void CopyFrameToAoi(const BFrameQueue::BFrame& frame, const FrameLayout& layout, BBaseAoi& aoi) {
  const BAoiLockRW lock(aoi);
  switch (aoi.ImageKind()) {
    case BBaseAoi::eMono8:
      CopyFrameToMonoAoi(frame, layout, aoi);
      break;
    case BBaseAoi::eRgb:
      CopyFrameToRgbAoi(frame, layout, aoi);
      break;
    default:
      break;
  }
}

void CopyFrameToRgbAoi(const BFrameQueue::BFrame& frame, const FrameLayout& layout, BBaseAoi& aoi) {
  if (aoi.ImageKind() != BBaseAoi::eRgb) throw NBoard::Exception::eWrongImageKind;
  ResetUnlessPlain(aoi, layout.size);
  const std::uint32_t format = frame.PixelFormat();
  if (!Holds(layout, format)) return;
  BImageRgb& image = *aoi.Rgb();
  if (format == VmbPixelFormatMono8) {
    image.TakeGrey(frame.Data(), static_cast<std::size_t>(layout.size.width), layout.size);
  } else if (layout.converter && format == VmbPixelFormatYuv422) {
    layout.converter->ConvertYUV422ToRGB(frame.Data(), image);
  } else if (layout.converter && IsBayer8(format)) {
    if (aoi.Text().IEquals(kFastConversion)) {
      layout.converter->ConvertFastRawToRGB(frame.Data(), image);
    } else {
      layout.converter->ConvertRawToRGB(frame.Data(), image);
    }
  }
}

void CopyFrameToMonoAoi(const BFrameQueue::BFrame& frame, const FrameLayout& layout, BBaseAoi& aoi) {
  if (aoi.ImageKind() != BBaseAoi::eMono8) throw NBoard::Exception::eWrongImageKind;
  if (layout.rotation == 0) {
    ResetUnlessPlain(aoi, layout.size);
  } else {
    // Whatever size it has: one that has the camera's is not turned.
    aoi.Reset({layout.size.height, layout.size.width}, BPoint{});
  }
  BImage8u& image = *aoi.Mono();
  if (layout.is_color) {
    if (Holds(layout, frame.PixelFormat())) CopyFromColorCamera(frame, layout, aoi.Text(), image);
  } else if (Holds(layout, VmbPixelFormatMono8)) {
    CopyFromMonoCamera(frame, layout, image);
  }
}
