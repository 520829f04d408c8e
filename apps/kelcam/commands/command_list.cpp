// command_list.cpp
// kelcam list: the attached cameras.
#include <chrono>
#include <iostream>
#include <thread>

#include "base/interrupt.h"
#include "base/report.h"
#include "commands/commands.h"
#include "device/attached_cameras.h"
#include "device/camera_table.h"
#include "device/opening_explained.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPauseBetweenLists{250};

// Those of the last list before the time is over.
std::vector<std::string> WaitForCameras(const Options& options, const Module& module, const MessageMemory& messages) {
  CallWatch watch(messages);
  const Clock::time_point start = Clock::now();
  for (;;) {
    const std::uint64_t first_message = messages.Count();
    const std::optional<std::vector<std::string>> cameras = AttachedCameras(module, watch);
    if (!cameras) {
      const OpeningEvidence evidence{.lines = LinesOf(messages.MessagesSince(first_message)), .profile = {}};
      throw Failure(OpeningFault("the camera system cannot be started", evidence, messages));
    }
    if (!cameras->empty() || !options.wait || Clock::now() - start >= *options.wait) return *cameras;
    const NothingToClose waiting;
    std::this_thread::sleep_for(kPauseBetweenLists);
  }
}

}  // namespace

ExitCode RunList(const Options& options, const Module& module, MessageLog& log) {
  const std::vector<std::string> identifiers = WaitForCameras(options, module, log.Messages());
  if (options.wait && identifiers.empty()) {
    throw Failure("no camera was found within " + Fixed(options.wait->count(), 1) + " s");
  }
  std::vector<CameraRow> rows;
  if (options.long_list) {
    const NothingToClose listing;
    rows = CameraTable(module);
  }
  if (options.json) {
    Json document = {{"cameras", identifiers}};
    if (options.long_list) document["details"] = ToJson(rows);
    PrintDocument(document);
  } else if (options.long_list) {
    Print(rows);
  } else {
    for (const std::string& identifier : identifiers) std::cout << identifier << "\n";
  }
  if (identifiers.empty() && !options.json) std::cerr << "notice: no camera found\n";
  return kDone;
}

}  // namespace Kelcam
