// pixel_buffer_test.cpp
// The memory of an image: alignment, reuse, copies, impossible sizes.
#include "bpixelbuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace {

BPixelBuffer Filled(const BSize& size, std::uint8_t value) {
  BPixelBuffer buffer;
  buffer.Resize(size, 1);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) buffer.Row(y)[x] = value;
  }
  return buffer;
}

TEST(PixelBuffer, IsEmptyAtFirst) {
  const BPixelBuffer buffer;

  EXPECT_EQ(buffer.Size(), BSize());
  EXPECT_EQ(buffer.LineLength(), 0U);
  EXPECT_EQ(buffer.AllocatedMemory(), 0U);
}

TEST(PixelBuffer, RowsStartAtMultiplesOf64AndHoldTheirPixels) {
  for (int width = 1; width < 300; ++width) {
    for (int bytes_per_pixel : {1, 3}) {
      BPixelBuffer buffer;
      buffer.Resize({width, 3}, bytes_per_pixel);
      for (int y = 0; y < 3; ++y)
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(buffer.Row(y)) % BPixelBuffer::kAlignment, 0U);
      ASSERT_GE(buffer.LineLength(), static_cast<std::size_t>(width * bytes_per_pixel));
    }
  }
}

TEST(PixelBuffer, RowsDoNotLieAMultipleOf4096Apart) {
  constexpr int kCacheSetPeriod = 4096;
  BPixelBuffer buffer;
  buffer.Resize({kCacheSetPeriod, 2}, 3);

  EXPECT_EQ(buffer.LineLength(), kCacheSetPeriod * std::size_t{3} + BPixelBuffer::kAlignment);
}

TEST(PixelBuffer, NewMemoryIsZero) {
  BPixelBuffer buffer;
  buffer.Resize({33, 5}, 3);

  for (int y = 0; y < 5; ++y) {
    for (int i = 0; i < 99; ++i) ASSERT_EQ(buffer.Row(y)[i], 0);
  }
}

TEST(PixelBuffer, KeepsItsMemoryForTheSameAndForSmallerSizes) {
  BPixelBuffer buffer;
  buffer.Resize({100, 100}, 3);
  const std::uint8_t* const memory = buffer.Row(0);

  for (const BSize size : {BSize{100, 100}, BSize{50, 20}, BSize{0, 0}, BSize{100, 100}}) {
    buffer.Resize(size, 3);
    EXPECT_EQ(buffer.Row(0), memory);
  }
}

TEST(PixelBuffer, KeepsItsPixelsWhenTheSizeStays) {
  BPixelBuffer buffer = Filled({70, 2}, 9);

  buffer.Resize({70, 2}, 1);

  EXPECT_EQ(buffer.Row(1)[69], 9);
}

TEST(PixelBuffer, ASizeWithoutPixelsIsZeroByZero) {
  for (const BSize size : {BSize{0, 7}, BSize{7, 0}, BSize{-1, 7}, BSize{7, -1}, BSize{-5, -5}}) {
    BPixelBuffer buffer = Filled({4, 4}, 1);
    buffer.Resize(size, 1);
    EXPECT_EQ(buffer.Size(), BSize());
    EXPECT_EQ(buffer.LineLength(), 0U);
  }
}

TEST(PixelBuffer, AnImpossibleSizeLeavesItAsItWas) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  BPixelBuffer buffer = Filled({4, 4}, 77);

  EXPECT_THROW(buffer.Resize({kMost, kMost}, 3), std::bad_alloc);
  EXPECT_THROW(buffer.Resize({kMost, kMost}, std::numeric_limits<int>::max()), std::bad_alloc);

  EXPECT_EQ(buffer.Size(), (BSize{4, 4}));
  EXPECT_EQ(buffer.Row(3)[3], 77);
}

TEST(PixelBuffer, CopiesAreDeep) {
  const BPixelBuffer original = Filled({65, 3}, 5);
  BPixelBuffer copy = original;
  copy.Row(2)[64] = 6;

  EXPECT_EQ(original.Row(2)[64], 5);
  EXPECT_EQ(copy.Row(2)[63], 5);
  EXPECT_EQ(copy.Size(), original.Size());
}

TEST(PixelBuffer, CopyAssignmentUsesTheMemoryThatIsThere) {
  BPixelBuffer target = Filled({100, 100}, 1);
  const std::uint8_t* const memory = target.Row(0);
  const BPixelBuffer source = Filled({30, 4}, 8);

  target = source;

  EXPECT_EQ(target.Row(0), memory);
  EXPECT_EQ(target.Size(), (BSize{30, 4}));
  EXPECT_EQ(target.Row(3)[29], 8);
}

TEST(PixelBuffer, AssignmentToItselfChangesNothing) {
  BPixelBuffer buffer = Filled({5, 5}, 3);
  BPixelBuffer& same = buffer;

  buffer = same;

  EXPECT_EQ(buffer.Size(), (BSize{5, 5}));
  EXPECT_EQ(buffer.Row(4)[4], 3);
}

TEST(PixelBuffer, MovingTakesTheMemoryAndLeavesNone) {
  BPixelBuffer source = Filled({10, 10}, 4);
  const std::uint8_t* const memory = source.Row(0);
  BPixelBuffer target = Filled({3, 3}, 1);

  target = std::move(source);

  EXPECT_EQ(target.Row(0), memory);
  // NOLINTNEXTLINE(bugprone-use-after-move): its state is promised
  EXPECT_EQ(source.Size(), BSize());
  EXPECT_EQ(source.AllocatedMemory(), 0U);
}

}  // namespace
