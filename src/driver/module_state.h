// module_state.h
// What the module holds for all devices together: the Vimba system and the number of live devices.
#pragma once

// Plain values, as the host creates and releases devices on one thread at a time. Nothing happens at unloading: a host
// that releases every device has closed the system by then. [host thread]
class VimbaInitialization;

namespace Module {

// The open system, or null. The module holds one reference to it.
VimbaInitialization* OpenSystem();

// Opens the system unless it is open; false when that fails.
bool HoldSystem();
// Gives the module's reference back when no device is live; the last reference closes the system.
void DropSystemUnlessInUse();

void CountCreatedDevice();
// Waits, for the last one, until no thread is in the code of the module, which may be unloaded then.
void CountReleasedDevice();

}  // namespace Module
