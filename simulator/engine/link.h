// engine/link.h
// The network link that simulated cameras share.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "bmutex.h"
#include "engine/clock.h"
#include "link/link_timeline.h"
#include "link/resend_queue.h"

namespace Simulator {

// Counts time from the start of the first transfer on. [any thread]
class Link {
 public:
  using Id = LinkTimeline::Id;
  using Loss = LinkTimeline::Loss;
  using Resend = std::shared_ptr<ResendQueue::Request>;
  // As planned: when a thread wakes up for it makes no difference.
  struct Transfer {
    Clock::time_point start;
    Clock::time_point end;
    double bytes_per_s;
  };

  explicit Link(const LinkSettings& settings) : m_settings(settings), m_timeline(settings) {}

  const LinkSettings& Settings() const { return m_settings; }

  // To be called as soon as the transfer is planned, and to be judged or abandoned later on.
  Id Begin(const Transfer& transfer);
  // From that moment on nothing more of it is sent.
  void Abandon(Id transfer, Clock::time_point moment);
  // What the link lost of it. To be called when it has ended: transfers that begin later change nothing any more.
  std::vector<Loss> Judge(Id transfer);

  // Asks for lost bytes of a transfer that ended at that moment.
  Resend Request(double bytes, double bytes_per_s, Clock::time_point ended);
  struct Arrival {
    Clock::time_point moment;
    bool complete;
  };
  // When the resends will have come, or the frame's time-out. Transfers that begin meanwhile may put it off. To be
  // asked again at that moment.
  Arrival ArrivalOf(const Resend& resend, Clock::time_point moment);

 private:
  Seconds At(Clock::time_point moment) const KEL_REQUIRES(m_mutex) { return moment - *m_epoch; }

  const LinkSettings m_settings;
  mutable BMutex m_mutex;
  std::optional<Clock::time_point> m_epoch KEL_GUARDED_BY(m_mutex);
  LinkTimeline m_timeline KEL_GUARDED_BY(m_mutex);
  ResendQueue m_resends KEL_GUARDED_BY(m_mutex);
};

}  // namespace Simulator
