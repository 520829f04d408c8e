// resend_queue_test.cpp
// Lost packets that are sent again, against what pencil and paper give. All amounts are in bytes, all times in seconds.
#include "link/resend_queue.h"

#include <gmock/gmock.h>

#include "frames_on_a_link.h"

namespace {

using Simulator::kNever;
using Simulator::ResendQueue;
using Simulator::Seconds;

struct ResendQueueTest : LinkTest {
  ResendQueueTest() { settings.frame_timeout = Seconds(1.0); }

  std::shared_ptr<ResendQueue::Request> Ask(double bytes, double from_s) {
    auto request = std::make_shared<ResendQueue::Request>(
        ResendQueue::Request{bytes, 1e9, Seconds(from_s), Seconds(from_s + 1.0)});
    queue.Add(request);
    return request;
  }

  ResendQueue queue;
};

TEST_F(ResendQueueTest, TakesTheTimeThatTheLinkNeeds) {
  FramesOnALink link(settings);
  const auto request = Ask(100'000.0, 1.0);

  queue.Update(link.timeline, Seconds(1.0));

  EXPECT_DOUBLE_EQ(request->through.count(), 1.1);
}

// Of another camera that sends 0.8 of the capacity.
TEST_F(ResendQueueTest, TakesWhatFramesLeave) {
  FramesOnALink link(settings);
  std::ignore = link.Send(0.0, 2.0, 800'000.0);
  const auto request = Ask(100'000.0, 1.0);

  queue.Update(link.timeline, Seconds(1.0));

  EXPECT_DOUBLE_EQ(request->through.count(), 1.5);
}

TEST_F(ResendQueueTest, DoesNotCureWhatTheTimeOutLeavesNoRoomFor) {
  FramesOnALink link(settings);
  std::ignore = link.Send(0.0, 5.0, 950'000.0);
  const auto request = Ask(100'000.0, 1.0);

  queue.Update(link.timeline, Seconds(1.0));

  EXPECT_EQ(request->through, kNever);
}

TEST_F(ResendQueueTest, ServesOneFrameAfterTheOther) {
  FramesOnALink link(settings);
  const auto second = Ask(100'000.0, 1.05);
  const auto first = Ask(100'000.0, 1.0);

  queue.Update(link.timeline, Seconds(1.0));

  EXPECT_DOUBLE_EQ(first->through.count(), 1.1);
  EXPECT_DOUBLE_EQ(second->through.count(), 1.2);
}

TEST_F(ResendQueueTest, AFrameThatTimesOutFreesTheLinkForTheNext) {
  FramesOnALink link(settings);
  const auto first = Ask(2'000'000.0, 1.0);
  const auto second = Ask(100'000.0, 1.5);

  queue.Update(link.timeline, Seconds(1.5));

  EXPECT_EQ(first->through, kNever);
  EXPECT_DOUBLE_EQ(second->through.count(), 2.1);
}

TEST_F(ResendQueueTest, FramesThatBeginMeanwhilePutItOff) {
  FramesOnALink link(settings);
  const auto request = Ask(500'000.0, 1.0);
  queue.Update(link.timeline, Seconds(1.0));
  EXPECT_DOUBLE_EQ(request->through.count(), 1.5);

  std::ignore = link.Send(1.25, 1.75, 1'000'000.0);
  queue.Update(link.timeline, Seconds(1.5));

  EXPECT_DOUBLE_EQ(request->through.count(), 2.0);
}

TEST_F(ResendQueueTest, WhatIsOverIsFinalAndKeepsItsPlace) {
  FramesOnALink link(settings);
  const auto first = Ask(500'000.0, 1.0);
  queue.Update(link.timeline, Seconds(1.5));
  EXPECT_EQ(queue.Open(), 0u);

  const auto second = Ask(100'000.0, 1.25);
  std::ignore = link.Send(1.0, 1.2, 1'000'000.0);
  queue.Update(link.timeline, Seconds(1.5));

  EXPECT_DOUBLE_EQ(first->through.count(), 1.5);
  EXPECT_DOUBLE_EQ(second->through.count(), 1.6);
}

TEST_F(ResendQueueTest, ForgetsFramesThatNobodyAsksAbout) {
  FramesOnALink link(settings);
  for (int i = 0; i < 1000; ++i) {
    Ask(2'000'000.0, i * 0.1);
    queue.Update(link.timeline, Seconds(i * 0.1));
    EXPECT_LT(queue.Open(), 15u);
  }
}

}  // namespace
