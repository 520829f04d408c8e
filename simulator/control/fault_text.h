// control/fault_text.h
// Faults and frame members as JSON.
#pragma once

#include "control/faults.h"
#include "control/json_members.h"

namespace Simulator {

// Adds the fault that the object describes. Throws std::invalid_argument.
void ReadFault(JsonMembers& members, Faults::Set& faults);

}  // namespace Simulator
