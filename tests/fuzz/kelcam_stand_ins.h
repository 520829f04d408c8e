// kelcam_stand_ins.h
// What kelcam finds instead of files, modules and cameras: every command ends as an input chooses.
#pragma once

enum class CommandEnd { kDone, kFailed, kWrongUsage, kUsageError, kFailure, kHostError, kImageKind, kNoMemory };
constexpr int kCommandEnds = 8;
// kelcam's exit code after Ctrl-C.
constexpr int kInterruptedCode = 130;

// How the next command ends, and whether Ctrl-C was pressed.
void EndCommandsWith(CommandEnd end, bool interrupted);

// kelcam's main function.
int KelcamMain(int argc, char** argv);
