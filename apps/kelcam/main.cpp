// main.cpp
// kelcam: a camera driver module's host on the command line.
#include <iostream>

#include "camera_session.h"
#include "commands.h"
#include "interrupt.h"
#include "platform.h"
#include "report.h"
#include "utf8.h"

namespace kelcam {

static ExitCode RunCommand(const Options& options) {
  MessageLog log(Path(options.log_file), options.verbose);
  const Module module(options.module_file.empty() ? ProgramFolder() / kModuleFileName : Path(options.module_file));
  WatchForInterrupt();
  ExitCode result = eFailed;
  switch (options.command) {
    case Command::eList:
      result = RunList(options, module, log);
      break;
    case Command::eInfo:
      result = RunInfo(options, module, log);
      break;
    case Command::eSnap:
      result = RunSnap(options, module, log);
      break;
    case Command::eLive:
      result = RunLive(options, module, log);
      break;
  }
  log.CheckWritten();
  if (!std::cout.flush()) throw Failure("the result could not be written to standard output");
  return Interrupted() ? eInterrupted : result;
}

static int Run(int argc, char** argv) {
  bool json = false;
  try {
    const auto parsed = ParseCommandLine(Utf8Arguments(argc, argv));
    if (const auto* text = std::get_if<std::string>(&parsed)) {
      std::cout << *text;
      return eDone;
    }
    const Options& options = std::get<Options>(parsed);
    json = options.json;
    return RunCommand(options);
  } catch (const UsageError& error) {
    std::cerr << "kelcam: " << error.what() << "\n(kelcam --help tells more)\n";
    return eWrongUsage;
  } catch (...) {
    const Fault fault = FaultOfCurrentException();
    std::cerr << fault.Sentence() << "\n";
    if (json) PrintDocument({{"error", ToJson(fault)}});
    return eFailed;
  }
}

}  // namespace kelcam

int main(int argc, char** argv) {
  const kelcam::Utf8Console console;
  return kelcam::Run(argc, argv);
}
