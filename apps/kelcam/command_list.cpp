// command_list.cpp
// kelcam list: the identifiers of the attached cameras.
#include <iostream>

#include "camera_session.h"
#include "commands.h"
#include "report.h"
#include "utf8.h"

namespace kelcam {

ExitCode RunList(const Options& options, const Module& module, const MessageLog& log) {
  // A module that cannot start its camera system leaves the list as it was, and this is the only sign of it.
  const WString untouched = L"the module has not been asked";
  DList<WString> identifiers;
  identifiers.Append(untouched);
  module.ListIdentifiers(identifiers);
  if (identifiers.Count() == 1 && identifiers.Head()->value == untouched) {
    throw Failure(WithLastNotices("the camera system cannot be started", log));
  }
  if (options.json) {
    Json cameras = Json::array();
    for (const WString& identifier : identifiers) cameras.push_back(Utf8(identifier));
    PrintDocument({{"cameras", cameras}});
    return eDone;
  }
  for (const WString& identifier : identifiers) std::cout << Utf8(identifier) << "\n";
  if (identifiers.IsEmpty()) std::cerr << "notice: no camera found\n";
  return eDone;
}

}  // namespace kelcam
