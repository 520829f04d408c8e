// frame_copy_rgb_test.cpp
// From a captured frame into the host's colour image: which conversion for which frame and text.
#include <gtest/gtest.h>

#include <cstdint>

#include "VimbaC.h"
#include "nboard.h"
#include "unit/acquisition/frame_copy_cases.h"

namespace {

using namespace FrameCopyCases;

TEST(FrameCopyToRgb, ConvertsRawFramesAsTheAreasTextAsks) {
  struct Row {
    const wchar_t* text;
    ToRgb conversion;
  };
  const Row rows[] = {{L"", kGoodRgb},     {L"[l]", kFastRgb}, {L"[L]", kFastRgb},  {L"[p]", kGoodRgb},
                      {L"[l] ", kGoodRgb}, {L"l", kGoodRgb},   {L"x[l]", kGoodRgb}, {L"Aoi 1", kGoodRgb}};
  for (const std::uint32_t format : kBayerFormats) {
    const BSmartRef<BFrame> frame = RandomFrame(format);
    for (const Row& row : rows) {
      RgbArea area(row.text);
      CopyFrameToRgbAoi(*frame, ColorCamera(), area);
      EXPECT_EQ(area.Pixels(), Expected(row.conversion, *frame))
          << std::hex << format << testing::PrintToString(row.text);
    }
  }
}

TEST(FrameCopyToRgb, ConvertsYuvFramesWhateverTheText) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatYuv422);
  for (const wchar_t* text : {L"", L"[l]", L"[p]"}) {
    RgbArea area(text);
    CopyFrameToRgbAoi(*frame, ColorCamera(), area);
    EXPECT_EQ(area.Pixels(), Expected(kYuvRgb, *frame));
  }
}

TEST(FrameCopyToRgb, MakesGreyPixelsOfAMonoFrameWithAndWithoutAConverter) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatMono8);
  for (const FrameLayout& layout : {ColorCamera(), MonoCamera(), MonoCamera(1)}) {
    RgbArea area(L"[l]");
    CopyFrameToRgbAoi(*frame, layout, area);
    EXPECT_EQ(area.Pixels(), Expected(kGreyRgb, *frame));
    EXPECT_EQ(area.ImageSize(), kSize);
  }
}

TEST(FrameCopyToRgb, LeavesTheAreaAloneForAFormatThatIsNotListed) {
  for (const std::uint32_t format : kUnlistedFormats) {
    RgbArea area;
    CopyFrameToRgbAoi(*RandomFrame(format), ColorCamera(), area);
    EXPECT_EQ(area.Pixels(), UntouchedRgb()) << std::hex << format;
  }
}

TEST(FrameCopyToRgb, LeavesTheAreaAloneWhereItNeedsAConverterAndHasNone) {
  FrameLayout layout = ColorCamera();
  layout.converter = nullptr;
  for (const std::uint32_t format : {std::uint32_t{VmbPixelFormatBayerGB8}, std::uint32_t{VmbPixelFormatYuv422}}) {
    RgbArea area;
    CopyFrameToRgbAoi(*RandomFrame(format), layout, area);
    EXPECT_EQ(area.Pixels(), UntouchedRgb()) << std::hex << format;
  }
}

TEST(FrameCopyToRgb, RefusesAnAreaOfAnotherKind) {
  for (const BBaseAoi::Kind kind : {BBaseAoi::eNone, BBaseAoi::eMono8, BBaseAoi::eMono16}) {
    BBaseAoi area(kind);
    try {
      CopyFrameToRgbAoi(*RandomFrame(VmbPixelFormatMono8), MonoCamera(), area);
      ADD_FAILURE() << "copied into an area of kind " << kind;
    } catch (NBoard::Exception exception) {
      EXPECT_EQ(static_cast<int>(exception), 1);
    }
  }
}

}  // namespace
