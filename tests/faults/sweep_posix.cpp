// sweep_posix.cpp
// Runs many cases in forked processes, which this one watches.
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <thread>

#include "sweep.h"

namespace {

// Many times what a life takes, its fixed waits included.
constexpr std::chrono::seconds kDeadline{30};
constexpr std::chrono::milliseconds kWatchEvery{20};
constexpr std::size_t kMostProcesses = 16;
constexpr int kCannotRun = 3;
constexpr std::size_t kNoCase = ~std::size_t{0};

using Clock = std::chrono::steady_clock;

struct Place {
  std::atomic<pid_t> process;
  std::atomic<std::size_t> running;
  std::atomic<Clock::time_point> since;
};

// In memory that all of the processes see.
struct Board {
  std::atomic<std::size_t> next;
  // The first process's cases, as a number.
  std::atomic<std::size_t> cases;
  std::atomic<std::size_t> runs;
  std::atomic<std::size_t> findings;
  std::array<Place, kMostProcesses> places;
};

Board& SharedBoard() {
  void* const memory = mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  return *new (memory) Board{};
}

void Print(const std::string& what, const std::string& test, const std::string& command) {
  const std::string text = "finding: " + what + "\n  " + command + " '" + test + "'\n";
  if (write(STDOUT_FILENO, text.data(), text.size()) < 0) std::abort();
}

// Each process takes the next case by its number, so all of them must have the same.
void CheckCases(const std::vector<std::string>& cases, Board& board) {
  std::size_t all = 1;
  for (const std::string& test : cases) all = all * 31 + std::hash<std::string>()(test);
  std::size_t none = 0;
  if (!board.cases.compare_exchange_strong(none, all) && board.cases != all) {
    throw std::runtime_error("two processes have different cases");
  }
}

void Work(const MakeCases& make, Board& board, Place& place, const std::string& command) {
  place.since = Clock::now();
  const std::unique_ptr<CaseSource> source = make();
  const std::vector<std::string> cases = source->Cases();
  CheckCases(cases, board);
  for (std::size_t index = board.next++; index < cases.size(); index = board.next++) {
    place.since = Clock::now();
    place.running = index;
    for (const std::string& finding : source->Run(cases[index])) {
      ++board.findings;
      Print(finding, cases[index], command);
    }
    ++board.runs;
    place.running = kNoCase;
    place.since = Clock::now();
  }
}

void StartProcess(const MakeCases& make, Board& board, Place& place, const std::string& command) {
  place.running = kNoCase;
  place.since = Clock::now();
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child != 0) {
    place.process = child;
    return;
  }
  // Nobody would watch it without its parent.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  try {
    Work(make, board, place, command);
    // A leak checker looks when a process ends in order.
    std::exit(EXIT_SUCCESS);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    std::_Exit(kCannotRun);
  }
}

class Watch {
 public:
  Watch(const MakeCases& make, Board& board, std::size_t processes, const std::string& command)
      : m_make(make), m_board(board), m_processes(processes), m_command(command) {}

  void Run() {
    for (std::size_t i = 0; i < m_processes; ++i) StartProcess(m_make, m_board, m_board.places[i], m_command);
    m_running = m_processes;
    while (m_running != 0) {
      for (std::size_t i = 0; i < m_processes; ++i) Look(m_board.places[i]);
      std::this_thread::sleep_for(kWatchEvery);
    }
  }

 private:
  void Look(Place& place) {
    if (place.process == 0) return;
    int status = 0;
    if (waitpid(place.process, &status, WNOHANG) == 0) {
      if (Clock::now() - place.since.load() < kDeadline) return;
      kill(place.process, SIGABRT);
      waitpid(place.process, &status, 0);
      Fail(place, "hangs for " + std::to_string(kDeadline.count()) + " s");
    } else if (WIFSIGNALED(status)) {
      Fail(place, "ends by signal " + std::to_string(WTERMSIG(status)));
    } else if (WEXITSTATUS(status) != EXIT_SUCCESS) {
      Fail(place, "ends with status " + std::to_string(WEXITSTATUS(status)));
    } else {
      End(place);
    }
  }

  // The cases are the same in each process, so the first one names them.
  void Fail(Place& place, const std::string& what) {
    ++m_board.findings;
    const std::size_t index = place.running;
    if (index == kNoCase) {
      Print(what, "between two cases", m_command);
      End(place);
      return;
    }
    ++m_board.runs;
    m_lost.push_back({index, what});
    StartProcess(m_make, m_board, place, m_command);
  }

  void End(Place& place) {
    place.process = 0;
    --m_running;
  }

 public:
  struct Lost {
    std::size_t index;
    std::string what;
  };
  const std::vector<Lost>& LostCases() const { return m_lost; }

 private:
  const MakeCases& m_make;
  Board& m_board;
  const std::size_t m_processes;
  const std::string& m_command;
  std::size_t m_running = 0;
  std::vector<Lost> m_lost;
};

}  // namespace

SweepOutcome Sweep(const MakeCases& make, std::size_t processes, const std::string& command) {
  Board& board = SharedBoard();
  Watch watch(make, board, std::clamp<std::size_t>(processes, 1, kMostProcesses), command);
  watch.Run();
  if (!watch.LostCases().empty()) {
    const std::vector<std::string> cases = make()->Cases();
    for (const Watch::Lost& lost : watch.LostCases()) Print(lost.what, cases[lost.index], command);
  }
  return {board.runs, board.findings};
}
