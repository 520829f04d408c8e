// callback_gate.cpp
// Lets the library's callbacks in to a device, and keeps them out once it goes.
#include "acquisition/callback_gate.h"

#include <algorithm>
#include <functional>

BMutex CallbackGate::s_gates_mutex;
BCondition CallbackGate::s_visit_over;
std::vector<CallbackGate*> CallbackGate::s_open;

CallbackGate::CallbackGate(void* owner, std::span<const VmbFrame_t> records) : m_owner(owner), m_records(records) {
  const BMutexLock lock(s_gates_mutex);
  s_open.push_back(this);
}

CallbackGate::~CallbackGate() { Close(); }

void CallbackGate::Close() {
  BMutexLock lock(s_gates_mutex);
  std::erase(s_open, this);
  while (m_visits != 0) s_visit_over.Wait(lock);
}

CallbackGate::Visit::Visit(const VmbFrame_t* frame) : m_gate(nullptr) {
  const BMutexLock lock(s_gates_mutex);
  m_gate = FindFor(frame);
  if (m_gate) ++m_gate->m_visits;
}

CallbackGate::Visit::~Visit() {
  if (!m_gate) return;
  const BMutexLock lock(s_gates_mutex);
  if (--m_gate->m_visits == 0) s_visit_over.NotifyAll();
}

// By its address where that is one of the ring: such a record is not read here, as a worker may have it in hand.
CallbackGate* CallbackGate::FindFor(const VmbFrame_t* frame) {
  const auto by_record =
      std::find_if(s_open.begin(), s_open.end(), [&](const CallbackGate* gate) { return gate->Holds(frame); });
  if (by_record != s_open.end()) return *by_record;
  if (!frame) return nullptr;
  const auto by_owner = std::find_if(s_open.begin(), s_open.end(),
                                     [&](const CallbackGate* gate) { return gate->m_owner == frame->context[0]; });
  return by_owner != s_open.end() ? *by_owner : nullptr;
}

bool CallbackGate::Holds(const VmbFrame_t* frame) const {
  const std::less<> before;
  return !before(frame, m_records.data()) && before(frame, m_records.data() + m_records.size());
}
