// aoi_test.cpp
// The area that a host gives to a device.
#include <gtest/gtest.h>

#include <future>

#include "bbaseaoi.h"
#include "bsmartref.h"

namespace {

TEST(Aoi, IsPlainAndEmptyAtTheOriginAtFirst) {
  for (const auto kind : {BBaseAoi::eNone, BBaseAoi::eMono8, BBaseAoi::eRgb, BBaseAoi::eMono16}) {
    const BBaseAoi area(kind, L"[l]");
    EXPECT_EQ(kind, area.ImageKind());
    EXPECT_EQ(WString(L"[l]"), area.Text());
    EXPECT_EQ(BSize(), area.ImageSize());
    EXPECT_EQ(BPoint(), area.Offset());
    EXPECT_TRUE(area.IsPlain());
  }
}

TEST(Aoi, AMonoAreaHoldsAMonoImage) {
  BBaseAoi area(BBaseAoi::eMono8);

  area.Reset({5, 4});

  ASSERT_NE(nullptr, area.Mono());
  EXPECT_EQ(nullptr, area.Rgb());
  EXPECT_EQ((BSize{5, 4}), area.Mono()->Size());
  EXPECT_EQ((BSize{5, 4}), area.ImageSize());
}

TEST(Aoi, AnRgbAreaHoldsAnRgbImage) {
  BBaseAoi area(BBaseAoi::eRgb);

  area.Reset({5, 4});

  ASSERT_NE(nullptr, area.Rgb());
  EXPECT_EQ(nullptr, area.Mono());
  EXPECT_EQ((BSize{5, 4}), area.Rgb()->Size());
  EXPECT_EQ((BSize{5, 4}), area.ImageSize());
}

TEST(Aoi, OtherKindsHoldNoImage) {
  for (const auto kind : {BBaseAoi::eNone, BBaseAoi::eMono16}) {
    BBaseAoi area(kind);
    area.Reset({5, 4}, {1, 2});
    EXPECT_EQ(nullptr, area.Mono());
    EXPECT_EQ(nullptr, area.Rgb());
    EXPECT_EQ(BSize(), area.ImageSize());
    EXPECT_EQ((BPoint{1, 2}), area.Offset());
  }
}

TEST(Aoi, ResetMakesItPlainAtItsPlaceAndKeepsTheText) {
  BBaseAoi area(BBaseAoi::eMono8, L"[p]");
  area.SetPlain(false);
  area.SetOffset({-7, 9});
  EXPECT_FALSE(area.IsPlain());
  EXPECT_EQ((BPoint{-7, 9}), area.Offset());

  area.Reset({2, 2}, {3, 4});
  EXPECT_TRUE(area.IsPlain());
  EXPECT_EQ((BPoint{3, 4}), area.Offset());
  EXPECT_EQ(WString(L"[p]"), area.Text());

  area.Reset({2, 2});
  EXPECT_EQ(BPoint(), area.Offset());
}

TEST(Aoi, ItsTextCanBeChanged) {
  BBaseAoi area(BBaseAoi::eRgb);
  EXPECT_EQ(WString(), area.Text());

  area.SetText(L"[l]");

  EXPECT_EQ(WString(L"[l]"), area.Text());
}

TEST(Aoi, DescribesItself) {
  BBaseAoi area(BBaseAoi::eRgb);
  area.Reset({6, 5}, {1, -2});
  EXPECT_EQ(WString(L"BBaseAoi"), area.ArchiveName());
  EXPECT_EQ(WString(L"Image kind 2, 6 x 5 pixels at (1, -2)"), area.Properties());

  area.SetPlain(false);
  EXPECT_EQ(WString(L"Image kind 2, 6 x 5 pixels at (1, -2), not plain"), area.Properties());
}

bool AnotherThreadMayRead(const BBaseAoi& area) {
  return std::async(std::launch::async,
                    [&area] {
                      const bool locked = area.TryLockR();
                      if (locked) area.UnlockR();
                      return locked;
                    })
      .get();
}

TEST(Aoi, ItsLockKeepsReadersOutUntilItGoes) {
  BBaseAoi area(BBaseAoi::eMono8);
  {
    const BAoiLockRW lock(area);
    EXPECT_FALSE(AnotherThreadMayRead(area));
  }
  EXPECT_TRUE(AnotherThreadMayRead(area));
}

}  // namespace
