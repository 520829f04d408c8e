// image_rgb_test.cpp
// Grey pictures taken into a colour image.
#include "bimagergb.h"

#include <gtest/gtest.h>

#include <string>

#include "bimage8u.h"
#include "every_kernel.h"
#include "pictures.h"

namespace {

using Pictures::Bytes;
using Pictures::Frame;
using Pictures::kGuard;

constexpr unsigned kSeed = 33;

// `part` of the frame's top left at `at` in a target of guards.
Bytes Expected(const Frame& frame, const BSize& part, const BSize& target, const BPoint& at) {
  Bytes bytes;
  for (int y = 0; y < target.height; ++y) {
    for (int x = 0; x < target.width; ++x) {
      const bool inside = x >= at.x && x < at.x + part.width && y >= at.y && y < at.y + part.height;
      bytes.insert(bytes.end(), 3, inside ? static_cast<std::uint8_t>(frame.At(x - at.x, y - at.y)) : kGuard);
    }
  }
  return bytes;
}

BImage8u ImageOf(const Frame& frame) {
  BImage8u image(frame.size);
  image.CopyRows(frame.bytes.data(), frame.LineLength(), frame.size);
  return image;
}

class Grey : public EveryKernel {};

TEST_P(Grey, EveryWidthIsTaken) {
  for (int width = 1; width <= 280; ++width) {
    const Frame frame = Pictures::RandomFrame({width, 2}, width % 3, kSeed);
    auto target = Pictures::GuardedImage<BImageRgb>(frame.size);
    target.TakeGrey(frame.bytes.data(), frame.LineLength(), frame.size);
    ASSERT_EQ(Pictures::PixelsOf(target), Expected(frame, frame.size, frame.size, {})) << "width " << width;
    ASSERT_EQ(Pictures::TouchedGuards(target), 0);
  }
}

TEST_P(Grey, WhatFallsOutsideIsDropped) {
  const Frame frame = Pictures::RandomFrame({70, 5}, 0, kSeed);
  const BSize target_size{75, 7};
  for (int y = -6; y <= 8; ++y) {
    for (int x = -75; x <= 80; x += 5) {
      auto target = Pictures::GuardedImage<BImageRgb>(target_size);
      target.TakeGrey(ImageOf(frame), {-1, -1}, {x, y});
      ASSERT_EQ(Pictures::PixelsOf(target), Expected(frame, frame.size, target_size, {x, y})) << x << ", " << y;
      ASSERT_EQ(Pictures::TouchedGuards(target), 0);
    }
  }
}

TEST_P(Grey, TheTopLeftPartOfTheWantedSizeIsTaken) {
  const Frame frame = Pictures::RandomFrame({9, 8}, 0, kSeed);
  const BSize target_size{12, 10};
  struct Case {
    BSize wanted;
    BSize taken;
  };
  for (const Case& c : {Case{{4, 3}, {4, 3}}, Case{{-1, 3}, {9, 3}}, Case{{4, -1}, {4, 8}}, Case{{99, 99}, {9, 8}},
                        Case{{0, 3}, {0, 0}}, Case{{-1, 0}, {0, 0}}}) {
    auto target = Pictures::GuardedImage<BImageRgb>(target_size);
    target.TakeGrey(ImageOf(frame), c.wanted, {1, 1});
    EXPECT_EQ(Pictures::PixelsOf(target), Expected(frame, c.taken, target_size, {1, 1})) << Pictures::Named(c.wanted);
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, Grey, testing::ValuesIn(KernelNames()), KernelOf);

TEST(ImageRgb, AnEmptyGreyImageChangesNothing) {
  auto target = Pictures::GuardedImage<BImageRgb>({2, 2});

  target.TakeGrey(BImage8u());
  target.TakeGrey(nullptr, 0, {0, 4});
  target.TakeGrey(nullptr, 0, {-1, -1});

  EXPECT_EQ(Pictures::PixelsOf(target), Bytes(12, kGuard));
}

TEST(ImageRgb, IsBlackAtFirst) { EXPECT_EQ(Pictures::PixelsOf(BImageRgb({5, 4})), Bytes(std::size_t{3} * 5 * 4, 0)); }

}  // namespace
