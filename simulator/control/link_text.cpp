// control/link_text.cpp
// Network links as JSON.
#include "control/link_text.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "camera/camera_configuration.h"

namespace Simulator {
namespace {

constexpr char kLink[] = "link";
constexpr char kLinks[] = "links";
constexpr char kName[] = "name";

constexpr double kMaxBytes = 1e12;
constexpr std::int64_t kMinMtuBytes = 576;
constexpr Milliseconds kLongest = std::chrono::seconds(1000);
// Shorter ones would make much work of a long time without frames.
constexpr Milliseconds kShortestRound{1.0};

void ReadPeriod(JsonMembers& members, Period& period) {
  Milliseconds from{0.0};
  Milliseconds length = kNever;
  double every_ms = 0.0;
  members.Time("from_ms", from, kLongest);
  members.Time("for_ms", length, kLongest);
  members.Number("every_ms", every_ms, kShortestRound.count(), kLongest.count());
  period = {from, length, Milliseconds(every_ms)};
}

void ReadBottleneck(JsonMembers& members, Bottleneck& bottleneck) {
  members.Number("capacity", bottleneck.capacity_bytes_per_s, 1.0, kMaxBytes);
  members.Number("buffer_bytes", bottleneck.buffer_bytes, 0.0, kMaxBytes);
}

LinkSettings ReadLink(JsonMembers& members) {
  LinkSettings link;
  members.Text(kName, link.name);
  ReadBottleneck(members, link.network);
  members.Object("receiver", [&](JsonMembers& receiver) { ReadBottleneck(receiver, link.receiver); });
  members.Integer("mtu", link.mtu_bytes, kMinMtuBytes, kMaxPacketBytes);
  members.Objects("background", [&](JsonMembers& traffic) {
    BackgroundTraffic& one = link.background.emplace_back();
    traffic.Number("rate_bytes_per_s", one.rate_bytes_per_s, 0.0, kMaxBytes);
    ReadPeriod(traffic, one.when);
  });
  members.Objects("dead", [&](JsonMembers& period) { ReadPeriod(period, link.dead.emplace_back()); });
  members.Flag("resends", link.resends);
  members.Time("frameTimeout_ms", link.frame_timeout, kLongest);
  return link;
}

}  // namespace

std::vector<LinkSettings> ReadLinks(JsonMembers& members) {
  std::vector<LinkSettings> links;
  const bool several = members.Objects(kLinks, [&](JsonMembers& member) {
    LinkSettings link = ReadLink(member);
    const auto has_its_name = [&](const LinkSettings& other) { return other.name == link.name; };
    if (std::any_of(links.begin(), links.end(), has_its_name))
      throw std::invalid_argument(member.PathOf(kName) + ": \"" + link.name + "\" is taken already");
    links.push_back(std::move(link));
  });
  if (several && links.empty()) members.Refuse(kLinks, "holds no link");
  const bool one = members.Object(kLink, [&](JsonMembers& member) { links.push_back(ReadLink(member)); });
  if (one && several) members.Refuse(kLink, "and " + std::string(kLinks) + " are both there");
  if (links.empty()) links.emplace_back();
  return links;
}

}  // namespace Simulator
