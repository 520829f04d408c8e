// geometry_test.cpp
// Sizes and positions.
#include <gtest/gtest.h>

#include "bpoint.h"
#include "bsize.h"

namespace {

TEST(Size, IsThatOfNoImageAtFirst) { EXPECT_EQ(BSize(), (BSize{0, 0})); }

TEST(Size, EqualsInBothDirections) {
  EXPECT_TRUE((BSize{2464, 2056} == BSize{2464, 2056}));
  EXPECT_TRUE((BSize{2464, 2056} != BSize{2464, 2055}));
  EXPECT_TRUE((BSize{2464, 2056} != BSize{2463, 2056}));
}

TEST(Point, IsTheOriginAtFirst) { EXPECT_EQ(BPoint(), (BPoint{0, 0})); }

TEST(Point, EqualsInBothDirections) {
  EXPECT_TRUE((BPoint{-3, 4} == BPoint{-3, 4}));
  EXPECT_TRUE((BPoint{-3, 4} != BPoint{-3, 3}));
  EXPECT_TRUE((BPoint{-3, 4} != BPoint{3, 4}));
}

}  // namespace
