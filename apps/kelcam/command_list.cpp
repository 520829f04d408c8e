// command_list.cpp
// kelcam list: the identifiers of the attached cameras.
#include <iostream>

#include "commands.h"
#include "interrupt.h"
#include "report.h"
#include "utf8.h"

namespace Kelcam {

ExitCode RunList(const Options& options, const Module& module, const MessageLog& log) {
  // A module that cannot start its camera system leaves the list as it was, and this is the only sign of it.
  const WString untouched = L"the module has not been asked";
  DList<WString> identifiers;
  identifiers.Append(untouched);
  {
    const NothingToClose listing;
    module.ListIdentifiers(identifiers);
  }
  if (identifiers.Count() == 1 && identifiers.Head()->value == untouched) {
    throw Failure(log.WithLastNotices("the camera system cannot be started"));
  }
  if (options.json) {
    Json cameras = Json::array();
    for (const WString& identifier : identifiers) cameras.push_back(Utf8(identifier));
    PrintDocument({{"cameras", cameras}});
    return kDone;
  }
  for (const WString& identifier : identifiers) std::cout << Utf8(identifier) << "\n";
  if (identifiers.IsEmpty()) std::cerr << "notice: no camera found\n";
  return kDone;
}

}  // namespace Kelcam
