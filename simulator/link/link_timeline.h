// link/link_timeline.h
// What a link loses and has left over, from moment to moment, while frames are sent over it.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <vector>

#include "link/link_flow.h"
#include "link/link_settings.h"

namespace Simulator {

// Moments count from the first frame's on, and some may lie before it. Between two moments at which a transfer, the
// background, the cable or a queue changes everything is constant, so that the sums over them are exact.
//
// A transfer may be added when others after it were judged: what was judged remains, and what follows is reckoned anew.
class LinkTimeline {
 public:
  using Id = std::uint64_t;
  // A frame on its way, at an even rate.
  struct Transfer {
    Seconds start;
    Seconds end;
    double bytes_per_s;
  };
  // Between these parts of a transfer, each 0 to 1, this share of its bytes gets lost.
  struct Loss {
    double begin;
    double end;
    double share;
  };

  // How much later than its start a transfer may be added. All before that is forgotten.
  static constexpr Seconds kLateness{2.0};

  explicit LinkTimeline(const LinkSettings& link) : m_link(link) {}

  // To be judged or abandoned later on.
  Id Add(const Transfer& transfer);
  // From that moment on nothing more of it is sent.
  void Abandon(Id transfer, Seconds moment);
  // What it lost, in the order of time.
  std::vector<Loss> Judge(Id transfer);

  // When so many bytes, sent from that moment on and no faster than this, have found free capacity; kNever: not by the
  // end. The end is no later than the link's time-out after the beginning.
  Seconds Through(double bytes, double bytes_per_s, Seconds from, Seconds end);

  // How many transfers and stretches of time it remembers.
  std::size_t Remembered() const { return m_stretches.size() + m_ahead.size() + m_behind.size(); }

 private:
  struct Tracked {
    Id id;
    Transfer transfer;
  };
  // Lasts until the next one starts, the last one until m_now.
  struct Stretch {
    Seconds start;
    LinkBacklog backlog;
    double lost_share;
    double free_bytes_per_s;
  };

  void Advance(Seconds until);
  void Rewind(Seconds moment);
  void PassEnded();
  LinkLoad Load() const;
  Seconds NextChange() const;
  void Forget();
  // The body gets each stretch's part between these moments: its start, its end, the stretch. It returns whether it
  // wants more.
  template <class Body>
  void ForEachStretch(Seconds from, Seconds end, Body body) const;

  const LinkSettings m_link;
  // How far the stretches reach, and the queues there.
  Seconds m_now = -kNever;
  LinkBacklog m_backlog;
  std::deque<Stretch> m_stretches;
  // Those that end after m_now, and the others in the order of their ends.
  std::vector<Tracked> m_ahead;
  std::deque<Tracked> m_behind;
  std::map<Id, Transfer> m_unjudged;
  Id m_last_id = 0;
};

}  // namespace Simulator
