// link/resend_queue.cpp
// Lost packets that are sent again in the capacity that frames and background leave.
#include "link/resend_queue.h"

#include <algorithm>
#include <utility>

namespace Simulator {

void ResendQueue::Add(std::shared_ptr<Request> request) {
  const auto later = std::upper_bound(m_requests.begin(), m_requests.end(), request->from,
                                      [](Seconds from, const auto& other) { return from < other->from; });
  m_requests.insert(later, std::move(request));
}

void ResendQueue::Update(LinkTimeline& timeline, Seconds moment) {
  Seconds used = m_used;
  for (const auto& request : m_requests) {
    request->through =
        timeline.Through(request->bytes, request->bytes_per_s, std::max(used, request->from), request->end);
    used = std::max(used, std::min(request->through, request->end));
  }
  while (!m_requests.empty()) {
    const Request& first = *m_requests.front();
    const Seconds over = std::min(first.through, first.end);
    if (over > moment) break;
    m_used = std::max(m_used, over);
    m_requests.pop_front();
  }
}

}  // namespace Simulator
