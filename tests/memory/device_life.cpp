// device_life.cpp
// One life of a host: it lists, creates two partners, reads, sets and switches everything, takes pictures, releases.
#include "memory/device_life.h"

#include <array>
#include <new>
#include <set>
#include <tuple>

#include "bbaseaoi.h"
#include "nboard.h"
#include "support/driver_module.h"
#include "support/plain_device.h"
#include "vimba_simulator.h"

namespace Memory {
namespace {

constexpr std::uint32_t kTimeoutMs = 200;
constexpr int kSnaps = 3;
constexpr std::size_t kLockedBytes = 4096;
constexpr int kNone = 0;
const std::set<int> kSnapCodes = {BError::eSuccess,       BError::eAcquisitionFailed, BError::eTimeout,
                                  BError::eFrameTooSmall, BError::eAborted,           BError::eFrameInvalid};

// The steps of a life, and what they broke.
class Steps {
 public:
  // Runs a step. It may throw std::bad_alloc, and a BError with the code that it documents. Gives whether it ended.
  template <class Step>
  bool Run(const char* name, Step step, int documented_error = kNone) {
    try {
      step();
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    } catch (const BError& error) {
      if (error.ErrorCode() != documented_error) Find(name, "throws BError " + std::to_string(error.ErrorCode()));
    } catch (const std::exception& exception) {
      Find(name, std::string("throws ") + exception.what());
    } catch (...) {
      Find(name, "throws something");
    }
    return false;
  }
  void Expect(bool holds, const char* name, const char* what) {
    if (!holds) Find(name, what);
  }
  Findings Take() { return std::move(m_findings); }

 private:
  void Find(const std::string& name, const std::string& what) { m_findings.push_back(name + ": " + what); }

  Findings m_findings;
};

void List(Steps& steps) {
  steps.Run("ObjectIdentifierList", [&] {
    DList<WString> list;
    TheModule().list(list);
    steps.Expect(list.Count() == 0 || list.Count() == 2, "ObjectIdentifierList", "lists some of the cameras");
  });
}

// A profile that cannot be opened for want of memory is no malformed one. Gives null without memory.
BImagingDevice* Create(Steps& steps, const ProfileFile& file) {
  BImagingDevice* device = nullptr;
  steps.Run("CreateImagingDevice", [&] { device = TheModule().create(file.Open()); });
  steps.Expect(!device || device->IsOpen(), "CreateImagingDevice", "gives a device that is not open");
  return device;
}

void ReadEverything(Steps& steps, BImagingDevice& device) {
  steps.Run("reading", [&] {
    bool rotated = false;
    double rate = 0.0;
    int min = 0;
    int max = 0;
    std::ignore = std::tuple(device.TypeName(), device.Name(), device.ImageSize(rotated), device.MaxShutterForFast());
    std::ignore = std::tuple(device.HasWhiteBalance(), device.ColorBlueBalance(), device.ColorRedBalance());
    std::ignore =
        std::tuple(device.IsColor(), device.LastSnapTime(), device.WhiteBalanceOnce(), device.AutoFocusOnce());
    std::ignore = device.WhiteBalanceRange(min, max);
    std::ignore = std::tuple(device.OffsetControl(), device.GammaControl(), device.SharpnessControl());
    std::ignore = std::tuple(device.BrightnessControl(), device.HueControl(), device.SaturationControl());
    device.Refresh();
    std::ignore = device.FramesPerSecond(rate);
  });
  steps.Run("GetBandwidth", [&] { std::ignore = device.GetBandwidth(); });
}

void SetControls(Steps& steps, BImagingDevice& device) {
  const std::array controls{device.GainControl(), device.ShutterControl(), device.TemperatureControl(true),
                            device.TemperatureControl(false)};
  for (BImagingDeviceControl* control : controls) {
    if (!control) continue;
    steps.Run("a control", [&] {
      int min = 0;
      int max = 0;
      std::ignore = control->GetRange(min, max);
      std::ignore = control->SetValue(control->Value() + 1);
      control->SetMinValue(control->MinValue());
      control->SetMaxValue(control->MaxValue());
      control->SetDefaultValue(control->Value());
      std::ignore = control->SetToDefault();
      std::ignore = control->SetRealValue(control->GetRealValue());
      std::ignore = control->UnitString();
    });
  }
  steps.Run("the white balance", [&] {
    std::ignore = device.SetWhiteBalanceBlue(120, true);
    std::ignore = device.SetWhiteBalanceRed(130, false);
  });
}

// A snap that throws may have left a picture half done, an error code says what happened.
void Snap(Steps& steps, BImagingDevice& device, BBaseAoi* area) {
  steps.Run("Snap", [&] {
    const BError error = device.Snap(area, kTimeoutMs);
    steps.Expect(kSnapCodes.count(error.ErrorCode()) == 1, "Snap", "answers an undocumented code");
    steps.Expect(error.IsError() || !area || area->ImageSize() != BSize{}, "Snap", "reports a picture without pixels");
  });
}

bool Start(Steps& steps, BImagingDevice& device, bool one_shot) {
  return steps.Run(
      "StartSnap", [&] { device.StartSnap(one_shot); }, BError::eAcquisitionFailed);
}

void Stop(Steps& steps, BImagingDevice& device) {
  steps.Run(
      "StopSnap", [&] { device.StopSnap(); }, BError::eAcquisitionFailed);
}

void SnapSingly(Steps& steps, BImagingDevice& device) {
  constexpr std::array<const wchar_t*, kSnaps> kTexts{L"", L"[l]", L"[p]"};
  for (const wchar_t* text : kTexts) {
    BSmartRef<BBaseAoi> area;
    steps.Run("an area", [&] { area = BSmartRef<BBaseAoi>(new BBaseAoi(BBaseAoi::eMono8, text)); });
    if (Start(steps, device, true)) Snap(steps, device, area.Get());
    Stop(steps, device);
  }
}

void SnapContinuously(Steps& steps, BImagingDevice& device) {
  BSmartRef<BBaseAoi> area;
  steps.Run("an area", [&] { area = BSmartRef<BBaseAoi>(new BBaseAoi(BBaseAoi::eRgb, L"[l]")); });
  BImagingDeviceTrigger* trigger = device.Trigger();
  steps.Run("SetSource", [&] { std::ignore = trigger && trigger->SetSource(BImagingDeviceTrigger::eFreeRun); });
  if (Start(steps, device, false)) {
    for (int i = 0; i < kSnaps; ++i) Snap(steps, device, area.Get());
  }
  Stop(steps, device);
  steps.Run("SetSource", [&] { std::ignore = trigger && trigger->SetSource(BImagingDeviceTrigger::eSoftware); });
}

void SwitchTrigger(Steps& steps, BImagingDevice& device) {
  BImagingDeviceTrigger* trigger = device.Trigger();
  if (!trigger) return;
  steps.Run("the trigger", [&] {
    trigger->SetOn();
    std::ignore = trigger->SetActivation(BImagingDeviceTrigger::eFalling);
    trigger->SetExternal(true);
  });
  // Nothing comes in on the line.
  if (Start(steps, device, true)) steps.Run("Snap", [&] { std::ignore = device.Snap(nullptr, 1); });
  Stop(steps, device);
  steps.Run("the trigger", [&] { trigger->SetOff(); });
  steps.Run("the trigger", [&] { std::ignore = trigger->SetSource(BImagingDeviceTrigger::eSoftware); });
}

void Use(Steps& steps, BImagingDevice& device) {
  ReadEverything(steps, device);
  SetControls(steps, device);
  SnapSingly(steps, device);
  steps.Run("SetColorMode", [&] { std::ignore = device.SetColorMode(true); });
  SnapContinuously(steps, device);
  steps.Run("SetColorMode", [&] { std::ignore = device.SetColorMode(false); });
  SwitchTrigger(steps, device);
}

void Partner(Steps& steps, BImagingDevice& one, BImagingDevice& other) {
  steps.Run("AddBandwidthPartner", [&] { std::ignore = one.AddBandwidthPartner(&other); });
  steps.Run("AddBandwidthPartner", [&] { std::ignore = other.AddBandwidthPartner(&one); });
  steps.Run("SetBandwidth", [&] { std::ignore = other.SetBandwidth(50'000'000); });
}

void LockMemory(Steps& steps) {
  steps.Run("AllocateLockedMemory", [&] {
    PlainImplementation implementation;
    implementation.FreeLockedMemory(implementation.AllocateLockedMemory(kLockedBytes), kLockedBytes);
  });
}

void Release(Steps& steps, BImagingDevice*& device) {
  if (!device) return;
  steps.Run("ReleaseImagingDevice", [&] { std::ignore = TheModule().release(&device); });
  steps.Expect(!device, "ReleaseImagingDevice", "leaves the device");
}

}  // namespace

World::World() {
  m_colour_profile.Key("Init.Method", "Serial").Key("Serial.Number", "50-0503340001").Key("Bayertype", "RGGB");
  m_colour_profile.Key("COLORCODEcolor", "YUV").Key("SHUTTER", "100").Key("GAIN", "1").Key("BYTEPERSECOND", "90000000");
  m_mono_profile.Key("Camera_Identifier", "DEV_000F31000002")
      .Key("RotateBy90Degree", "1")
      .Key("TRIGGERPOLARITY", "LOW");
}

Findings Live(const World& world, const std::function<void()>& before_release) {
  Steps steps;
  List(steps);
  BImagingDevice* colour = Create(steps, world.ColourProfile());
  BImagingDevice* mono = Create(steps, world.MonoProfile());
  if (colour && mono) Partner(steps, *colour, *mono);
  if (colour) Use(steps, *colour);
  if (mono) SnapSingly(steps, *mono);
  LockMemory(steps);
  if (colour && mono) steps.Run("RemoveBandwidthPartner", [&] { std::ignore = colour->RemoveBandwidthPartner(mono); });
  before_release();
  Release(steps, colour);
  Release(steps, mono);
  return steps.Take();
}

Findings LiveInPlenty(const World& world) {
  Steps steps;
  // A life that ended early may not have come to the frame that fails.
  VimbaSimClearFaults();
  BImagingDevice* device = nullptr;
  const bool has_lived = steps.Run("a life with memory", [&] {
    device = TheModule().create(world.ColourProfile().Open());
    steps.Expect(device != nullptr, "a life with memory", "has no device");
    if (!device) return;
    const BSmartRef<BBaseAoi> area(new BBaseAoi(BBaseAoi::eRgb));
    device->StartSnap(true);
    steps.Expect(!device->Snap(area.Get(), 10 * kTimeoutMs).IsError(), "a life with memory", "has no picture");
    device->StopSnap();
  });
  steps.Expect(has_lived, "a life with memory", "throws");
  Release(steps, device);
  return steps.Take();
}

}  // namespace Memory
