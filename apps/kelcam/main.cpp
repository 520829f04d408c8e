// main.cpp
// kelcam: a camera driver module's host on the command line.
#include <iostream>
#include <memory>
#include <optional>

#include "base/interrupt.h"
#include "base/platform.h"
#include "base/report.h"
#include "base/utf8.h"
#include "commands/commands.h"
#include "library/vimba_library.h"

namespace Kelcam {
namespace {

void CheckOutput() {
  if (!std::cout.flush()) throw Failure("the result could not be written to standard output");
}

void CheckLog(const Options& options) {
  for (const CameraChoice& choice : options.cameras) {
    if (options.log_file.empty() || choice.profile_file.empty()) continue;
    if (!IsSameFile(options.log_file, choice.profile_file)) continue;
    throw UsageError("--log " + options.log_file + ": this file is the profile");
  }
}

Module LoadModule(const Options& options) {
  LoadChosenVimba(options.vimbac_folder, options.simulated);
  return Module(options.module_file.empty() ? ProgramFolder() / kModuleFileName : Path(options.module_file));
}

// Nobody takes simulated cameras for real ones.
void PrintSimulationNotice(const Module& module) {
  if (!module.Vimba() || !module.Vimba()->IsSimulated()) return;
  std::cerr << "notice: the cameras are simulated (" << Utf8(module.Vimba()->File()) << ")\n";
}

int PrintVersion(const Options& options) {
  Json document = {{"version", KEL_VERSION}, {"vimbac", nullptr}};
  std::string text = std::string("kelcam ") + KEL_VERSION + "\n";
  try {
    const Module module = LoadModule(options);
    if (const auto& vimba = module.Vimba()) {
      text += "VimbaC " + vimba->Version() + ", " + vimba->Description() + "\n";
      document["vimbac"] = ToJson(*vimba);
    }
  } catch (const Failure& failure) {
    text += std::string(failure.what()) + "\n";
    document["error"] = ToJson(failure.What());
  }
  if (options.json) {
    PrintDocument(document);
  } else {
    std::cout << text;
  }
  CheckOutput();
  return kDone;
}

// Of live and view every document is one line.
void PrintErrorDocument(const Fault& fault, Command command) {
  if (command == Command::kLive || command == Command::kView) {
    PrintLine({{"event", "error"}, {"error", ToJson(fault)}});
  } else {
    PrintDocument({{"error", ToJson(fault)}});
  }
}

// Those that need neither module nor camera.
int RunAlone(const Options& options) {
  const ExitCode result = options.command == Command::kScenarios ? PrintScenarios(options) : RunProfileCheck(options);
  CheckOutput();
  return result;
}

// The module that the command works with.
std::unique_ptr<const Module> LoadWatched(const Options& options) {
  std::unique_ptr<const Module> module(new Module(LoadModule(options)));
  PrintSimulationNotice(*module);
  WatchForInterrupt();
  return module;
}

int Ended(ExitCode result, const MessageLog& log) {
  log.CheckWritten();
  CheckOutput();
  return Interrupted() ? InterruptedExitCode() : result;
}

// What keeps the module from being loaded is among its findings.
int RunSelfTest(const Options& options, MessageLog& log) {
  return Ended(RunCheck(
                   options, [&options] { return LoadWatched(options); }, log),
               log);
}

int RunCommand(const Options& options) {
  if (options.command == Command::kScenarios || options.command == Command::kProfileCheck) return RunAlone(options);
  CheckLog(options);
  MessageLog log(options.log_file, options.verbose);
  if (options.command == Command::kCheck) return RunSelfTest(options, log);
  const std::unique_ptr<const Module> loaded = LoadWatched(options);
  const Module& module = *loaded;
  ExitCode result = kFailed;
  switch (options.command) {
    case Command::kVersion:
    case Command::kScenarios:
    case Command::kProfileCheck:
    case Command::kCheck:
      break;
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
    case Command::kView:
      result = RunView(options, module, log);
      break;
    case Command::kProfileNew:
      result = RunProfileNew(options, module, log);
      break;
  }
  return Ended(result, log);
}

int Run(int argc, char** argv) {
  std::optional<Command> command_with_json;
  try {
    const auto parsed = ParseCommandLine(Utf8Arguments(argc, argv));
    if (const auto* text = std::get_if<std::string>(&parsed)) {
      std::cout << *text;
      CheckOutput();
      return kDone;
    }
    const Options& options = std::get<Options>(parsed);
    if (options.json) command_with_json = options.command;
    if (options.command == Command::kVersion) return PrintVersion(options);
    return RunCommand(options);
  } catch (const UsageError& error) {
    std::cerr << "kelcam: " << error.what() << "\n(see kelcam --help)\n";
    return kWrongUsage;
  } catch (...) {
    const Fault fault = FaultOfCurrentException();
    std::cerr << fault.Sentence() << "\n" << fault.reason.Text();
    if (command_with_json) PrintErrorDocument(fault, *command_with_json);
    if (Interrupted()) return InterruptedExitCode();
    return kFailed;
  }
}

}  // namespace
}  // namespace Kelcam

int main(int argc, char** argv) {
  Kelcam::OpenStandardStreams();
  const Kelcam::Utf8Console console;
  return Kelcam::Run(argc, argv);
}
