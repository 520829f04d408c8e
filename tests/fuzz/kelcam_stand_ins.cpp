// kelcam_stand_ins.cpp
// What kelcam finds instead of files, modules and cameras: every command ends as an input chooses.
#include "fuzz/kelcam_stand_ins.h"

#include <functional>
#include <memory>
#include <new>
#include <tuple>
#include <utility>

#include "base/interrupt.h"
#include "base/platform.h"
#include "commands/commands.h"
#include "library/scenario.h"
#include "library/vimba_library.h"
#include "nboard.h"

namespace {

CommandEnd command_end = CommandEnd::kDone;
bool is_interrupted = false;

Kelcam::ExitCode End(const Kelcam::Options& options) {
  switch (command_end) {
    case CommandEnd::kFailed:
      return Kelcam::kFailed;
    case CommandEnd::kWrongUsage:
      return Kelcam::kWrongUsage;
    case CommandEnd::kUsageError:
      throw Kelcam::UsageError("there is no " + options.profile_file);
    case CommandEnd::kFailure:
      throw Kelcam::Failure("the picture " + options.pattern + " cannot be written");
    case CommandEnd::kHostError:
      throw BError(BError::eProfileNotReadable, ToWString(options.profile_file.c_str()), L"No such file");
    case CommandEnd::kImageKind:
      throw NBoard::Exception::eWrongImageKind;
    case CommandEnd::kNoMemory:
      throw std::bad_alloc();
    default:
      return Kelcam::kDone;
  }
}

}  // namespace

void EndCommandsWith(CommandEnd end, bool interrupted) {
  command_end = end;
  is_interrupted = interrupted;
}

namespace Kelcam {

const char* const kModuleFileName = "kelCameraVimba";

std::vector<std::string> Utf8Arguments(int argc, char** argv) { return {argv + 1, argv + argc}; }
std::filesystem::path ProgramFolder() { return "."; }
bool StandardErrorIsTerminal() { return false; }
bool StandardOutputIsTerminal() { return false; }
std::size_t TerminalWidth() { return 80; }
bool TerminalMovesUp() { return true; }
std::tm CalendarTime(std::time_t /*time*/) { return {}; }
void OpenStandardStreams() {}

Utf8Console::Utf8Console() : m_before(0) {}
Utf8Console::~Utf8Console() = default;

SharedLibrary::SharedLibrary(const std::filesystem::path& /*file*/, const std::string& /*title*/) : m_handle(nullptr) {}
void* SharedLibrary::Symbol(const char* /*name*/) const { return m_handle; }

void LoadChosenVimba(const std::string& /*vimbac*/, const std::optional<std::string>& /*simulated*/) {}
std::string VimbaLibrary::Version() const { return {}; }
std::string VimbaLibrary::Description() const { return {}; }
Json ToJson(const VimbaLibrary& /*library*/) { return Json::object(); }

Module::Module(const std::filesystem::path& file)
    : m_library(file), m_create(nullptr), m_release(nullptr), m_list(nullptr) {}

MessageLog::MessageLog(std::string file, bool verbose)
    : m_file_name(std::move(file)), m_verbose(verbose), m_before(nullptr) {}
MessageLog::~MessageLog() = default;
void MessageLog::OnShowInfo(const wchar_t* /*text*/, const wchar_t* /*caption*/) {}
void MessageLog::OnLogMessage(const WString& /*text*/, bool /*important*/) {}
void MessageLog::CheckWritten() const {}

void WatchForInterrupt() {}
bool Interrupted() { return is_interrupted; }
int InterruptedExitCode() { return kInterruptedCode; }

ExitCode PrintScenarios(const Options& options) { return End(options); }
ExitCode RunList(const Options& options, const Module& /*module*/, MessageLog& /*log*/) { return End(options); }
ExitCode RunInfo(const Options& options, const Module& /*module*/, MessageLog& /*log*/) { return End(options); }
ExitCode RunSnap(const Options& options, const Module& /*module*/, MessageLog& /*log*/) { return End(options); }
ExitCode RunLive(const Options& options, const Module& /*module*/, MessageLog& /*log*/) { return End(options); }
ExitCode RunView(const Options& options, const Module& /*module*/, MessageLog& /*log*/) { return End(options); }
ExitCode RunCheck(const Options& options, const std::function<std::unique_ptr<const Module>()>& load,
                  MessageLog& /*log*/) {
  std::ignore = load();
  return End(options);
}
ExitCode RunProfileNew(const Options& options, const Module& /*module*/, MessageLog& /*log*/) { return End(options); }
ExitCode RunProfileCheck(const Options& options) { return End(options); }

}  // namespace Kelcam
