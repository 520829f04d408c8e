// callback_gate.h
// Lets the library's callbacks in to a device, and keeps them out once it goes.
#pragma once

#include <span>
#include <vector>

#include "VimbaC.h"
#include "bmutex.h"

// The library calls back with what it was given long ago, and may go on to do so where it has refused to stop. Each
// device has a gate here with its frame records; a callback asks first whose frame it has.
class CallbackGate {
 public:
  // Open from now on for frames of these records, and for others that name `owner` in their first context value.
  // [host thread]
  CallbackGate(void* owner, std::span<const VmbFrame_t> records);
  ~CallbackGate();
  CallbackGate(const CallbackGate&) = delete;
  CallbackGate& operator=(const CallbackGate&) = delete;

  // Lets nobody in any more and returns when everybody has left. [host thread]
  void Close();

  // A callback's way in: while it lives, the owner does. [Vimba thread]
  class Visit {
   public:
    explicit Visit(const VmbFrame_t* frame);
    ~Visit();
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    // Null where the frame is no device's, or its device is on its way out.
    void* Owner() const { return m_gate ? m_gate->m_owner : nullptr; }

   private:
    CallbackGate* m_gate;
  };

 private:
  static CallbackGate* FindFor(const VmbFrame_t* frame) KEL_REQUIRES(s_gates_mutex);
  bool Holds(const VmbFrame_t* frame) const;

  static BMutex s_gates_mutex;
  static BCondition s_visit_over;
  static std::vector<CallbackGate*> s_open KEL_GUARDED_BY(s_gates_mutex);

  void* const m_owner;
  const std::span<const VmbFrame_t> m_records;
  int m_visits KEL_GUARDED_BY(s_gates_mutex) = 0;
};
