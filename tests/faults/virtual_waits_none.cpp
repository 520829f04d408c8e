// virtual_waits_none.cpp
// Where the C library's waits cannot be replaced, they take their time.
#include "virtual_waits.h"

bool VirtualWaits::Available() { return false; }

void VirtualWaits::TurnOn() {}
