// command_line_fuzz.cpp
// Any arguments for kelcam: they are taken, or refused with a reason; nothing leaves its main function.
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/failure.h"
#include "commands/command_line.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/kelcam_stand_ins.h"

namespace {

using Fuzz::Expect;

// What the program prints, for as long as the object lives.
class Caught {
 public:
  explicit Caught(std::ostream& stream) : m_stream(stream), m_before(stream.rdbuf(m_text.rdbuf())) {}
  ~Caught() { m_stream.rdbuf(m_before); }
  Caught(const Caught&) = delete;
  Caught& operator=(const Caught&) = delete;
  std::string Text() const { return m_text.str(); }

 private:
  std::ostream& m_stream;
  std::ostringstream m_text;
  std::streambuf* m_before;
};

// One to a line.
std::vector<std::string> ReadArguments(Fuzz::Input& input) {
  std::vector<std::string> arguments;
  std::istringstream text(input.Rest());
  // What the system passes ends at its first zero.
  for (std::string line; std::getline(text, line);) arguments.emplace_back(line.c_str());
  return arguments;
}

void ExpectInRange(const Kelcam::Options& options) {
  Expect(options.images >= 1 && options.images <= 1000000, "images are counted from 1 to a million");
  Expect(options.timeout.count() >= 0, "a time-out is not negative");
  Expect(!options.duration || options.duration->count() > 0, "a run takes some time");
  if (options.command == Kelcam::Command::kSnap) Expect(!options.pattern.empty(), "a picture has a name");
}

void Parse(const std::vector<std::string>& arguments) {
  try {
    const auto parsed = Kelcam::ParseCommandLine(arguments);
    if (const auto* options = std::get_if<Kelcam::Options>(&parsed)) ExpectInRange(*options);
  } catch (const Kelcam::UsageError& error) {
    Expect(*error.what() != '\0', "wrong usage has a reason");
  }
}

int Run(std::vector<std::string> arguments, std::string& out, std::string& err) {
  arguments.insert(arguments.begin(), "kelcam");
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  const Caught out_text(std::cout);
  const Caught err_text(std::cerr);
  const int code = KelcamMain(static_cast<int>(arguments.size()), pointers.data());
  out = out_text.Text();
  err = err_text.Text();
  return code;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::set<int> kExitCodes = {Kelcam::kDone, Kelcam::kFailed, Kelcam::kWrongUsage, kInterruptedCode};
  Fuzz::Input input(data, size);
  EndCommandsWith(static_cast<CommandEnd>(input.Number(0, kCommandEnds - 1)), input.Flag());
  const std::vector<std::string> arguments = ReadArguments(input);
  Parse(arguments);
  std::string out;
  std::string err;
  const int code = Run(arguments, out, err);
  Expect(kExitCodes.count(code) == 1, "the exit code is one of the documented ones");
  Expect(code == Kelcam::kDone || code == kInterruptedCode || !err.empty() || out.empty(), "a failure is explained");
  if (!out.empty() && out[0] == '{') Expect(nlohmann::json::accept(out), "what --json prints is JSON");
  return 0;
}
