// link/lost_packets.cpp
// Which packets of a frame get lost.
#include "link/lost_packets.h"

#include <algorithm>
#include <cmath>

namespace Simulator {
namespace {

// Rounding, of times above all, makes up less of a packet than this.
constexpr double kRoundingPackets = 1e-3;

std::size_t WholePackets(double frame_packets) { return static_cast<std::size_t>(std::ceil(frame_packets)); }

// Marks so many of the packets from `begin` to before `end`, or all that are left there. Returns how many.
std::size_t Mark(LostPackets& lost, std::size_t begin, std::size_t end, std::size_t wanted, std::mt19937_64& random) {
  const auto from = lost.begin() + static_cast<std::ptrdiff_t>(begin);
  const auto to = lost.begin() + static_cast<std::ptrdiff_t>(end);
  auto left = static_cast<std::size_t>(std::count(from, to, false));
  wanted = std::min(wanted, left);
  std::size_t missing = wanted;
  for (auto packet = from; packet != to && missing != 0; ++packet) {
    if (*packet) continue;
    if (std::uniform_int_distribution<std::size_t>(1, left--)(random) > missing) continue;
    *packet = true;
    --missing;
  }
  return wanted;
}

}  // namespace

LostPackets PacketsLostBy(const std::vector<LinkTimeline::Loss>& losses, double frame_packets,
                          std::mt19937_64& random) {
  LostPackets lost;
  // What was lost in packets, less those that were marked for it.
  double owed = 0.0;
  for (const auto& [begin, end, share] : losses) {
    owed += share * (end - begin) * frame_packets;
    const double wanted = std::ceil(owed - kRoundingPackets);
    if (wanted < 1.0) continue;
    lost.resize(WholePackets(frame_packets));
    const auto first = static_cast<std::size_t>(std::max(0.0, std::floor(begin * frame_packets)));
    const auto last = std::min(lost.size(), static_cast<std::size_t>(std::ceil(end * frame_packets)));
    if (first < last) owed -= static_cast<double>(Mark(lost, first, last, static_cast<std::size_t>(wanted), random));
  }
  return lost;
}

void LoseAtRandom(LostPackets& lost, double probability, double frame_packets, std::mt19937_64& random) {
  if (probability <= 0.0) return;
  lost.resize(WholePackets(frame_packets));
  std::bernoulli_distribution loses(std::min(probability, 1.0));
  for (std::size_t packet = 0; packet < lost.size(); ++packet) {
    if (loses(random)) lost[packet] = true;
  }
  if (std::find(lost.begin(), lost.end(), true) == lost.end()) lost.clear();
}

}  // namespace Simulator
