// known_facts.h
// What a check knows so far, while it measures.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "bmutex.h"
#include "check/check_facts.h"
#include "messages/call_awaited.h"

namespace Kelcam {

// One thread measures and writes; another may read at any time, also when the first waits for the driver for good.
// [any thread]
class KnownFacts {
 public:
  template <class Change>
  void Update(const Change& change) {
    const BMutexLock lock(m_mutex);
    change(m_facts);
  }
  CheckFacts Snapshot() const;

  // What is asked of the driver from now on, so that it can be named if it does not return. first_message: of the
  // driver's messages, those that come after it are about the step.
  void Begin(Operation operation, std::uint64_t first_message, std::chrono::milliseconds may_wait = {});
  struct Step {
    AwaitedCall call;
    std::uint64_t first_message = 0;
  };
  // None before the first.
  std::optional<Step> LastStep() const;

  // All is measured.
  void Finish();
  // Whether it is, at the latest after this time.
  bool WaitUntilFinished(std::chrono::milliseconds timeout) const;

 private:
  mutable BMutex m_mutex;
  mutable BCondition m_finished;
  CheckFacts m_facts KEL_GUARDED_BY(m_mutex);
  std::optional<Step> m_step KEL_GUARDED_BY(m_mutex);
  bool m_is_finished KEL_GUARDED_BY(m_mutex) = false;
};

}  // namespace Kelcam
