// children.cpp
// Runs each life in a process of its own, a few side by side, and ends those that hang.
#include "memory/children.h"

#include <execinfo.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

namespace Memory {
namespace {

// A life takes a fraction of a second.
constexpr std::chrono::seconds kLongestLife{20};

// Where a life ended that should not have.
void PrintStack(int signal_number) {
  constexpr int kFrames = 32;
  std::array<void*, kFrames> frames{};
  ::backtrace_symbols_fd(frames.data(), ::backtrace(frames.data(), kFrames), STDERR_FILENO);
  std::ignore = ::signal(signal_number, SIG_DFL);
  std::ignore = ::raise(signal_number);
}

// Before a life: the first use of backtrace allocates.
void WatchForCrashes() {
  void* frame = nullptr;
  std::ignore = ::backtrace(&frame, 1);
  for (const int signal_number : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL}) {
    std::ignore = ::signal(signal_number, PrintStack);
  }
}

}  // namespace

bool Children::Child::Read() {
  std::array<char, 4096> buffer{};
  const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
  if (count < 0 && errno == EINTR) return true;
  if (count <= 0) return false;
  ending.report.append(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

Children::~Children() {
  for (const Child& child : m_children) {
    std::ignore = ::kill(child.process, SIGKILL);
    std::ignore = ::waitpid(child.process, nullptr, 0);
  }
}

void Children::Start(const Life& life, Judge judge) {
  Take(m_side_by_side - 1);
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  const pid_t process = ::fork();
  if (process < 0) throw std::runtime_error("no process");
  if (process == 0) {
    std::ignore = ::close(ends[0]);
    WatchForCrashes();
    const std::string report = life();
    for (std::size_t written = 0; written < report.size();) {
      const ssize_t count = ::write(ends[1], report.data() + written, report.size() - written);
      if (count <= 0) break;
      written += static_cast<std::size_t>(count);
    }
    ::_exit(0);
  }
  std::ignore = ::close(ends[1]);
  m_children.push_back({process, ends[0], std::chrono::steady_clock::now() + kLongestLife, std::move(judge), {}});
}

void Children::Finish() { Take(0); }

void Children::Take(std::size_t most_left) {
  while (m_children.size() > most_left) {
    std::vector<pollfd> pipes;
    for (const Child& child : m_children) pipes.push_back({child.pipe, POLLIN, 0});
    constexpr int kWaitMs = 100;
    std::ignore = ::poll(pipes.data(), pipes.size(), kWaitMs);
    std::size_t i = 0;
    for (auto child = m_children.begin(); child != m_children.end(); ++i) {
      const bool has_ended = pipes[i].revents != 0 && !child->Read();
      if (!has_ended && std::chrono::steady_clock::now() >= child->deadline) {
        child->ending.hung = true;
        std::ignore = ::kill(child->process, SIGKILL);
      }
      if (!has_ended && !child->ending.hung) {
        ++child;
        continue;
      }
      std::ignore = ::waitpid(child->process, &child->ending.status, 0);
      std::ignore = ::close(child->pipe);
      child->judge(child->ending);
      child = m_children.erase(child);
    }
  }
}

}  // namespace Memory
