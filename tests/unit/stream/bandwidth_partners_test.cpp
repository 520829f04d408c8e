// bandwidth_partners_test.cpp
// Who lists whom, whose rate is taken over, and who hears of a lost frame.
#include "stream/bandwidth_partners.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "diagnostics/log_collector.h"
#include "support/host_output.h"
#include "unit/stream/scripted_rates.h"

namespace {

using Texts = std::vector<std::wstring>;
using Calls = std::vector<std::string>;

const std::string kReadRate = "VmbFeatureIntGet(StreamBytesPerSecond)";

struct Partners : testing::Test {
  struct EmptyLibrary {
    EmptyLibrary() { Library().Reset(); }
  } empty_library;
  HostOutput output;
  ScriptedRate first{1, 90'000'000};
  std::optional<ScriptedRate> second{std::in_place, 2, 60'000'000};
  std::optional<ScriptedRate> third{std::in_place, 3, 70'000'000};

  Partners() { Library().ClearCalls(); }

  bool Link(ScriptedRate& one, ScriptedRate& other) { return one.partners.AddBandwidthPartner(&other.partners); }
  // The lines between title and end.
  Texts Synch(ScriptedRate& one) {
    output.Clear();
    {
      BLogCollector log(L"title");
      one.partners.SynchBandwidth(log);
    }
    Texts lines = LinesOf(output.Diagnostics(L"title").at(0));
    return {lines.begin() + 1, lines.end() - 1};
  }
};

TEST_F(Partners, AreListedOnceAndOneWay) {
  EXPECT_TRUE(Link(first, *second));
  EXPECT_FALSE(Link(first, *second));
  EXPECT_FALSE(second->partners.RemoveBandwidthPartner(&first.partners));
  EXPECT_TRUE(first.partners.RemoveBandwidthPartner(&second->partners));
  EXPECT_FALSE(first.partners.RemoveBandwidthPartner(&second->partners));
}

TEST_F(Partners, NoneIsRefused) {
  EXPECT_FALSE(first.partners.AddBandwidthPartner(nullptr));
  EXPECT_FALSE(first.partners.RemoveBandwidthPartner(nullptr));
}

TEST_F(Partners, TheLowestRateIsTakenOver) {
  Link(first, *third);
  Link(first, *second);
  EXPECT_EQ(Synch(first), Texts{L"SynchBandwidth : 90000000bps -->60000000bps"});
  EXPECT_EQ(first.OnCamera(), 60'000'000);
  EXPECT_EQ(third->OnCamera(), 70'000'000) << "a partner's own rate stays";
}

TEST_F(Partners, AsFastOrFasterChangeNothing) {
  Link(first, *second);
  for (const VmbInt64_t rate : {90'000'000, 90'000'001}) {
    second->SetOnCamera(rate);
    EXPECT_EQ(Synch(first), Texts{});
    EXPECT_EQ(first.OnCamera(), 90'000'000);
  }
}

TEST_F(Partners, WhoseRateIsNoneDoNotCount) {
  Link(first, *second);
  for (const VmbInt64_t rate : {0, -5}) {
    second->SetOnCamera(rate);
    EXPECT_EQ(Synch(first), Texts{});
  }
}

TEST_F(Partners, EveryOtherRateCounts) {
  Link(first, *second);
  second->SetOnCamera(1);
  EXPECT_EQ(Synch(first), Texts{L"SynchBandwidth : 90000000bps -->1bps"});
}

TEST_F(Partners, WithoutAnyOnlyTheOwnRateIsRead) {
  EXPECT_EQ(Synch(first), Texts{});
  EXPECT_EQ(Library().Calls(), Calls{kReadRate});
}

TEST_F(Partners, HearOfALostFrame) {
  Link(first, *second);
  Link(first, *third);
  first.partners.AbortPartners();
  EXPECT_EQ(first.lost_frames_of_partners, 0);
  EXPECT_EQ(second->lost_frames_of_partners, 1);
  EXPECT_EQ(third->lost_frames_of_partners, 1);
  second->partners.AbortPartners();
  EXPECT_EQ(first.lost_frames_of_partners, 0) << "partnership is one-way";
}

TEST_F(Partners, ThatWereRemovedHearNothing) {
  Link(first, *second);
  first.partners.RemoveBandwidthPartner(&second->partners);
  first.partners.AbortPartners();
  EXPECT_EQ(second->lost_frames_of_partners, 0);
}

TEST_F(Partners, ThatStayWhenAnotherIsRemovedStillHear) {
  Link(first, *second);
  Link(first, *third);
  first.partners.RemoveBandwidthPartner(&second->partners);
  first.partners.AbortPartners();
  EXPECT_EQ(third->lost_frames_of_partners, 1);
}

TEST_F(Partners, ThatAreGoneAreReachedByNobody) {
  Link(first, *second);
  second.reset();
  Library().ClearCalls();
  first.partners.AbortPartners();
  EXPECT_EQ(Synch(first), Texts{});
  EXPECT_EQ(Library().Calls(), Calls{kReadRate});
}

TEST_F(Partners, OnesThatLeaveAreListedNoMoreAlthoughTheyLive) {
  Link(first, *second);
  second->partners.Leave();
  first.partners.AbortPartners();
  EXPECT_EQ(second->lost_frames_of_partners, 0);
  EXPECT_FALSE(first.partners.RemoveBandwidthPartner(&second->partners));
}

}  // namespace
