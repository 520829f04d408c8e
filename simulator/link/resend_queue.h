// link/resend_queue.h
// Lost packets that are sent again in the capacity that frames and background leave.
#pragma once

#include <deque>
#include <memory>

#include "link/link_timeline.h"

namespace Simulator {

// One frame's after the other's, in the order in which the frames ended.
class ResendQueue {
 public:
  struct Request {
    double bytes;
    // No faster than the camera sends.
    double bytes_per_s;
    Seconds from;
    Seconds end;
    // When all of it will have come by what is known; kNever: not by the end.
    Seconds through = kNever;
  };

  void Add(std::shared_ptr<Request> request);
  // Reckons all requests anew. Those that were through or over at that moment are final and forgotten.
  void Update(LinkTimeline& timeline, Seconds moment);

  std::size_t Open() const { return m_requests.size(); }

 private:
  std::deque<std::shared_ptr<Request>> m_requests;
  // Up to here the free capacity is used.
  Seconds m_used = -kNever;
};

}  // namespace Simulator
