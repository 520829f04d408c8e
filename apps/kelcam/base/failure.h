// failure.h
// What ends a command early, and the exit codes of the program.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "berror.h"

namespace Kelcam {

// After an interrupt the code is that of interrupt.h.
enum ExitCode : int { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// The command line asks for something that does not exist or does not fit the camera.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Where the driver's messages can be found.
inline constexpr const char* kMoreMessages = "(-v prints every message, --log FILE writes them to a file)";

// Why something went wrong, as far as it is known. Sentences in UTF-8, without full stops.
struct Reason {
  std::vector<std::string> messages;  // those of the driver's lines that say what failed
  std::string why;
  std::string to_do;      // the next step for the user
  bool has_more = false;  // the driver's other messages may help, too

  // The lines under an error: "  MESSAGE" for each, "why: ..." and "to do: ...". Empty where nothing is known.
  std::string Text() const;
};

// What went wrong with a camera or a file.
struct Fault {
  static constexpr int kNoCode = 0;

  int code = kNoCode;  // the host's error code; none: the program's own finding
  std::string text;    // a sentence in UTF-8, without a full stop
  Reason reason{};

  // "error 12106: no image arrived in time", or without a code "error: ...". A label comes before the text.
  std::string Sentence(const std::string& label = {}) const;
};

class Failure : public std::runtime_error {
 public:
  explicit Failure(Fault fault) : std::runtime_error(fault.text), m_fault(std::move(fault)) {}
  explicit Failure(std::string text) : Failure(Fault{Fault::kNoCode, std::move(text)}) {}

  const Fault& What() const { return m_fault; }

 private:
  Fault m_fault;
};

// The fault that an error of the host stands for.
Fault FaultOf(const BError& error);

// The same for the exception being handled: errors of the host and of the driver, which come across the module boundary
// as they are, failures of this program and of the standard library.
Fault FaultOfCurrentException();

}  // namespace Kelcam
