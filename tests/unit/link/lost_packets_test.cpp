// lost_packets_test.cpp
// From lost bytes to lost packets.
#include "link/lost_packets.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Simulator::LoseAtRandom;
using Simulator::LostPackets;
using Simulator::PacketsLostBy;

auto CountIn(const LostPackets& lost, std::ptrdiff_t begin, std::ptrdiff_t end) {
  return std::count(lost.begin() + begin, lost.begin() + end, true);
}
auto CountIn(const LostPackets& lost) { return std::count(lost.begin(), lost.end(), true); }

TEST(LostPackets, AreNoneWithoutLoss) {
  std::mt19937_64 random(1);

  EXPECT_TRUE(PacketsLostBy({}, 100.0, random).empty());
}

TEST(LostPackets, AreAsManyAsHoldTheLostBytes) {
  std::mt19937_64 random(1);

  EXPECT_EQ(CountIn(PacketsLostBy({{0.0, 1.0, 1.0 / 6.0}}, 600.0, random)), 100);
  EXPECT_EQ(CountIn(PacketsLostBy({{0.0, 1.0, 1.0 / 6.0}}, 601.0, random)), 101);
  EXPECT_EQ(CountIn(PacketsLostBy({{0.0, 0.5, 0.001}}, 100.0, random)), 1);
}

TEST(LostPackets, OfSeveralLossesShareTheirRemainders) {
  std::mt19937_64 random(1);

  // Three times 2.5 packets.
  const LostPackets lost = PacketsLostBy({{0.0, 0.1, 0.25}, {0.3, 0.4, 0.25}, {0.6, 0.7, 0.25}}, 100.0, random);

  EXPECT_EQ(CountIn(lost), 8);
}

TEST(LostPackets, AreLostWhereTheLossHappened) {
  std::mt19937_64 random(1);

  const LostPackets lost = PacketsLostBy({{0.25, 0.5, 0.5}}, 1000.0, random);

  EXPECT_EQ(lost.size(), 1000u);
  EXPECT_EQ(CountIn(lost, 250, 500), 125);
  EXPECT_EQ(CountIn(lost), 125);
}

// A run of them would leave one half of the interval whole.
TEST(LostPackets, SpreadOverTheWholeLoss) {
  std::mt19937_64 random(1);

  const LostPackets lost = PacketsLostBy({{0.0, 1.0, 0.5}}, 1000.0, random);

  for (std::ptrdiff_t tenth = 0; tenth < 1000; tenth += 100) {
    EXPECT_GT(CountIn(lost, tenth, tenth + 100), 30) << tenth;
    EXPECT_LT(CountIn(lost, tenth, tenth + 100), 70) << tenth;
  }
}

TEST(LostPackets, AreAllOfADeadCable) {
  std::mt19937_64 random(1);

  const LostPackets lost = PacketsLostBy({{0.0, 1.0, 1.0}}, 10.5, random);

  EXPECT_EQ(lost.size(), 11u);
  EXPECT_EQ(CountIn(lost), 11);
}

TEST(LostPackets, OfRoundingAreNone) {
  std::mt19937_64 random(1);

  EXPECT_TRUE(PacketsLostBy({{0.0, 1.0, 1e-7}}, 1000.0, random).empty());
}

TEST(LostPackets, AreTheSameForTheSameSeed) {
  const auto lost = [](std::uint64_t seed) {
    std::mt19937_64 random(seed);
    return PacketsLostBy({{0.0, 0.5, 0.1}, {0.6, 0.9, 0.3}}, 1000.0, random);
  };

  EXPECT_EQ(lost(7), lost(7));
  EXPECT_NE(lost(7), lost(8));
}

TEST(LostPackets, AtRandomAreAboutTheirProbability) {
  std::mt19937_64 random(1);
  LostPackets lost;

  LoseAtRandom(lost, 0.1, 10'000.0, random);

  EXPECT_NEAR(static_cast<double>(CountIn(lost)), 1000.0, 100.0);
}

TEST(LostPackets, AtRandomComeOnTopOfOthers) {
  std::mt19937_64 random(1);
  LostPackets lost = PacketsLostBy({{0.0, 0.5, 1.0}}, 1000.0, random);

  LoseAtRandom(lost, 0.5, 1000.0, random);

  EXPECT_EQ(CountIn(lost, 0, 500), 500);
  EXPECT_GT(CountIn(lost, 500, 1000), 200);
  EXPECT_LT(CountIn(lost, 500, 1000), 300);
}

TEST(LostPackets, AtRandomMayBeNone) {
  std::mt19937_64 random(1);
  LostPackets lost;

  LoseAtRandom(lost, 1e-9, 10.0, random);

  EXPECT_TRUE(lost.empty());
}

}  // namespace
