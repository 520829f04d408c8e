// link_timeline_test.cpp
// What a link loses, against what pencil and paper give. All amounts are in bytes, all times in seconds.
#include "link/link_timeline.h"

#include <gmock/gmock.h>

#include "frames_on_a_link.h"

namespace {

using Simulator::BackgroundTraffic;
using Simulator::kNever;
using Simulator::LinkTimeline;
using Simulator::Period;
using Simulator::Seconds;
using testing::DoubleNear;
using testing::ElementsAre;

using LinkTimelineTest = LinkTest;

auto Bytes(double bytes) { return DoubleNear(bytes, kRoundingBytes); }

TEST_F(LinkTimelineTest, OneFrameThatTheLinkCarriesLosesNothing) {
  FramesOnALink link(settings);

  EXPECT_TRUE(link.timeline.Judge(link.Send(0.0, 1.0, kCapacityBytesPerSecond)).empty());
}

// 1.2 of the capacity are sent, so that a sixth of each is too much.
TEST_F(LinkTimelineTest, TwoEqualSendersAtSixtyPercentLoseASixthEach) {
  FramesOnALink link(settings);
  const auto first = link.Send(0.0, 1.0, 600'000.0);
  const auto second = link.Send(0.0, 1.0, 600'000.0);

  EXPECT_THAT(link.LostBytes({first, second}), ElementsAre(Bytes(100'000.0), Bytes(100'000.0)));
}

// The queue takes up 200,000 bytes/s for a quarter of a second; then it is full.
TEST_F(LinkTimelineTest, ABufferSavesWhatItHolds) {
  settings.network.buffer_bytes = 50'000.0;
  FramesOnALink link(settings);
  const auto first = link.Send(0.0, 1.0, 600'000.0);
  const auto second = link.Send(0.0, 1.0, 600'000.0);

  const auto losses = link.timeline.Judge(first);

  ASSERT_EQ(losses.size(), 1u);
  EXPECT_DOUBLE_EQ(losses[0].begin, 0.25);
  EXPECT_DOUBLE_EQ(losses[0].end, 1.0);
  EXPECT_DOUBLE_EQ(losses[0].share, 1.0 / 6.0);
  EXPECT_THAT(link.LostBytes(second), Bytes(75'000.0));
}

TEST_F(LinkTimelineTest, ABufferThatHoldsTheWholeExcessSavesEverything) {
  settings.network.buffer_bytes = 200'000.0;
  FramesOnALink link(settings);
  const auto first = link.Send(0.0, 1.0, 600'000.0);
  const auto second = link.Send(0.0, 1.0, 600'000.0);

  EXPECT_THAT(link.LostBytes({first, second}), ElementsAre(0.0, 0.0));
}

// Full after the first pair, and 0.1 s later half empty.
TEST_F(LinkTimelineTest, ABufferDrainsAtTheCapacity) {
  settings.network.buffer_bytes = 200'000.0;
  FramesOnALink link(settings);
  const auto first = link.Send(0.0, 1.0, 1'200'000.0);
  const auto second = link.Send(1.1, 2.1, 1'200'000.0);

  EXPECT_THAT(link.LostBytes({first, second}), ElementsAre(Bytes(0.0), Bytes(100'000.0)));
}

// 1.5 of the capacity: a third of each is lost.
TEST_F(LinkTimelineTest, UnequalSendersLoseTheSameShare) {
  FramesOnALink link(settings);
  const auto fast = link.Send(0.0, 1.0, 1'000'000.0);
  const auto slow = link.Send(0.0, 1.0, 500'000.0);

  EXPECT_THAT(link.LostBytes({fast, slow}), ElementsAre(Bytes(1'000'000.0 / 3.0), Bytes(500'000.0 / 3.0)));
}

// Both send from 0.5 to 1.0: 1.6 of the capacity, and 0.6 of 1.6 are lost.
TEST_F(LinkTimelineTest, FramesLoseOnlyWhereTheyOverlap) {
  FramesOnALink link(settings);
  const auto early = link.Send(0.0, 1.0, 800'000.0);
  const auto late = link.Send(0.5, 1.5, 800'000.0);

  const auto losses = link.timeline.Judge(early);

  ASSERT_EQ(losses.size(), 1u);
  EXPECT_DOUBLE_EQ(losses[0].begin, 0.5);
  EXPECT_DOUBLE_EQ(losses[0].end, 1.0);
  EXPECT_DOUBLE_EQ(losses[0].share, 0.375);
  EXPECT_THAT(link.LostBytes(late), Bytes(150'000.0));
}

TEST_F(LinkTimelineTest, FramesInTurnLoseNothing) {
  FramesOnALink link(settings);
  const auto first = link.Send(0.0, 1.0, kCapacityBytesPerSecond);
  const auto second = link.Send(1.0, 2.0, kCapacityBytesPerSecond);

  EXPECT_THAT(link.LostBytes({first, second}), ElementsAre(0.0, 0.0));
}

// In the second second of each four the sum is 1.3 of the capacity, and the frame loses its part of 0.3.
TEST_F(LinkTimelineTest, BackgroundThatComesAndGoesTakesItsPart) {
  settings.background = {{500'000.0, Period{Seconds(1.0), Seconds(1.0), Seconds(4.0)}}};
  FramesOnALink link(settings);
  const auto frame = link.Send(0.0, 8.0, 800'000.0);

  EXPECT_THAT(link.LostBytes(frame), Bytes(2.0 * 300'000.0 * 0.8 / 1.3));
}

TEST_F(LinkTimelineTest, BackgroundFillsTheQueueBeforeAFrameComes) {
  settings.network.buffer_bytes = 100'000.0;
  settings.background = {{1'100'000.0, Once(0.0, 1.0)}};
  FramesOnALink link(settings);
  const auto frame = link.Send(1.0, 1.5, 1'100'000.0);

  EXPECT_THAT(link.LostBytes(frame), Bytes(50'000.0));
}

TEST_F(LinkTimelineTest, ADeadCableLosesAllThatIsSent) {
  settings.network.buffer_bytes = 1e9;
  settings.dead = {Once(0.25, 0.5)};
  FramesOnALink link(settings);

  const auto losses = link.timeline.Judge(link.Send(0.0, 1.0, 400'000.0));

  ASSERT_EQ(losses.size(), 1u);
  EXPECT_DOUBLE_EQ(losses[0].begin, 0.25);
  EXPECT_DOUBLE_EQ(losses[0].end, 0.75);
  EXPECT_DOUBLE_EQ(losses[0].share, 1.0);
}

TEST_F(LinkTimelineTest, ASlowReceiverLosesWhatTheNetworkCarries) {
  settings.receiver = {800'000.0, 0.0};
  FramesOnALink link(settings);
  const auto frame = link.Send(0.0, 1.0, 1'000'000.0);

  EXPECT_THAT(link.LostBytes(frame), Bytes(200'000.0));
}

// It takes up 200,000 bytes/s for half a second.
TEST_F(LinkTimelineTest, ASlowReceiverHasABufferOfItsOwn) {
  settings.receiver = {800'000.0, 100'000.0};
  FramesOnALink link(settings);
  const auto frame = link.Send(0.0, 1.0, 1'000'000.0);

  EXPECT_THAT(link.LostBytes(frame), Bytes(100'000.0));
}

// A sixth is lost in the network, and the receiver takes 0.9 of the rest.
TEST_F(LinkTimelineTest, NetworkAndReceiverLoseOneAfterTheOther) {
  settings.receiver = {900'000.0, 0.0};
  FramesOnALink link(settings);
  const auto first = link.Send(0.0, 1.0, 600'000.0);
  const auto second = link.Send(0.0, 1.0, 600'000.0);

  EXPECT_THAT(link.LostBytes({first, second}), ElementsAre(Bytes(150'000.0), Bytes(150'000.0)));
}

// The switch stretches 1,200,000 bytes of a second to 1.2 s, in which the receiver takes 1,080,000.
TEST_F(LinkTimelineTest, TheReceiverSeesWhatTheSwitchLetsThrough) {
  settings.network.buffer_bytes = 1e9;
  settings.receiver = {900'000.0, 0.0};
  FramesOnALink link(settings);
  const auto frame = link.Send(0.0, 1.0, 1'200'000.0);

  EXPECT_THAT(link.LostBytes(frame), Bytes(120'000.0));
}

// Half of what passes the network is the camera's, and the receiver takes that alone.
TEST_F(LinkTimelineTest, BackgroundDoesNotReachTheReceiver) {
  settings.receiver = {500'000.0, 0.0};
  settings.background = {{500'000.0, Period{}}};
  FramesOnALink link(settings);

  EXPECT_TRUE(link.timeline.Judge(link.Send(0.0, 1.0, 500'000.0)).empty());
}

TEST_F(LinkTimelineTest, AnAbandonedFrameSendsNoMore) {
  FramesOnALink link(settings);
  const auto frame = link.Send(0.0, 1.0, 1'000'000.0);
  const auto other = link.Send(0.0, 1.0, 1'000'000.0);

  link.timeline.Abandon(other, Seconds(0.5));

  EXPECT_THAT(link.LostBytes(frame), Bytes(250'000.0));
}

TEST_F(LinkTimelineTest, AFrameThatIsAbandonedBeforeItsStartSendsNothing) {
  FramesOnALink link(settings);
  const auto frame = link.Send(0.0, 1.0, 1'000'000.0);
  const auto other = link.Send(0.5, 1.5, 1'000'000.0);

  link.timeline.Abandon(other, Seconds(0.25));

  EXPECT_THAT(link.LostBytes(frame), 0.0);
}

TEST_F(LinkTimelineTest, AFrameMayBeAddedAfterOthersWereJudged) {
  settings.network.buffer_bytes = 10'000.0;
  FramesOnALink in_order(settings);
  FramesOnALink late(settings);
  const std::vector<FramesOnALink::Id> all{in_order.Send(0.0, 1.0, 900'000.0), in_order.Send(0.5, 1.5, 900'000.0),
                                           in_order.Send(0.75, 1.75, 900'000.0)};
  const std::vector<double> expected = in_order.LostBytes(all);

  const auto first = late.Send(0.0, 1.0, 900'000.0);
  EXPECT_THAT(late.LostBytes(first), 0.0);
  const auto second = late.Send(0.5, 1.5, 900'000.0);
  const auto third = late.Send(0.75, 1.75, 900'000.0);

  EXPECT_THAT(late.LostBytes({second, third}), ElementsAre(expected[1], expected[2]));
}

TEST_F(LinkTimelineTest, AFrameBeforeTheFirstOneCountsToo) {
  FramesOnALink link(settings);
  const auto first = link.Send(0.0, 1.0, 600'000.0);
  const auto earlier = link.Send(-60.0, 1.0, 600'000.0);

  EXPECT_THAT(link.LostBytes({first, earlier}), ElementsAre(Bytes(100'000.0), Bytes(100'000.0)));
}

TEST_F(LinkTimelineTest, BytesThatAreSentAgainUseWhatIsFree) {
  settings.background = {{600'000.0, Once(0.0, 1.0)}};
  FramesOnALink link(settings);

  // 0.2 s at 400,000 and 0.1 s at 500,000 bytes/s.
  const Seconds through = link.timeline.Through(130'000.0, 500'000.0, Seconds(0.8), Seconds(2.0));
  const Seconds too_late = link.timeline.Through(130'000.0, 500'000.0, Seconds(0.8), Seconds(1.0));

  EXPECT_DOUBLE_EQ(through.count(), 1.1);
  EXPECT_EQ(too_late, kNever);
}

TEST_F(LinkTimelineTest, NothingIsFreeWhileAQueueDrainsOrTheCableIsDead) {
  settings.network.buffer_bytes = 100'000.0;
  settings.background = {{1'100'000.0, Once(0.0, 1.0)}};
  settings.dead = {Once(1.5, 0.5)};
  settings.frame_timeout = Seconds(8.0);
  FramesOnALink link(settings);
  const auto through = [&](double bytes) { return link.timeline.Through(bytes, 1e9, Seconds(1.0), Seconds(9.0)); };

  EXPECT_DOUBLE_EQ(through(300'000.0).count(), 1.4);
  EXPECT_DOUBLE_EQ(through(500'000.0).count(), 2.1);
}

TEST_F(LinkTimelineTest, AFrameThatTakesNoTimeLosesNothing) {
  settings.dead = {Period{}};
  FramesOnALink link(settings);

  EXPECT_TRUE(link.timeline.Judge(link.Send(0.0, 0.0, 1e12)).empty());
}

TEST_F(LinkTimelineTest, WhatItRemembersStaysBounded) {
  settings.network.buffer_bytes = 10'000.0;
  settings.background = {{500'000.0, Period{Seconds(0.0), Seconds(0.003), Seconds(0.01)}}};
  FramesOnALink link(settings);
  std::size_t most = 0;
  for (int i = 0; i < 20'000; ++i) {
    const double start_s = i * 0.01;
    const auto one = link.timeline.Add({Seconds(start_s), Seconds(start_s + 0.008), 700'000.0});
    const auto other = link.timeline.Add({Seconds(start_s + 0.001), Seconds(start_s + 0.009), 700'000.0});
    std::ignore = link.timeline.Judge(one);
    std::ignore = link.timeline.Judge(other);
    most = std::max(most, link.timeline.Remembered());
  }

  // Of 200 a second and some changes around each.
  EXPECT_LT(most, 5'000u);
}

}  // namespace
