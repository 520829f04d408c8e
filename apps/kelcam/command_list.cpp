// command_list.cpp
// kelcam list: the identifiers of the attached cameras.
#include <iostream>

#include "attached_cameras.h"
#include "commands.h"
#include "opening_explained.h"
#include "report.h"

namespace Kelcam {

ExitCode RunList(const Options& options, const Module& module, const MessageLog& log) {
  CallWatch watch(log);
  const std::uint64_t first_message = log.Count();
  const std::optional<std::vector<std::string>> cameras = AttachedCameras(module, watch);
  if (!cameras) {
    const OpeningEvidence evidence{LinesOf(log.MessagesSince(first_message)), {}, {}};
    throw Failure(OpeningFault("the camera system cannot be started", evidence, log));
  }
  if (options.json) {
    PrintDocument({{"cameras", *cameras}});
    return kDone;
  }
  for (const std::string& camera : *cameras) std::cout << camera << "\n";
  if (cameras->empty()) std::cerr << "notice: no camera found\n";
  return kDone;
}

}  // namespace Kelcam
