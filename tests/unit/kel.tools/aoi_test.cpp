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
    EXPECT_EQ(area.ImageKind(), kind);
    EXPECT_EQ(area.Text(), WString(L"[l]"));
    EXPECT_EQ(area.ImageSize(), BSize());
    EXPECT_EQ(area.Offset(), BPoint());
    EXPECT_TRUE(area.IsPlain());
  }
}

TEST(Aoi, AMonoAreaHoldsAMonoImage) {
  BBaseAoi area(BBaseAoi::eMono8);

  area.Reset({5, 4});

  ASSERT_NE(area.Mono(), nullptr);
  EXPECT_EQ(area.Rgb(), nullptr);
  EXPECT_EQ(area.Mono()->Size(), (BSize{5, 4}));
  EXPECT_EQ(area.ImageSize(), (BSize{5, 4}));
}

TEST(Aoi, AnRgbAreaHoldsAnRgbImage) {
  BBaseAoi area(BBaseAoi::eRgb);

  area.Reset({5, 4});

  ASSERT_NE(area.Rgb(), nullptr);
  EXPECT_EQ(area.Mono(), nullptr);
  EXPECT_EQ(area.Rgb()->Size(), (BSize{5, 4}));
  EXPECT_EQ(area.ImageSize(), (BSize{5, 4}));
}

TEST(Aoi, OtherKindsHoldNoImage) {
  for (const auto kind : {BBaseAoi::eNone, BBaseAoi::eMono16}) {
    BBaseAoi area(kind);
    area.Reset({5, 4}, {1, 2});
    EXPECT_EQ(area.Mono(), nullptr);
    EXPECT_EQ(area.Rgb(), nullptr);
    EXPECT_EQ(area.ImageSize(), BSize());
    EXPECT_EQ(area.Offset(), (BPoint{1, 2}));
  }
}

TEST(Aoi, ResetMakesItPlainAtItsPlaceAndKeepsTheText) {
  BBaseAoi area(BBaseAoi::eMono8, L"[p]");
  area.SetPlain(false);
  area.SetOffset({-7, 9});
  EXPECT_FALSE(area.IsPlain());
  EXPECT_EQ(area.Offset(), (BPoint{-7, 9}));

  area.Reset({2, 2}, {3, 4});
  EXPECT_TRUE(area.IsPlain());
  EXPECT_EQ(area.Offset(), (BPoint{3, 4}));
  EXPECT_EQ(area.Text(), WString(L"[p]"));

  area.Reset({2, 2});
  EXPECT_EQ(area.Offset(), BPoint());
}

TEST(Aoi, ItsTextCanBeChanged) {
  BBaseAoi area(BBaseAoi::eRgb);
  EXPECT_EQ(area.Text(), WString());

  area.SetText(L"[l]");

  EXPECT_EQ(area.Text(), WString(L"[l]"));
}

TEST(Aoi, DescribesItself) {
  BBaseAoi area(BBaseAoi::eRgb);
  area.Reset({6, 5}, {1, -2});
  EXPECT_EQ(area.ArchiveName(), WString(L"BBaseAoi"));
  EXPECT_EQ(area.Properties(), WString(L"Image kind 2, 6 x 5 pixels at (1, -2)"));

  area.SetPlain(false);
  EXPECT_EQ(area.Properties(), WString(L"Image kind 2, 6 x 5 pixels at (1, -2), not plain"));
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
