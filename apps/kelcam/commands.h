// commands.h
// The program's commands. Each prints its result and returns the exit code; what it throws ends it early.
#pragma once

#include "command_line.h"
#include "failure.h"
#include "message_log.h"
#include "module.h"

namespace Kelcam {

ExitCode RunList(const Options& options, const Module& module, MessageLog& log);
ExitCode RunInfo(const Options& options, const Module& module, MessageLog& log);
ExitCode RunSnap(const Options& options, const Module& module, MessageLog& log);
ExitCode RunLive(const Options& options, const Module& module, MessageLog& log);
ExitCode RunProfileNew(const Options& options, const Module& module, MessageLog& log);
ExitCode RunProfileCheck(const Options& options);

}  // namespace Kelcam
