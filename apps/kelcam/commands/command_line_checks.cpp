// command_line_checks.cpp
// Which options of the command line fit together.
#include "commands/command_line_checks.h"

#include <algorithm>

#include "base/failure.h"
#include "base/platform.h"

namespace Kelcam {
namespace {

// How a command gets its cameras and its library.
void CheckCameras(Options& options) {
  if (options.simulated && !options.vimbac_folder.empty()) throw UsageError("--simulated excludes --vimbac");
  const bool has_camera = options.command == Command::kInfo || options.command == Command::kSnap ||
                          options.command == Command::kLive || options.command == Command::kView;
  const auto is_empty = [](const CameraChoice& choice) { return choice.Name().empty(); };
  if (has_camera && std::all_of(options.cameras.begin(), options.cameras.end(), is_empty)) {
    throw UsageError("--profile or --camera is required");
  }
  CheckEachOnce(options.cameras);
  if (options.link && options.cameras.size() < 2) throw UsageError("--link: one camera has no partner; name another");
  for (CameraChoice& choice : options.cameras) choice.is_one_of_several = options.cameras.size() > 1;
}

void CheckPgm(const Options& options) {
  if (options.kind != BBaseAoi::eRgb) return;
  throw UsageError("-o " + options.pattern + ": a .pgm file cannot hold the colour picture that --kind rgb asks for");
}

void CheckRaw(const Options& options, PictureFormat format) {
  if (options.kind) throw UsageError("--raw and --kind: a raw picture is as the camera's frame is");
  if (!options.area_text.empty()) throw UsageError("--raw and --area: a raw picture is not converted");
  if (format == PictureFormat::kPpm) throw UsageError("--raw: a .ppm file is for colours, a raw picture is grey");
}

void CheckStandardOutput(const Options& options) {
  if (options.json) throw UsageError("-o - and --json: standard output has room for one of them");
  if (options.log_file == "/dev/stdout") throw UsageError("-o - and --log: standard output has room for one of them");
  if (StandardOutputIsTerminal()) throw UsageError("-o -: standard output is a terminal, which shows no pictures");
}

// In a continuous run that nobody triggers, images come at the camera's own rate.
bool IsTimedByCamera(const Options& options) {
  return options.mode == SnapMode::kContinuous && options.trigger != TriggerChoice::kSoftware;
}

void CheckSnap(Options& options) {
  const FilePattern pattern(options.pattern, options.format, options.images);
  if (options.keep_going && options.fail_fast) {
    throw UsageError("--keep-going and --fail-fast: a failure ends the run or it does not");
  }
  if (options.reconnect && !options.keep_going) {
    throw UsageError("--reconnect: snap goes on after a loss with --keep-going alone; give both");
  }
  if (options.interval && IsTimedByCamera(options)) {
    throw UsageError("--interval: a continuous run needs --trigger software for it");
  }
  if (options.cameras.size() > 1) pattern.CheckForSeveralCameras();
  if (pattern.IsStandardOutput()) CheckStandardOutput(options);
  if (options.raw) return CheckRaw(options, pattern.Format());
  if (pattern.Format() != PictureFormat::kPgm) return;
  CheckPgm(options);
  options.is_grey_by_format = !options.kind;
  options.kind = BBaseAoi::eMono8;
}

}  // namespace

void CheckOptions(Options& options) {
  if (options.quiet && options.verbose)
    throw UsageError("-q and -v: messages of the driver are printed or they are not");
  CheckCameras(options);
  if (options.command == Command::kSnap) CheckSnap(options);
}

}  // namespace Kelcam
