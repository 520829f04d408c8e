// attached_cameras.cpp
// The cameras that a module lists.
#include "device/attached_cameras.h"

#include "base/interrupt.h"
#include "base/utf8.h"

namespace Kelcam {

std::optional<std::vector<std::string>> AttachedCameras(const Module& module, CallWatch& watch) {
  // A module that cannot start its camera system leaves the list as it was, and this is the only sign of it.
  const WString untouched = L"the module has not been asked";
  DList<WString> identifiers;
  identifiers.Append(untouched);
  {
    const NothingToClose listing;
    const CallWatch::Call call(watch, Operation::kListing);
    module.ListIdentifiers(identifiers);
  }
  if (identifiers.Count() == 1 && identifiers.Head()->value == untouched) return std::nullopt;
  std::vector<std::string> cameras;
  for (const WString& identifier : identifiers) cameras.push_back(Utf8(identifier));
  return cameras;
}

}  // namespace Kelcam
