// main.cpp
// kelcam: a camera driver module's host on the command line.
#include <iostream>

#include "commands.h"
#include "interrupt.h"
#include "platform.h"
#include "report.h"
#include "utf8.h"

namespace Kelcam {
namespace {

ExitCode RunCommand(const Options& options) {
  MessageLog log(Path(options.log_file), options.verbose);
  const Module module(options.module_file.empty() ? ProgramFolder() / kModuleFileName : Path(options.module_file));
  WatchForInterrupt();
  ExitCode result = kFailed;
  switch (options.command) {
    case Command::kList:
      result = RunList(options, module, log);
      break;
    case Command::kInfo:
      result = RunInfo(options, module, log);
      break;
    case Command::kSnap:
      result = RunSnap(options, module, log);
      break;
    case Command::kLive:
      result = RunLive(options, module, log);
      break;
  }
  log.CheckWritten();
  if (!std::cout.flush()) throw Failure("the result could not be written to standard output");
  return Interrupted() ? kInterrupted : result;
}

int Run(int argc, char** argv) {
  bool json = false;
  try {
    const auto parsed = ParseCommandLine(Utf8Arguments(argc, argv));
    if (const auto* text = std::get_if<std::string>(&parsed)) {
      std::cout << *text;
      return kDone;
    }
    const Options& options = std::get<Options>(parsed);
    json = options.json;
    return RunCommand(options);
  } catch (const UsageError& error) {
    std::cerr << "kelcam: " << error.what() << "\n(see kelcam --help)\n";
    return kWrongUsage;
  } catch (...) {
    const Fault fault = FaultOfCurrentException();
    std::cerr << fault.Sentence() << "\n";
    if (json) PrintDocument({{"error", ToJson(fault)}});
    return kFailed;
  }
}

}  // namespace
}  // namespace Kelcam

int main(int argc, char** argv) {
  const Kelcam::Utf8Console console;
  return Kelcam::Run(argc, argv);
}
