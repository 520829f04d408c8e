// process.h
// Programs as processes of their own: started with arguments, an environment and caught output.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct ProcessResult {
  static constexpr int kHadToBeEnded = -1;

  int exit_code = kHadToBeEnded;
  std::string out, err;   // as texts: a line ends in one character on every system
  std::string out_bytes;  // out as it came
};

// What a running program takes at this moment.
struct ProcessUse {
  std::size_t resident_bytes = 0;
  std::size_t threads = 0;
  std::size_t handles = 0;  // file descriptors, or what the system has for them
};

// A started program. Texts are UTF-8; its standard input is empty. The destructor ends it if it still runs.
class Process {
 public:
  static constexpr std::chrono::seconds kTimeout{60};

  // environment: added to this process's own.
  Process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
          const std::map<std::string, std::string>& environment = {});
  ~Process();

  // Waits until its standard error holds the text; false when the time-out passes or it ends without.
  bool WaitForError(const std::string& text, std::chrono::milliseconds timeout = kTimeout);
  // The same until it is there so many times.
  bool WaitForErrors(const std::string& text, std::size_t count, std::chrono::milliseconds timeout = kTimeout);
  // While it runs.
  ProcessUse Use() const;
  // What Ctrl-C does; false where the system has no such thing for a process without a console.
  bool Interrupt();
#if !defined(_WIN32)
  bool Signal(int number);
#endif
  // Waits for its end, or ends it when the time-out has passed.
  ProcessResult Wait(std::chrono::milliseconds timeout = kTimeout);

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

// The file of a program that was built next to the running one.
std::filesystem::path ProgramFile(const std::string& name);
