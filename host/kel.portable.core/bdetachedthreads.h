// bdetachedthreads.h
// Threads of a loaded module that nobody joins, and the wait until the last of them has left the module's code.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "bmutex.h"
#include "kel_portable_core_api.h"

// A thread whose work is done still has to return through whatever started it, and to destroy what it was given. Here
// it is started and ended by this library, which stays: the module's code is left behind with the work's destructor,
// and once the last thread has passed that point the module may be unloaded.
class KEL_PORTABLE_CORE_API BDetachedThreads {
 public:
  // The one for the module of this name. Made with the first call and kept to the end of the process, so that a module
  // that is loaded again finds it again. [any thread]
  static BDetachedThreads& Of(const std::string& module);

  BDetachedThreads() = default;
  BDetachedThreads(const BDetachedThreads&) = delete;
  BDetachedThreads& operator=(const BDetachedThreads&) = delete;

  // Does the work, a function object, on a thread of its own and then destroys it. Throws std::bad_alloc; a thread that
  // cannot be started is a std::system_error. What the work throws ends the process. [any thread]
  template <class Function>
  void Start(Function function) {
    StartWork(std::make_unique<WorkOf<Function>>(std::move(function)));
  }

  // Returns when the work of every thread has been done and destroyed. No new one may be started meanwhile, and none of
  // them may call this. [any thread]
  void WaitForAll();

 private:
  class KEL_PORTABLE_CORE_API Work {
   public:
    Work() = default;
    virtual ~Work();
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;
    virtual void Do() = 0;
  };
  template <class Function>
  class WorkOf final : public Work {
   public:
    explicit WorkOf(Function function) : m_function(std::move(function)) {}
    void Do() override { m_function(); }

   private:
    Function m_function;
  };

  void StartWork(std::unique_ptr<Work> work);
  void CountStart();
  void CountEnd();

  BMutex m_lock;
  BCondition m_none_left;
  int m_running KEL_GUARDED_BY(m_lock) = 0;
};
