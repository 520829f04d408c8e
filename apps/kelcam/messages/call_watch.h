// call_watch.h
// Reports calls of the driver that do not return.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>

#include "bmutex.h"
#include "messages/call_awaited.h"
#include "messages/message_memory.h"

namespace Kelcam {

// A thread that prints a notice on standard error when the call under way has neither returned nor reported anything
// for 3 seconds, longer than it may wait, and again after 10, 30 and 60. Calls are made one at a time.
class CallWatch {
 public:
  // messages: what the driver reports of its calls.
  explicit CallWatch(const MessageMemory& messages);
  ~CallWatch();
  CallWatch(const CallWatch&) = delete;
  CallWatch& operator=(const CallWatch&) = delete;

  // What notices begin with; empty: nothing.
  void SetLabel(const std::string& label);

  // A call of the driver, from construction to destruction.
  class Call {
   public:
    // may_wait: how long the call waits if nothing is wrong, for an image for instance.
    Call(CallWatch& watch, Operation operation, std::chrono::milliseconds may_wait = {});
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

   private:
    CallWatch& m_watch;
  };

 private:
  struct CallUnderWay {
    AwaitedCall call;
    std::uint64_t first_message;
    std::chrono::steady_clock::time_point silent_since;
    std::size_t notices;  // printed of this silence
  };

  void Run();
  void Look(CallUnderWay& under_way) const KEL_REQUIRES(m_mutex);

  const MessageMemory& m_messages;
  BMutex m_mutex;
  BCondition m_ended;
  std::optional<CallUnderWay> m_call KEL_GUARDED_BY(m_mutex);
  std::string m_label KEL_GUARDED_BY(m_mutex);
  bool m_ends KEL_GUARDED_BY(m_mutex) = false;
  std::thread m_thread;
};

}  // namespace Kelcam
