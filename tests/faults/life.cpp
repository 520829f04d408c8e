// life.cpp
// One life of a device, as a host drives it: every operation once at least.
#include "life.h"

#include <array>
#include <sstream>
#include <tuple>
#include <utility>

#include "berror.h"
#include "late_frames.h"
#include "nboard.h"
#include "numbered_picture.h"
#include "simulated_camera_state.h"
#include "support/driver_module.h"
#include "vimba_simulator.h"
#include "virtual_waits.h"

namespace {

// Where waits take their time, a loaded machine takes longer for a frame. A camera that runs free fills the record.
std::uint32_t TimeoutMs(LifeKind kind) {
  if (!VirtualWaits::Available()) return 2000;
  return kind == LifeKind::kFree ? 200 : 1000;
}

constexpr int kNewGain = 7;
constexpr int kNewShutter = 70;
constexpr int kNewBlue = 120;
constexpr int kNewRed = 130;
constexpr std::int32_t kNewRate = 60'000'000;
constexpr int kSnaps = 3;

std::string YesNo(bool value) { return value ? "true" : "false"; }

// Whether it is released where there is one, and refused where there is none.
bool ReleaseOne(BImagingDevice*& device) {
  const bool was_there = device != nullptr;
  return TheModule().release(&device) == was_there && !device;
}

std::string Narrow(const wchar_t* text) { return ToBString(WString(text)).c_str(); }

std::string TextOf(const BError& error) {
  std::string text = "error " + std::to_string(error.ErrorCode());
  if (!error.Text(0).IsEmpty()) text.append(" ").append(Narrow(error.Text(0).c_str()));
  return text;
}

}  // namespace

Life::Life(LifeKind kind, CamerasUnderTest& cameras, LateFrames& late_frames)
    : m_kind(kind), m_cameras(cameras), m_late_frames(late_frames) {}

Life::~Life() {
  if (m_device) TheModule().release(&m_device);
  if (m_partner) TheModule().release(&m_partner);
}

void Life::Note(std::string name, const Operation& operation) {
  m_seen.push_back({std::move(name), "", VimbaSimCallCount()});
  const LateFrames::Scope late(m_late_frames, m_seen.back().name);
  std::string value;
  try {
    value = operation();
  } catch (const BError& error) {
    value = "throws " + TextOf(error);
  } catch (const NBoard::Exception& exception) {
    value = "throws exception " + std::to_string(static_cast<int>(exception));
  } catch (const std::exception& exception) {
    value = std::string("throws ") + exception.what();
  }
  m_seen.back().value = std::move(value);
}

void Life::Run() {
  Note("list", [] {
    DList<WString> identifiers;
    TheModule().list(identifiers);
    return std::to_string(identifiers.Count());
  });
  if (Create()) {
    if (m_kind == LifeKind::kFree) {
      RunFree();
    } else {
      Link();
      ReadOperations();
      SetControls();
      SnapSingles();
      SnapContinuously();
      SwitchTrigger();
      SwitchColourMode();
      ChangeBandwidth();
      Discover();
    }
  }
  Release();
}

bool Life::Create() {
  if (m_kind == LifeKind::kWithPartner) {
    Note("partner.create", [&] {
      m_partner = TheModule().create(m_cameras.PartnerProfile());
      return m_partner ? "device" : "null";
    });
  }
  Note("create", [&] {
    m_device = TheModule().create(m_cameras.MainProfile(m_kind));
    return m_device ? "device" : "null";
  });
  return m_device != nullptr;
}

void Life::Link() {
  if (!m_partner) return;
  Note("partner.link", [&] {
    const bool there = m_device->AddBandwidthPartner(m_partner);
    const bool back = m_partner->AddBandwidthPartner(m_device);
    return YesNo(there && back);
  });
}

void Life::ReadOperations() {
  const BImagingDevice& device = *m_device;
  Note("is open", [&] { return YesNo(device.IsOpen()); });
  Note("type name", [&] { return Narrow(device.TypeName()); });
  Note("name", [&] { return Narrow(device.Name()); });
  Note("size", [&] {
    bool rotated = false;
    const BSize size = device.ImageSize(rotated);
    return std::to_string(size.width) + "x" + std::to_string(size.height) + (rotated ? " rotated" : "");
  });
  Note("max shutter for fast", [&] { return std::to_string(device.MaxShutterForFast()); });
  Note("frame rate", [&] {
    double frames_per_second = 0.0;
    const bool fast = m_device->FramesPerSecond(frames_per_second);
    return YesNo(fast) + " " + std::to_string(frames_per_second);
  });
  Note("white balance", [&] { return YesNo(device.HasWhiteBalance()); });
  Note("white balance range", [&] {
    int min = 0;
    int max = 0;
    const bool known = m_device->WhiteBalanceRange(min, max);
    return YesNo(known) + " " + std::to_string(min) + " " + std::to_string(max);
  });
  Note("colour balance",
       [&] { return std::to_string(device.ColorBlueBalance()) + " " + std::to_string(device.ColorRedBalance()); });
  Note("constants", [&] {
    m_device->Refresh();
    std::ignore = m_device->LastSnapTime();
    return YesNo(m_device->WhiteBalanceOnce() || m_device->AutoFocusOnce() || m_device->OffsetControl() ||
                 m_device->GammaControl() || m_device->SharpnessControl() || m_device->BrightnessControl() ||
                 m_device->HueControl() || m_device->SaturationControl());
  });
  Note("trigger", [&] { return YesNo(m_device->Trigger() != nullptr); });
  Note("is colour", [&] { return YesNo(device.IsColor()); });
  Note("bandwidth", [&] { return std::to_string(m_device->GetBandwidth()); });
  ReadControl("gain", m_device->GainControl());
  ReadControl("shutter", m_device->ShutterControl());
  ReadControl("temperature.sensor", m_device->TemperatureControl(true));
  ReadControl("temperature.main", m_device->TemperatureControl(false));
}

void Life::ReadControl(const std::string& name, BImagingDeviceControl* control) {
  Note(name, [&] {
    if (!control) return std::string("null");
    int min = 0;
    int max = 0;
    const bool ranged = control->GetRange(min, max);
    std::ostringstream text;
    text << YesNo(control->IsAvailable()) << " " << control->Value() << " " << YesNo(ranged) << " " << min << " " << max
         << " " << control->GetRealValue();
    return text.str();
  });
}

void Life::SetControl(const std::string& name, BImagingDeviceControl* control, int value) {
  Note(name + ".set", [&] {
    const bool set = control && control->SetValue(value);
    return YesNo(set) + " " + (control ? std::to_string(control->Value()) : "null");
  });
}

void Life::SetControls() {
  SetControl("gain", m_device->GainControl(), kNewGain);
  SetControl("shutter", m_device->ShutterControl(), kNewShutter);
  SetControl("temperature.sensor", m_device->TemperatureControl(true), 0);
  Note("gain.default", [&] { return YesNo(m_device->GainControl() && m_device->GainControl()->SetToDefault()); });
  Note("blue.set", [&] { return YesNo(m_device->SetWhiteBalanceBlue(kNewBlue, true)); });
  Note("red.set", [&] { return YesNo(m_device->SetWhiteBalanceRed(kNewRed, true)); });
}

void Life::Start(const std::string& name, bool one_shot) {
  const std::uint64_t exposed_before = std::exchange(m_exposed_before, ExposedSoFar());
  Note(name + ".start", [&] {
    m_device->StartSnap(one_shot);
    return "ok";
  });
  // Until a start has got beyond this, what ran before still does.
  if (m_seen.back().value == "throws error 12103 AcquisitionMode failed") m_exposed_before = exposed_before;
}

void Life::Snap(const std::string& name, BBaseAoi::Kind kind) {
  const BSmartRef<BBaseAoi> area(new BBaseAoi(kind));
  PaintOver(*area);
  BError error(BError::eAborted);
  Note(name + ".snap", [&] {
    error = m_device->Snap(area.Get(), TimeoutMs(m_kind));
    return error.IsError() ? TextOf(error) : std::string("ok");
  });
  Note(name + ".picture", [&] { return error.IsError() ? "none" : PictureOf(*area); });
}

void Life::Stop(const std::string& name) {
  Note(name + ".stop", [&] {
    m_device->StopSnap();
    return "ok";
  });
}

// A good picture is a frame of the run that it was asked of, or none where the camera's format is not copied.
std::string Life::PictureOf(BBaseAoi& area) const {
  const PictureContent content = ReadPicture(area);
  if (content.untouched) return IsCopied(PixelFormatNow(), area.ImageKind(), *m_device) ? "untouched" : "not copied";
  if (!content.frame) return "torn";
  if (*content.frame < m_exposed_before) return "of an earlier run";
  return *content.frame < ExposedSoFar() ? "frame" : "of no run";
}

void Life::SnapSingle(const std::string& name, BBaseAoi::Kind kind) {
  Start(name, true);
  Snap(name, kind);
  Stop(name);
}

void Life::SnapSingles() {
  SnapSingle("single 1", BBaseAoi::eMono8);
  SnapSingle("single 2", BBaseAoi::eRgb);
  SnapSingle("single 3", BBaseAoi::eMono8);
}

// Each edge of the line is one frame.
void Life::SnapContinuously() {
  if (BImagingDeviceTrigger* trigger = m_device->Trigger()) trigger->SetExternal(true);
  Start("continuous", false);
  for (int i = 1; i <= kSnaps; ++i) {
    SendEdge();
    Snap("continuous " + std::to_string(i), BBaseAoi::eRgb);
  }
  Stop("continuous");
  if (BImagingDeviceTrigger* trigger = m_device->Trigger()) trigger->SetExternal(false);
}

void Life::SwitchTrigger() {
  BImagingDeviceTrigger* trigger = m_device->Trigger();
  if (!trigger) return;
  Note("trigger.falling", [&] { return YesNo(trigger->SetActivation(BImagingDeviceTrigger::eFalling)); });
  Note("trigger.rising", [&] { return YesNo(trigger->SetActivation(BImagingDeviceTrigger::eRising)); });
  Note("trigger.line", [&] { return YesNo(trigger->SetSource(BImagingDeviceTrigger::eLine)); });
  Note("trigger.unknown", [&] { return YesNo(trigger->SetSource(BImagingDeviceTrigger::eFreeRun + 1)); });
  Note("trigger.on", [&] {
    trigger->SetOn();
    return "done";
  });
}

void Life::SwitchColourMode() {
  Note("colour.on", [&] { return YesNo(m_device->SetColorMode(true)); });
  SnapSingle("colour 1", BBaseAoi::eRgb);
  SnapSingle("colour 2", BBaseAoi::eMono8);
  Note("colour.off", [&] { return YesNo(m_device->SetColorMode(false)); });
  SnapSingle("colour 3", BBaseAoi::eRgb);
}

void Life::ChangeBandwidth() {
  Note("bandwidth.set", [&] { return YesNo(m_device->SetBandwidth(kNewRate)); });
  Note("bandwidth.after", [&] { return std::to_string(m_device->GetBandwidth()); });
  if (!m_partner) return;
  Note("partner.bandwidth.set", [&] { return YesNo(m_partner->SetBandwidth(kNewRate / 2)); });
  SnapSingle("slow", BBaseAoi::eMono8);
  Note("bandwidth.synchronised", [&] { return std::to_string(m_device->GetBandwidth()); });
  Note("partner.unlink", [&] { return YesNo(m_device->RemoveBandwidthPartner(m_partner)); });
}

// The camera runs by itself, as fast as the frames come back.
void Life::RunFree() {
  BImagingDeviceTrigger* trigger = m_device->Trigger();
  if (!trigger) return;
  Note("free.source", [&] { return YesNo(trigger->SetSource(BImagingDeviceTrigger::eFreeRun)); });
  Start("free", false);
  for (int i = 1; i <= kSnaps; ++i) Snap("free " + std::to_string(i), BBaseAoi::eMono8);
  Stop("free");
  Note("free.software", [&] { return YesNo(trigger->SetSource(BImagingDeviceTrigger::eSoftware)); });
}

// The discovery is reported on a thread of the library.
void Life::Discover() {
  Note("discovery", [] { return YesNo(ComesAndGoes()); });
}

// The partner goes last: it is listed by the device, and has listed it.
void Life::Release() {
  Note("release", [&] { return YesNo(ReleaseOne(m_device)); });
  if (m_kind == LifeKind::kWithPartner) Note("partner.release", [&] { return YesNo(ReleaseOne(m_partner)); });
}
