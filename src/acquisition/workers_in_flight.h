// workers_in_flight.h
// Counts the detached workers of a device, so that the device can outlive them.
#pragma once

#include <memory>
#include <utility>

// No worker is owned or joined. Each carries a ticket; the count that tickets report to is shared with them, so that
// the last one may finish reporting while its device is already going.
class WorkersInFlight {
 public:
  class Ticket {
   public:
    Ticket(Ticket&&) noexcept = default;
    Ticket(const Ticket&) = delete;
    Ticket& operator=(const Ticket&) = delete;
    Ticket& operator=(Ticket&&) = delete;
    ~Ticket();

   private:
    friend class WorkersInFlight;
    struct Count;
    explicit Ticket(std::shared_ptr<Count> count) : m_count(std::move(count)) {}
    std::shared_ptr<Count> m_count;
  };

  WorkersInFlight();

  Ticket Enter();        // before the worker starts [any thread]
  void WaitUntilNone();  // once no new one can start [host thread]

 private:
  std::shared_ptr<Ticket::Count> m_count;
};
