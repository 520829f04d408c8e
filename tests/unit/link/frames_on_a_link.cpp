// frames_on_a_link.cpp
// A link, and the frames that are sent over it.
#include "frames_on_a_link.h"

using Simulator::Seconds;

Simulator::Period Once(double from_s, double length_s) { return {Seconds(from_s), Seconds(length_s), Seconds::zero()}; }

FramesOnALink::Id FramesOnALink::Send(double start_s, double end_s, double rate_bytes_per_s) {
  transfers.push_back({Seconds(start_s), Seconds(end_s), rate_bytes_per_s});
  return timeline.Add(transfers.back());
}

double FramesOnALink::LostBytes(Id frame) {
  const Simulator::LinkTimeline::Transfer& transfer = transfers.at(static_cast<std::size_t>(frame - 1));
  const double whole_bytes = transfer.bytes_per_s * (transfer.end - transfer.start).count();
  double lost_bytes = 0.0;
  for (const auto& [begin, end, share] : timeline.Judge(frame)) lost_bytes += (end - begin) * whole_bytes * share;
  return lost_bytes;
}

std::vector<double> FramesOnALink::LostBytes(const std::vector<Id>& frames) {
  std::vector<double> lost_bytes;
  lost_bytes.reserve(frames.size());
  for (const Id frame : frames) lost_bytes.push_back(LostBytes(frame));
  return lost_bytes;
}
