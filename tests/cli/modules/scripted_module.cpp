// scripted_module.cpp
// The six exports over the scripted device. Built a second time without one of them.
#include <chrono>
#include <thread>
#include <utility>

#include "driver/kel_camera_vimba.h"
#include "imagingdevice.h"
#include "script.h"
#include "scripted_device.h"

namespace {

// A key that drivers have and kelcam does not read: which of several devices this is.
constexpr const wchar_t* kNumber = L"MAXSHUTTERFORFAST";
constexpr int kMostNumber = 100;

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the export takes a reference of its own
BImagingDevice* CreateImagingDevice(BSmartRef<BCamProfile> profile) {
  Log("Create " + ToBString(profile->Name()).Str());
  ImagingDevice::ShowInfo(L"Initialize camera \u00fc", nullptr);
  ImagingDevice::ShowInfo(L"Camera 1 : Initialize\n   1 :       0.0000 (  0.0000) : Start\n", L"");
  int number = 0;
  profile->ReadInt(kNumber, number, 0, 0, kMostNumber);
  const std::string outcome = TheScript().Next("open", kSuccess);
  if (outcome == "null") {
    for (int i = 0; i < 3; ++i) ImagingDevice::ShowInfo(L"Camera 1: does not answer");
    ImagingDevice::ShowInfo(L"ChipRect failed", L"!");
    return nullptr;
  }
  if (outcome != kSuccess) throw BError(std::stoi(outcome), profile->Name(), L"RotateBy90Degree", L"2");
  return new ScriptedDevice(number);
}

bool ReleaseImagingDevice(BImagingDevice** device) {
  if (!device || !*device) return false;
  Log("Release");
  delete *device;
  *device = nullptr;
  return true;
}

void ObjectIdentifierList(DList<WString>& list) {
  Log("List");
  std::this_thread::sleep_for(std::chrono::seconds(TheScript().Next("listing_s", 0)));
  const int cameras = TheScript().Next("cameras", 2);
  if (cameras < 0) {
    ImagingDevice::ShowInfo(L"Vimba start-up\n   1 : no transport layer\nEnd", L"");
    return;
  }
  list.Clear();
  for (int i = 1; i <= cameras; ++i) list.Append(WString::Format(L"Vimba_Scripted-\u00e4_%d", i));
}

BImagingDevice* Vimba_CreateImagingDevice(BSmartRef<BCamProfile> profile) {
  return CreateImagingDevice(std::move(profile));
}
#ifndef KEL_LACKS_VIMBA_RELEASE
bool Vimba_ReleaseImagingDevice(BImagingDevice** device) { return ReleaseImagingDevice(device); }
#endif
void Vimba_ObjectIdentifierList(DList<WString>& list) { ObjectIdentifierList(list); }
