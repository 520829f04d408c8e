// frame_copy_mono_test.cpp
// From a captured frame into the host's grey image: which conversion for which camera, and turning.
#include <gtest/gtest.h>

#include <cstdint>

#include "VimbaC.h"
#include "nboard.h"
#include "unit/acquisition/frame_copy_cases.h"

namespace {

using namespace FrameCopyCases;

TEST(FrameCopyToMono, ConvertsRawFramesOfAColourCameraAsTheAreasTextAsks) {
  struct Row {
    const wchar_t* text;
    ToMono conversion;
  };
  const Row rows[] = {{L"", kGoodMono},      {L"[l]", kFastMono},  {L"[L]", kFastMono},  {L"[p]", kPlainMono},
                      {L"[P]", kPlainMono},  {L"[p] ", kGoodMono}, {L"p", kGoodMono},    {L"[lp]", kGoodMono},
                      {L"Aoi 1", kGoodMono}, {L"[ l]", kGoodMono}, {L"[l] ", kGoodMono}, {L"x[l]", kGoodMono}};
  for (const std::uint32_t format : kBayerFormats) {
    const BSmartRef<BFrame> frame = RandomFrame(format);
    for (const Row& row : rows) {
      MonoArea area(row.text);
      CopyFrameToMonoAoi(*frame, ColorCamera(), area);
      EXPECT_EQ(area.Pixels(), Expected(row.conversion, *frame))
          << std::hex << format << testing::PrintToString(row.text);
    }
  }
}

TEST(FrameCopyToMono, StretchesAMonoFrameOfAColourCameraWhereTheProfileAsksForIt) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatMono8);
  FrameLayout layout = ColorCamera();
  MonoArea plain;
  CopyFrameToMonoAoi(*frame, layout, plain);
  EXPECT_EQ(plain.Pixels(), Expected(kRowsMono, *frame));

  layout.yuv_stretch = true;
  MonoArea stretched;
  CopyFrameToMonoAoi(*frame, layout, stretched);

  EXPECT_EQ(stretched.Pixels(), Expected(kStretchedMono, *frame));
}

TEST(FrameCopyToMono, NeverStretchesTheFramesOfAMonochromeCamera) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatMono8);
  FrameLayout layout = MonoCamera();
  layout.yuv_stretch = true;
  MonoArea area;

  CopyFrameToMonoAoi(*frame, layout, area);

  EXPECT_EQ(area.Pixels(), Expected(kRowsMono, *frame));
}

TEST(FrameCopyToMono, CopiesAMonochromeCamerasRowsWhateverTheText) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatMono8);
  for (const wchar_t* text : {L"", L"[l]", L"[p]"}) {
    MonoArea area(text);
    CopyFrameToMonoAoi(*frame, MonoCamera(), area);
    EXPECT_EQ(area.Pixels(), Expected(kRowsMono, *frame));
  }
}

constexpr BSize kTurnedSize{4, 6};

Bytes Turned(const BFrame& frame, bool clockwise) {
  Bytes pixels;
  for (int y = 0; y < kTurnedSize.height; ++y) {
    for (int x = 0; x < kTurnedSize.width; ++x) {
      const int source_x = clockwise ? y : kSize.width - 1 - y;
      const int source_y = clockwise ? kSize.height - 1 - x : x;
      pixels.push_back(frame.Data()[source_y * kSize.width + source_x]);
    }
  }
  return pixels;
}

TEST(FrameCopyToMono, LeavesTheAreaAloneForAColourCamerasFormatThatIsNotListed) {
  for (const std::uint32_t format : kUnlistedFormats) {
    MonoArea area;
    CopyFrameToMonoAoi(*RandomFrame(format), ColorCamera(), area);
    EXPECT_EQ(area.Pixels(), UntouchedMono()) << std::hex << format;
  }
}

TEST(FrameCopyToMono, LeavesTheAreaAloneForAColourCamerasYuvFrame) {
  MonoArea area;
  CopyFrameToMonoAoi(*RandomFrame(VmbPixelFormatYuv422), ColorCamera(), area);
  EXPECT_EQ(area.Pixels(), UntouchedMono());
}

TEST(FrameCopyToMono, TakesAMonochromeCamerasRowsWhateverFormatTheyClaim) {
  for (const std::uint32_t format : kUnlistedFormats) {
    const BSmartRef<BFrame> frame = RandomFrame(format);
    MonoArea area;
    CopyFrameToMonoAoi(*frame, MonoCamera(), area);
    EXPECT_EQ(area.Pixels(), Expected(kRowsMono, *frame)) << std::hex << format;
    BBaseAoi turned(BBaseAoi::eMono8);
    CopyFrameToMonoAoi(*frame, MonoCamera(-1), turned);
    EXPECT_EQ(PixelsOf(*turned.Mono()), Turned(*frame, false)) << std::hex << format;
  }
}

TEST(FrameCopyToMono, LeavesTheAreaAloneForARawFrameWithoutAConverter) {
  FrameLayout layout = ColorCamera();
  layout.converter = nullptr;
  MonoArea area;

  CopyFrameToMonoAoi(*RandomFrame(VmbPixelFormatBayerBG8), layout, area);

  EXPECT_EQ(area.Pixels(), UntouchedMono());
}

TEST(FrameCopyToMono, RefusesAnAreaOfAnotherKind) {
  for (const BBaseAoi::Kind kind : {BBaseAoi::eNone, BBaseAoi::eRgb, BBaseAoi::eMono16}) {
    BBaseAoi area(kind);
    try {
      CopyFrameToMonoAoi(*RandomFrame(VmbPixelFormatMono8), MonoCamera(), area);
      ADD_FAILURE() << "copied into an area of kind " << kind;
    } catch (NBoard::Exception exception) {
      EXPECT_EQ(static_cast<int>(exception), 1);
    }
  }
}

TEST(FrameCopyRotation, TurnsAMonochromePictureIntoAnAreaOfTheTurnedSize) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatMono8);
  for (const int rotation : {-1, 1, 2}) {
    BBaseAoi area(BBaseAoi::eMono8);
    // Into a new area, and into one that holds a turned picture already.
    for (int snap = 0; snap < 2; ++snap) {
      CopyFrameToMonoAoi(*frame, MonoCamera(rotation), area);
      EXPECT_EQ(area.ImageSize(), kTurnedSize);
      EXPECT_EQ(PixelsOf(*area.Mono()), Turned(*frame, rotation >= 1)) << rotation;
    }
  }
}

// As a host has it that shares one area between cameras, or makes it by the size that the device reports.
TEST(FrameCopyRotation, AnAreaOfTheCamerasOwnSizeIsTurned) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatMono8);
  MonoArea area;

  CopyFrameToMonoAoi(*frame, MonoCamera(1), area);

  EXPECT_EQ(area.ImageSize(), kTurnedSize);
  EXPECT_EQ(area.Pixels(), Turned(*frame, true));
}

TEST(FrameCopyRotation, AFrameThatIsTooSmallForTheImageIsNotCopied) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatMono8);
  BBaseAoi area(BBaseAoi::eMono8);
  CopyFrameToMonoAoi(*frame, MonoCamera(1), area);
  const Bytes before = PixelsOf(*area.Mono());
  FrameLayout layout = MonoCamera(-1);
  layout.payload_bytes = kPixels - 1;

  CopyFrameToMonoAoi(*frame, layout, area);

  EXPECT_EQ(PixelsOf(*area.Mono()), before);
}

TEST(FrameCopyRotation, AColourCamerasPictureIsNotTurned) {
  FrameLayout layout = ColorCamera();
  layout.rotation = 1;
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatBayerGR8);
  BBaseAoi area(BBaseAoi::eMono8);

  CopyFrameToMonoAoi(*frame, layout, area);

  BImage8u expected(kTurnedSize);
  kGoodMono(frame->Data(), expected);
  EXPECT_EQ(PixelsOf(*area.Mono()), PixelsOf(expected));
}

}  // namespace
