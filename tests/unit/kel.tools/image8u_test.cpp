// image8u_test.cpp
// Plain and rotated copies into a monochrome image.
#include "bimage8u.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "every_kernel.h"
#include "pictures.h"

namespace {

using Pictures::Bytes;
using Pictures::Frame;
using Pictures::kGuard;

constexpr unsigned kSeed = 90;
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

Bytes ExpectedCopy(const Frame& frame, const BSize& target, const BPoint& at) {
  Bytes bytes;
  for (std::int64_t y = 0; y < target.height; ++y) {
    for (std::int64_t x = 0; x < target.width; ++x) {
      const std::int64_t from_x = x - at.x;
      const std::int64_t from_y = y - at.y;
      const bool inside = from_x >= 0 && from_x < frame.size.width && from_y >= 0 && from_y < frame.size.height;
      bytes.push_back(inside ? static_cast<std::uint8_t>(frame.At(int(from_x), int(from_y))) : kGuard);
    }
  }
  return bytes;
}

// Each pixel of the turned picture that the target holds, looked up in the source.
Bytes ExpectedTurn(const Frame& frame, const BSize& target, bool clockwise) {
  const auto [width, height] = frame.size;
  Bytes bytes;
  for (int y = 0; y < target.height; ++y) {
    for (int x = 0; x < target.width; ++x) {
      if (x >= height || y >= width) {
        bytes.push_back(kGuard);
      } else {
        const int value = clockwise ? frame.At(y, height - 1 - x) : frame.At(width - 1 - y, x);
        bytes.push_back(static_cast<std::uint8_t>(value));
      }
    }
  }
  return bytes;
}

void ExpectTurned(const Frame& frame, const BSize& target_size) {
  for (bool clockwise : {true, false}) {
    auto target = Pictures::GuardedImage<BImage8u>(target_size);
    target.CopyRotated(frame.bytes.data(), frame.LineLength(), frame.size, clockwise);
    ASSERT_EQ(Pictures::PixelsOf(target), ExpectedTurn(frame, target_size, clockwise))
        << Pictures::Named(frame.size) << " into " << Pictures::Named(target_size) << (clockwise ? " cw" : " ccw");
    ASSERT_EQ(Pictures::TouchedGuards(target), 0);
  }
}

class Rotation : public EveryKernel {};
class Copy : public EveryKernel {};

TEST_P(Rotation, TurnsEverySmallSizeWithPadding) {
  for (int height = 1; height <= 20; ++height) {
    for (int width = 1; width <= 20; ++width) {
      const Frame frame = Pictures::RandomFrame({width, height}, width % 4, kSeed);
      ExpectTurned(frame, {height, width});
      if (HasFailure()) return;
    }
  }
}

TEST_P(Rotation, TurnsEverySizeAboutTheBlocksOfTheFastWay) {
  for (int width = 30; width <= 132; width += 3) {
    for (int height : {15, 16, 17, 31, 32, 33, 63, 64, 65, 127, 128, 130}) {
      ExpectTurned(Pictures::RandomFrame({width, height}, width % 5, kSeed), {height, width});
      if (HasFailure()) return;
    }
  }
}

TEST_P(Rotation, TurnsLargeSizes) {
  for (const BSize size : {BSize{643, 481}, BSize{1292, 964}, BSize{1, 3000}, BSize{3000, 1}}) {
    ExpectTurned(Pictures::RandomFrame(size, 1, kSeed), {size.height, size.width});
  }
}

TEST_P(Rotation, TurnsLinesThatCompeteForTheSamePlacesOfACache) {
  for (const BSize size : {BSize{1024, 70}, BSize{1000, 64}, BSize{1024, 33}, BSize{2048, 17}, BSize{1023, 130}}) {
    const int padding = size.width % 1024 == 0 ? 0 : 1024 - size.width;
    ExpectTurned(Pictures::RandomFrame(size, padding, kSeed), {size.height, size.width});
  }
}

TEST_P(Rotation, FillsWhatATargetOfAnotherSizeCanHold) {
  for (const BSize target :
       {BSize{100, 70}, BSize{70, 100}, BSize{33, 47}, BSize{200, 200}, BSize{0, 0}, BSize{1, 90}}) {
    ExpectTurned(Pictures::RandomFrame({100, 70}, 0, kSeed), target);
  }
}

TEST_P(Rotation, TheTopLeftGoesToTheTopRightClockwise) {
  // Two rows of three.
  const Bytes source = {1, 2, 3, 4, 5, 6};
  BImage8u target({2, 3});

  target.CopyRotated(source.data(), 3, {3, 2}, true);
  EXPECT_EQ(Pictures::PixelsOf(target), (Bytes{4, 1, 5, 2, 6, 3}));

  target.CopyRotated(source.data(), 3, {3, 2}, false);
  EXPECT_EQ(Pictures::PixelsOf(target), (Bytes{3, 6, 2, 5, 1, 4}));
}

TEST_P(Rotation, ASourceWithoutPixelsChangesNothing) {
  for (const BSize size : {BSize{0, 3}, BSize{3, 0}, BSize{-3, 3}, BSize{3, -3}, BSize{kLeast, kLeast}}) {
    auto target = Pictures::GuardedImage<BImage8u>({3, 3});
    target.CopyRotated(nullptr, 3, size, true);
    target.CopyRotated(nullptr, 3, size, false);
    EXPECT_EQ(Pictures::PixelsOf(target), Bytes(9, kGuard));
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, Rotation, testing::ValuesIn(KernelNames()), KernelOf);

TEST_P(Copy, CopiesRowsOfEveryWidthToAnyColumn) {
  for (int width = 1; width <= 200; ++width) {
    const Frame frame = Pictures::RandomFrame({width, 3}, width % 5, kSeed);
    const BPoint at{width % 7, 1};
    const BSize target_size{width + 9, 5};
    auto target = Pictures::GuardedImage<BImage8u>(target_size);
    target.CopyRows(frame.bytes.data(), frame.LineLength(), frame.size, at);
    ASSERT_EQ(Pictures::PixelsOf(target), ExpectedCopy(frame, target_size, at)) << width;
    ASSERT_EQ(Pictures::TouchedGuards(target), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, Copy, testing::ValuesIn(KernelNames()), KernelOf);

TEST(Image8u, CopiesRowsAnywhereAndDropsWhatFallsOutside) {
  const BSize target_size{12, 9};
  for (int padding : {0, 5}) {
    const Frame frame = Pictures::RandomFrame({7, 5}, padding, kSeed);
    for (int y = -7; y <= 11; ++y) {
      for (int x = -9; x <= 14; ++x) {
        auto target = Pictures::GuardedImage<BImage8u>(target_size);
        target.CopyRows(frame.bytes.data(), frame.LineLength(), frame.size, {x, y});
        ASSERT_EQ(Pictures::PixelsOf(target), ExpectedCopy(frame, target_size, {x, y})) << x << ", " << y;
        ASSERT_EQ(Pictures::TouchedGuards(target), 0);
      }
    }
  }
}

TEST(Image8u, CopiesRowsWithoutGapsBetweenThem) {
  const BSize target_size{128, 9};
  const Frame frame = Pictures::RandomFrame({128, 5}, 0, kSeed);
  for (int y = -6; y <= 10; ++y) {
    auto target = Pictures::GuardedImage<BImage8u>(target_size);
    target.CopyRows(frame.bytes.data(), frame.LineLength(), frame.size, {0, y});
    ASSERT_EQ(Pictures::PixelsOf(target), ExpectedCopy(frame, target_size, {0, y})) << y;
  }
}

TEST(Image8u, CopiesNothingToPlacesAtTheEndsOfTheNumbers) {
  const Frame frame = Pictures::RandomFrame({7, 5}, 0, kSeed);
  for (const BPoint at :
       {BPoint{kLeast, 0}, BPoint{kMost, 0}, BPoint{0, kLeast}, BPoint{0, kMost}, BPoint{kMost, kMost}}) {
    auto target = Pictures::GuardedImage<BImage8u>({12, 9});
    target.CopyRows(frame.bytes.data(), frame.LineLength(), frame.size, at);
    EXPECT_EQ(Pictures::PixelsOf(target), Bytes(std::size_t{12} * 9, kGuard));
  }
}

TEST(Image8u, ASourceWithoutPixelsChangesNothing) {
  for (const BSize size : {BSize{0, 3}, BSize{3, 0}, BSize{-3, 3}, BSize{3, -3}}) {
    auto target = Pictures::GuardedImage<BImage8u>({3, 3});
    target.CopyRows(nullptr, 3, size);
    EXPECT_EQ(Pictures::PixelsOf(target), Bytes(9, kGuard));
  }
}

TEST(Image8u, IsAValue) {
  BImage8u image({3, 2});
  image.Row(1)[2] = 200;
  BImage8u copy = image;
  image.Row(1)[2] = 1;

  EXPECT_EQ(Pictures::PixelsOf(copy), (Bytes{0, 0, 0, 0, 0, 200}));
  EXPECT_EQ(Pictures::PixelsOf(image), (Bytes{0, 0, 0, 0, 0, 1}));
}

}  // namespace
