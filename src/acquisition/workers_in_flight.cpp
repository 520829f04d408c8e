// workers_in_flight.cpp
// Counts the detached workers of a device, so that the device can outlive them.
#include "acquisition/workers_in_flight.h"

#include "bmutex.h"

struct WorkersInFlight::Ticket::Count {
  BMutex mutex;
  BCondition none_left;
  int workers KEL_GUARDED_BY(mutex) = 0;
};

WorkersInFlight::WorkersInFlight() : m_count(std::make_shared<Ticket::Count>()) {}

WorkersInFlight::Ticket WorkersInFlight::Enter() {
  const BMutexLock lock(m_count->mutex);
  ++m_count->workers;
  return Ticket(m_count);
}

WorkersInFlight::Ticket::~Ticket() {
  // Without a count it has been moved from.
  if (!m_count) return;
  const BMutexLock lock(m_count->mutex);
  if (--m_count->workers == 0) m_count->none_left.NotifyAll();
}

void WorkersInFlight::WaitUntilNone() {
  BMutexLock lock(m_count->mutex);
  while (m_count->workers != 0) m_count->none_left.Wait(lock);
}
