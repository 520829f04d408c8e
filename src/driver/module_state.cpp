// module_state.cpp
// What the module holds for all devices together: the Vimba system and the number of live devices.
#include "driver/module_state.h"

#include <cstdint>
#include <utility>

#include "acquisition/frame_ring.h"
#include "acquisition/module_threads.h"
#include "vimba/vimba_initialization.h"

namespace {

// Not a smart reference: its destructor would shut Vimba down while the module is being unloaded.
VimbaInitialization* open_system = nullptr;
std::uint32_t live_devices = 0;

}  // namespace

VimbaInitialization* Module::OpenSystem() { return open_system; }

bool Module::HoldSystem() {
  if (open_system) return true;
  const BSmartRef<VimbaInitialization> system = VimbaInitialization::Open(nullptr);
  if (!system) return false;
  system->Ref();
  open_system = system.Get();
  return true;
}

void Module::DropSystemUnlessInUse() {
  if (live_devices != 0 || !open_system) return;
  std::exchange(open_system, nullptr)->Unref();
  FrameRing::FreeUnreturnedFrames();
}

void Module::CountCreatedDevice() { ++live_devices; }

void Module::CountReleasedDevice() {
  if (--live_devices == 0) ModuleThreads().WaitForAll();
}
