// link/lost_packets.h
// Which packets of a frame get lost.
#pragma once

#include <cstddef>
#include <random>
#include <vector>

#include "link/link_timeline.h"

namespace Simulator {

// By packet; empty: none is lost.
using LostPackets = std::vector<bool>;

// The packets that a link's losses come to. `frame_packets` is the frame's size in packets, of which the last may be
// smaller than the others.
//
// While a queue is full, the switch drops what comes at a moment without room. The packets of several cameras
// interleave there, so that the lost ones spread over the whole time in which the queue is full. Which they are is
// random. How many they are is not: as many as it takes to hold the lost bytes.
LostPackets PacketsLostBy(const std::vector<LinkTimeline::Loss>& losses, double frame_packets, std::mt19937_64& random);

// Each packet gets lost with this probability, too.
void LoseAtRandom(LostPackets& lost, double probability, double frame_packets, std::mt19937_64& random);

}  // namespace Simulator
