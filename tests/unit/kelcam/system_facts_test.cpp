// system_facts_test.cpp
// What the operating system says of itself and of its network.
#include "base/system_facts.h"

#include "gtest/gtest.h"

using namespace Kelcam;

namespace {

TEST(SystemFacts, NameTheSystem) { EXPECT_NE(SystemName(), ""); }

TEST(SystemFacts, WhatIsNoAddressHasNoRoute) {
  EXPECT_FALSE(RouteTo(""));
  EXPECT_FALSE(RouteTo("camera"));
  EXPECT_FALSE(RouteTo("169.254.76"));
}

#ifdef __linux__

TEST(SystemFacts, TheComputerItselfIsOneAdapterAway) {
  const auto route = RouteTo("127.0.0.1");

  ASSERT_TRUE(route);
  EXPECT_EQ(route->adapter, "lo");
  EXPECT_GE(route->mtu_bytes.value_or(0), 1500);
  EXPECT_EQ(route->is_in_subnet, true);
  EXPECT_FALSE(route->link_bits_per_s);
}

TEST(SystemFacts, LinuxLimitsReceiveBuffersAndCountsDroppedPackets) {
  EXPECT_GT(ReceiveBufferLimitBytes().value_or(0), 0);
  EXPECT_TRUE(DatagramsDropped());
}

#endif

}  // namespace
