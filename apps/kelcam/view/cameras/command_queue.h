// command_queue.h
// What pages ask of a camera, until its thread has time for it.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/report.h"
#include "bmutex.h"

namespace Kelcam {

class ViewedCamera;

struct CommandOutcome {
  enum class Kind {
    kDone,
    kRefused,   // the camera has no such thing
    kFailed,    // the camera did not take it
    kNotThere,  // the camera is not open
    kBusy,      // too many wait
    kTooLate,   // it was not done in time, and may still be done
  };
  Kind kind = Kind::kDone;
  Json result;           // of what was done
  std::string sentence;  // what went wrong
};

// [any thread]
class CommandQueue {
 public:
  using Clock = std::chrono::steady_clock;
  // Throws UsageError or Failure. [the camera's thread]
  using Work = std::function<Json(ViewedCamera&)>;
  // Called once, on any thread; must not wait.
  using Done = std::function<void(const CommandOutcome&)>;

  void Push(Work work, Done done);

  // Until there is something to do, or the deadline. [the camera's thread, as the next three]
  void Await(Clock::time_point deadline);
  // Does what is there, one after the other. Whether there was anything.
  bool DoAll(ViewedCamera& camera);
  // Answers what is there: the camera is not open.
  void RefuseAll();

  // From now on nothing is waited for.
  void End();
  // Answers what should have been done by now.
  void Expire(Clock::time_point now);

 private:
  struct Command {
    Work work;
    Done done;  // null: answered
    Clock::time_point deadline;
  };
  using SharedCommand = std::shared_ptr<Command>;

  SharedCommand Take();
  void Answer(const SharedCommand& command, const CommandOutcome& outcome);

  BMutex m_mutex;
  BCondition m_changed;
  std::deque<SharedCommand> m_commands KEL_GUARDED_BY(m_mutex);
  SharedCommand m_under_way KEL_GUARDED_BY(m_mutex);
  bool m_ends KEL_GUARDED_BY(m_mutex) = false;
};

}  // namespace Kelcam
