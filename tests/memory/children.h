// children.h
// Runs each life in a process of its own, a few side by side, and ends those that hang.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <list>
#include <string>

namespace Memory {

// How a process ended, and what it reported.
struct Ending {
  bool hung = false;
  // As of waitpid.
  int status = 0;
  std::string report;
};

class Children {
 public:
  using Life = std::function<std::string()>;
  using Judge = std::function<void(const Ending&)>;

  explicit Children(std::size_t side_by_side) : m_side_by_side(side_by_side) {}
  ~Children();
  Children(const Children&) = delete;
  Children& operator=(const Children&) = delete;

  // Starts a process that lives and reports what `life` gives, and waits while too many run. `judge` is called on this
  // thread, in a later Start or in Finish.
  void Start(const Life& life, Judge judge);
  // Waits for all.
  void Finish();

 private:
  struct Child {
    pid_t process;
    int pipe;
    std::chrono::steady_clock::time_point deadline;
    Judge judge;
    Ending ending;

    // False when there is no more to read.
    bool Read();
  };

  void Take(std::size_t most_left);

  std::size_t m_side_by_side;
  std::list<Child> m_children;
};

}  // namespace Memory
