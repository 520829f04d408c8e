// commands.h
// The program's commands. Each prints its result and returns the exit code; what it throws ends it early.
#pragma once

#include <functional>
#include <memory>

#include "base/failure.h"
#include "commands/command_line.h"
#include "library/module.h"
#include "messages/message_log.h"

namespace Kelcam {

// --simulated=list: the names and what they are for.
ExitCode PrintScenarios(const Options& options);
ExitCode RunList(const Options& options, const Module& module, MessageLog& log);
ExitCode RunInfo(const Options& options, const Module& module, MessageLog& log);
ExitCode RunSnap(const Options& options, const Module& module, MessageLog& log);
ExitCode RunLive(const Options& options, const Module& module, MessageLog& log);
ExitCode RunView(const Options& options, const Module& module, MessageLog& log);
// load: loads the module; a module or a library that cannot be loaded is among the findings. Where a call of the driver
// does not return, it writes the report and ends the program.
ExitCode RunCheck(const Options& options, const std::function<std::unique_ptr<const Module>()>& load, MessageLog& log);
ExitCode RunProfileNew(const Options& options, const Module& module, MessageLog& log);
ExitCode RunProfileCheck(const Options& options);

}  // namespace Kelcam
