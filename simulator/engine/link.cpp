// engine/link.cpp
// The network link that simulated cameras share.
#include "engine/link.h"

namespace Simulator {

Link::Id Link::Begin(const Transfer& transfer) {
  const BMutexLock lock(m_mutex);
  if (!m_epoch) m_epoch = transfer.start;
  return m_timeline.Add({At(transfer.start), At(transfer.end), transfer.bytes_per_s});
}

void Link::Abandon(Id transfer, Clock::time_point moment) {
  const BMutexLock lock(m_mutex);
  m_timeline.Abandon(transfer, At(moment));
}

std::vector<Link::Loss> Link::Judge(Id transfer) {
  const BMutexLock lock(m_mutex);
  return m_timeline.Judge(transfer);
}

Link::Resend Link::Request(double bytes, double bytes_per_s, Clock::time_point ended) {
  const BMutexLock lock(m_mutex);
  const Seconds from = At(ended);
  auto request = std::make_shared<ResendQueue::Request>(
      ResendQueue::Request{bytes, bytes_per_s, from, from + m_settings.frame_timeout});
  m_resends.Add(request);
  return request;
}

Link::Arrival Link::ArrivalOf(const Resend& resend, Clock::time_point moment) {
  const BMutexLock lock(m_mutex);
  m_resends.Update(m_timeline, At(moment));
  const bool complete = resend->through != kNever;
  return {*m_epoch + ClockDuration(complete ? resend->through : resend->end), complete};
}

}  // namespace Simulator
