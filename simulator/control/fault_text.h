// control/fault_text.h
// Faults and frame members as JSON.
#ifndef KEL_SIMULATOR_CONTROL_FAULT_TEXT_H
#define KEL_SIMULATOR_CONTROL_FAULT_TEXT_H

#include "control/faults.h"
#include "control/json_members.h"

namespace simulator {

// Adds the fault that the object describes. Throws std::invalid_argument.
void ReadFault(JsonMembers& members, Faults::Set& faults);

}  // namespace simulator

#endif
