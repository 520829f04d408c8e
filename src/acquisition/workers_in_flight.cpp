// workers_in_flight.cpp
// Counts the detached workers of a device, so that the device can outlive them.
#include "acquisition/workers_in_flight.h"

struct WorkersInFlight::Ticket::Count {
  std::mutex lock;
  std::condition_variable none_left;
  int workers = 0;
};

WorkersInFlight::WorkersInFlight() : m_count(std::make_shared<Ticket::Count>()) {}

WorkersInFlight::Ticket WorkersInFlight::Enter() {
  const std::lock_guard lock(m_count->lock);
  ++m_count->workers;
  return Ticket(m_count);
}

WorkersInFlight::Ticket::~Ticket() {
  if (!m_count) return;  // moved from
  const std::lock_guard lock(m_count->lock);
  if (--m_count->workers == 0) m_count->none_left.notify_all();
}

void WorkersInFlight::WaitUntilNone() {
  std::unique_lock lock(m_count->lock);
  m_count->none_left.wait(lock, [this] { return m_count->workers == 0; });
}
