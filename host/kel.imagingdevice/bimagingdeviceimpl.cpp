// bimagingdeviceimpl.cpp
// The table of controls, and memory for frames.
#include "bimagingdeviceimpl.h"

#include "lockedmemory.h"

namespace {

bool IsControlType(int type) { return type >= 0 && type < NBoard::kControlTypes; }

}  // namespace

BImagingDeviceImpl::BImagingDeviceImpl() : m_controls(NBoard::kControlTypes) {}
BImagingDeviceImpl::~BImagingDeviceImpl() = default;

BImagingDeviceControl* BImagingDeviceImpl::Control(NBoard::CONTROLTYPE type) const {
  return IsControlType(type) ? m_controls[static_cast<std::size_t>(type)].get() : nullptr;
}

void* BImagingDeviceImpl::AllocateLockedMemory(std::size_t bytes) { return AllocateLockedPages(bytes); }
void BImagingDeviceImpl::FreeLockedMemory(void* memory, std::size_t bytes) { FreeLockedPages(memory, bytes); }

void BImagingDeviceImpl::SetControl(std::unique_ptr<BImagingDeviceControl> control) {
  if (!control || !IsControlType(control->Type())) return;
  const auto place = static_cast<std::size_t>(control->Type());
  m_controls[place] = std::move(control);
}

void BImagingDeviceImpl::DeleteControls() {
  for (auto& control : m_controls) control.reset();
}
