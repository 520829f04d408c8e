// process_state_none.cpp
// Where nothing is measured.
#include "process_state.h"

ProcessState ProcessState::Now() { return {}; }
