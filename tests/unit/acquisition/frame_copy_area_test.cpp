// frame_copy_area_test.cpp
// When an area is reset, and which frames leave its pixels alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

#include "VimbaC.h"
#include "unit/acquisition/frame_copy_cases.h"

namespace {

using namespace FrameCopyCases;

TEST(FrameCopy, TheHostsConversionsOfThePictureCanBeToldApart) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatBayerRG8);
  std::vector<Bytes> made;
  for (const ToRgb conversion : {kGoodRgb, kFastRgb, kYuvRgb, kGreyRgb}) made.push_back(Expected(conversion, *frame));
  for (const ToMono conversion : {kGoodMono, kPlainMono, kFastMono, kStretchedMono, kRowsMono}) {
    made.push_back(Expected(conversion, *frame));
  }
  for (std::size_t i = 0; i < made.size(); ++i) EXPECT_EQ(std::count(made.begin(), made.end(), made[i]), 1) << i;
}

TEST(FrameCopyLayout, DescribesAMonochromeCameraThatDeliversNothingUnlessSaidOtherwise) {
  const FrameLayout layout;
  EXPECT_EQ(layout.size, BSize{});
  EXPECT_EQ(layout.payload_bytes, 0);
  EXPECT_EQ(layout.rotation, 0);
  EXPECT_FALSE(layout.is_color);
  EXPECT_FALSE(layout.yuv_stretch);
  EXPECT_EQ(layout.converter, nullptr);
}

// The three reasons to reset an area, each alone.
void Shrink(BBaseAoi& area) { area.Reset({kSize.width - 1, kSize.height}); }
void Move(BBaseAoi& area) { area.SetOffset({0, 1}); }
void Zoom(BBaseAoi& area) { area.SetPlain(false); }

TEST(FrameCopyReset, AnAreaOfAnotherSizePlaceOrStateIsReset) {
  for (const auto spoil : {Shrink, Move, Zoom}) {
    MonoArea mono;
    RgbArea rgb;
    for (BBaseAoi* area : {static_cast<BBaseAoi*>(&mono), static_cast<BBaseAoi*>(&rgb)}) spoil(*area);

    CopyFrameToMonoAoi(*RandomFrame(VmbPixelFormatMono8), MonoCamera(), mono);
    CopyFrameToRgbAoi(*RandomFrame(VmbPixelFormatMono8), MonoCamera(), rgb);

    for (BBaseAoi* area : {static_cast<BBaseAoi*>(&mono), static_cast<BBaseAoi*>(&rgb)}) {
      EXPECT_EQ(area->ImageSize(), kSize);
      EXPECT_EQ(area->Offset(), BPoint());
      EXPECT_TRUE(area->IsPlain());
    }
    EXPECT_EQ(mono.Pixels(), Expected(kRowsMono, *RandomFrame(VmbPixelFormatMono8)));
    EXPECT_EQ(rgb.Pixels(), Expected(kGreyRgb, *RandomFrame(VmbPixelFormatMono8)));
  }
}

TEST(FrameCopyReset, AnAreaIsResetEvenWhenItsPixelsAreNotCopied) {
  MonoArea area(L"[p]");
  area.SetOffset({-3, 8});

  CopyFrameToMonoAoi(*RandomFrame(VmbPixelFormatRgb8), ColorCamera(), area);

  EXPECT_EQ(area.Offset(), BPoint());
  EXPECT_EQ(area.Text().Str(), L"[p]");
  EXPECT_EQ(area.Pixels(), UntouchedMono());
}

// Reports when its lock has been taken for writing, and when it is about to be given back.
struct WatchedArea : MonoArea {
  std::function<void()> on_locked;
  std::function<void()> on_unlocking;

  void LockW() const KEL_ACQUIRE() override {
    MonoArea::LockW();
    on_locked();
  }
  void UnlockW() const KEL_RELEASE() override {
    on_unlocking();
    MonoArea::UnlockW();
  }
};

TEST(FrameCopyLock, AnAreaIsHeldFromBeforeItsResetUntilItsPixelsAreThere) {
  const BSmartRef<BFrame> frame = RandomFrame(VmbPixelFormatMono8);
  WatchedArea area;
  area.SetOffset({0, 1});
  std::vector<Bytes> pixels;
  std::vector<BPoint> offsets;
  const auto look = [&] {
    pixels.push_back(area.Pixels());
    offsets.push_back(area.Offset());
  };
  area.on_locked = look;
  area.on_unlocking = look;

  CopyFrameToAoi(*frame, MonoCamera(), area);

  EXPECT_EQ(pixels, (std::vector<Bytes>{UntouchedMono(), Expected(kRowsMono, *frame)}));
  EXPECT_EQ(offsets, (std::vector<BPoint>{{0, 1}, {}}));
}

TEST(FrameCopyPayload, AFrameThatNeedsMoreBytesThanItHoldsIsNotCopied) {
  struct Row {
    std::uint32_t format;
    std::int64_t needed;
  };
  const Row rows[] = {{VmbPixelFormatMono8, kPixels},    {VmbPixelFormatBayerGR8, kPixels},
                      {VmbPixelFormatBayerRG8, kPixels}, {VmbPixelFormatBayerGB8, kPixels},
                      {VmbPixelFormatBayerBG8, kPixels}, {VmbPixelFormatYuv422, 2 * kPixels}};
  for (const Row& row : rows) {
    FrameLayout layout = ColorCamera();
    layout.payload_bytes = row.needed - 1;
    RgbArea too_small;
    CopyFrameToRgbAoi(*RandomFrame(row.format), layout, too_small);
    EXPECT_EQ(too_small.Pixels(), UntouchedRgb()) << std::hex << row.format;

    layout.payload_bytes = row.needed;
    RgbArea enough;
    CopyFrameToRgbAoi(*RandomFrame(row.format), layout, enough);
    EXPECT_NE(enough.Pixels(), UntouchedRgb()) << std::hex << row.format;
  }
}

TEST(FrameCopyPayload, AMonoAreaIsLeftAloneByAFrameThatIsTooSmallForTheImage) {
  for (FrameLayout layout : {ColorCamera(), MonoCamera()}) {
    layout.payload_bytes = kPixels - 1;
    MonoArea area;
    CopyFrameToMonoAoi(*RandomFrame(VmbPixelFormatMono8), layout, area);
    EXPECT_EQ(area.Pixels(), UntouchedMono());
  }
}

}  // namespace
