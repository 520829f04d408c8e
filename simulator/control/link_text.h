// control/link_text.h
// Network links as JSON.
#pragma once

#include <vector>

#include "control/json_members.h"
#include "link/link_settings.h"

namespace Simulator {

// The links of the members `link` and `links`: one of them is there at least. Throws std::invalid_argument.
std::vector<LinkSettings> ReadLinks(JsonMembers& members);

}  // namespace Simulator
