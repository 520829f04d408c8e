// entry_points.cpp
// The six functions by which a host knows the module.
#include <memory>
#include <utility>

#include "camera/camera_identifier.h"
#include "driver/kel_camera_vimba.h"
#include "driver/module_state.h"
#include "driver/vimba_imaging_device.h"
#include "imagingdevice.h"
#include "vimba/vimba_initialization.h"

namespace {

// A creation that ends without a device, in whichever way, closes a system that no live device needs.
class SystemHold {
 public:
  SystemHold() = default;
  SystemHold(const SystemHold&) = delete;
  SystemHold& operator=(const SystemHold&) = delete;
  ~SystemHold() {
    if (!m_has_device) Module::DropSystemUnlessInUse();
  }
  void CountDevice() {
    m_has_device = true;
    Module::CountCreatedDevice();
  }

 private:
  bool m_has_device = false;
};

std::unique_ptr<BVimbaImagingDevice> CreateDevice(BSmartRef<BCamProfile> profile) {
  ImagingDevice::LogMessage(L"Creating Imaging Device Object", false);
  auto device = std::make_unique<BVimbaImagingDevice>();
  ImagingDevice::LogMessage(L"Initialize Object by Ini file " + profile->FileName(), false);
  if (!device->Initialize(std::move(profile))) return nullptr;
  return device;
}

}  // namespace

BImagingDevice* CreateImagingDevice(BSmartRef<BCamProfile> profile) {
  const BSmartRef<BCamProfile> owned = std::move(profile);
  if (!owned || !Module::HoldSystem()) return nullptr;
  SystemHold hold;
  std::unique_ptr<BVimbaImagingDevice> device = CreateDevice(owned);
  if (device) hold.CountDevice();
  return device.release();
}

BImagingDevice* Vimba_CreateImagingDevice(BSmartRef<BCamProfile> profile) {
  return CreateImagingDevice(std::move(profile));
}

bool ReleaseImagingDevice(BImagingDevice** device) {
  if (!device || !*device) return false;
  delete *device;
  *device = nullptr;
  Module::CountReleasedDevice();
  Module::DropSystemUnlessInUse();
  return true;
}

bool Vimba_ReleaseImagingDevice(BImagingDevice** device) { return ReleaseImagingDevice(device); }

void ObjectIdentifierList(DList<WString>& list) {
  const BSmartRef<VimbaInitialization> system = VimbaInitialization::Open(Module::OpenSystem());
  if (!system) return;
  const DList<WString> identifiers = ListIdentifiers();
  list.Clear();
  for (const WString& identifier : identifiers) list.Append(identifier);
}

void Vimba_ObjectIdentifierList(DList<WString>& list) { ObjectIdentifierList(list); }
