// frames_on_a_link.h
// A link, and the frames that are sent over it.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "link/link_timeline.h"
#include "link/resend_queue.h"

// What the settings of these tests have in common: a link that carries a million bytes a second.
inline constexpr double kCapacityBytesPerSecond = 1e6;
// Sums of exact parts, in bytes.
inline constexpr double kRoundingBytes = 1e-3;

// Background or a dead cable from this moment on.
Simulator::Period Once(double from_s, double length_s);

struct FramesOnALink {
  using Id = Simulator::LinkTimeline::Id;

  explicit FramesOnALink(const Simulator::LinkSettings& settings) : timeline(settings) {}

  Id Send(double start_s, double end_s, double rate_bytes_per_s);
  double LostBytes(Id frame);
  // Each in the order of the frames.
  std::vector<double> LostBytes(const std::vector<Id>& frames);

  Simulator::LinkTimeline timeline;
  std::vector<Simulator::LinkTimeline::Transfer> transfers;
};

struct LinkTest : testing::Test {
  Simulator::LinkSettings settings = [] {
    Simulator::LinkSettings link;
    link.network = {kCapacityBytesPerSecond, 0.0};
    return link;
  }();
};
