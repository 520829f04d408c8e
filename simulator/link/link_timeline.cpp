// link/link_timeline.cpp
// What a link loses and has left over, from moment to moment, while frames are sent over it.
#include "link/link_timeline.h"

#include <algorithm>

namespace Simulator {

LinkTimeline::Id LinkTimeline::Add(const Transfer& transfer) {
  Rewind(transfer.start);
  m_ahead.push_back({++m_last_id, transfer});
  m_unjudged.emplace(m_last_id, transfer);
  return m_last_id;
}

void LinkTimeline::Abandon(Id transfer, Seconds moment) {
  m_unjudged.erase(transfer);
  Rewind(moment);
  for (Tracked& tracked : m_ahead) {
    if (tracked.id == transfer) tracked.transfer.end = std::min(tracked.transfer.end, moment);
  }
}

std::vector<LinkTimeline::Loss> LinkTimeline::Judge(Id transfer) {
  std::vector<Loss> losses;
  const Transfer judged = m_unjudged.at(transfer);
  const Seconds whole = judged.end - judged.start;
  Advance(judged.end);
  ForEachStretch(judged.start, judged.end, [&](Seconds start, Seconds end, const Stretch& stretch) {
    if (stretch.lost_share > 0.0)
      losses.push_back({(start - judged.start) / whole, (end - judged.start) / whole, stretch.lost_share});
    return true;
  });
  m_unjudged.erase(transfer);
  return losses;
}

Seconds LinkTimeline::Through(double bytes, double bytes_per_s, Seconds from, Seconds end) {
  Advance(end);
  Seconds through = kNever;
  ForEachStretch(from, end, [&](Seconds start, Seconds stop, const Stretch& stretch) {
    const double pace_bytes_per_s = std::min(bytes_per_s, stretch.free_bytes_per_s);
    const double capacity_bytes = pace_bytes_per_s * (stop - start).count();
    if (capacity_bytes >= bytes) through = start + Seconds(bytes / pace_bytes_per_s);
    bytes -= capacity_bytes;
    return through == kNever;
  });
  return through;
}

template <class Body>
void LinkTimeline::ForEachStretch(Seconds from, Seconds end, Body body) const {
  const auto after = std::upper_bound(m_stretches.begin(), m_stretches.end(), from,
                                      [](Seconds moment, const Stretch& stretch) { return moment < stretch.start; });
  auto stretch = after == m_stretches.begin() ? after : std::prev(after);
  for (; stretch != m_stretches.end() && stretch->start < end; ++stretch) {
    const Seconds next = std::next(stretch) == m_stretches.end() ? m_now : std::next(stretch)->start;
    const Seconds begin = std::max(from, stretch->start);
    const Seconds stop = std::min(end, next);
    if (begin < stop && !body(begin, stop, *stretch)) return;
  }
}

void LinkTimeline::Advance(Seconds until) {
  PassEnded();
  while (m_now < until) {
    const LinkFlow flow(m_link, m_backlog, Load());
    const Seconds change = std::min(until, NextChange());
    const Seconds time = std::min(change - m_now, flow.UntilTurn());
    m_stretches.push_back({m_now, m_backlog, flow.LostShare(), flow.FreeBytesPerSecond()});
    m_backlog = flow.BacklogAfter(time);
    m_now = time < change - m_now ? m_now + time : change;
    PassEnded();
    Forget();
  }
}

// Back to a moment no later than this one, as far as it is remembered.
void LinkTimeline::Rewind(Seconds moment) {
  while (m_now > moment && !m_stretches.empty()) {
    m_now = m_stretches.back().start;
    m_backlog = m_stretches.back().backlog;
    m_stretches.pop_back();
  }
  while (!m_behind.empty() && m_behind.back().transfer.end > m_now) {
    m_ahead.push_back(m_behind.back());
    m_behind.pop_back();
  }
}

void LinkTimeline::PassEnded() {
  const auto ended = std::partition(m_ahead.begin(), m_ahead.end(),
                                    [&](const Tracked& tracked) { return tracked.transfer.end > m_now; });
  m_behind.insert(m_behind.end(), ended, m_ahead.end());
  m_ahead.erase(ended, m_ahead.end());
}

LinkLoad LinkTimeline::Load() const {
  LinkLoad load;
  for (const auto& [id, transfer] : m_ahead) {
    if (transfer.start <= m_now) load.cameras_bytes_per_s += transfer.bytes_per_s;
  }
  for (const BackgroundTraffic& traffic : m_link.background) {
    if (traffic.when.Holds(m_now)) load.background_bytes_per_s += traffic.rate_bytes_per_s;
  }
  load.dead =
      std::any_of(m_link.dead.begin(), m_link.dead.end(), [&](const Period& period) { return period.Holds(m_now); });
  return load;
}

Seconds LinkTimeline::NextChange() const {
  Seconds next = kNever;
  for (const auto& [id, transfer] : m_ahead) {
    for (const Seconds moment : {transfer.start, transfer.end}) {
      if (moment > m_now) next = std::min(next, moment);
    }
  }
  for (const BackgroundTraffic& traffic : m_link.background) next = std::min(next, traffic.when.NextChange(m_now));
  for (const Period& period : m_link.dead) next = std::min(next, period.NextChange(m_now));
  return next;
}

// What nobody can ask for any more. Frames that wait for resends reach a time-out ahead of the present and a time-out
// back.
void LinkTimeline::Forget() {
  Seconds needed = m_now - kLateness - 2.0 * m_link.frame_timeout;
  for (const auto& [id, transfer] : m_unjudged) needed = std::min(needed, transfer.start);
  while (m_stretches.size() > 1 && m_stretches[1].start <= needed) m_stretches.pop_front();
  while (!m_behind.empty() && m_behind.front().transfer.end <= needed) m_behind.pop_front();
}

}  // namespace Simulator
