// failure.h
// What ends a command early, and the exit codes of the program.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace kelcam {

enum ExitCode : int { eDone = 0, eFailed = 1, eWrongUsage = 2, eInterrupted = 130 };

// The command line asks for something that does not exist or does not fit the camera.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What went wrong with a camera or a file: the host's error code (0: the program's own finding) and a sentence in
// UTF-8.
struct Fault {
  int code = 0;
  std::string text;

  // "error 12106: The camera did not deliver in time", or without a code "error: ..."
  std::string Sentence() const { return (code ? "error " + std::to_string(code) : std::string("error")) + ": " + text; }
};

class Failure : public std::runtime_error {
 public:
  explicit Failure(Fault fault) : std::runtime_error(fault.text), m_fault(std::move(fault)) {}
  explicit Failure(std::string text) : Failure(Fault{0, std::move(text)}) {}

  const Fault& What() const { return m_fault; }

 private:
  Fault m_fault;
};

}  // namespace kelcam
