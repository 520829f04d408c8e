// scripted_device.cpp
// A device without a camera: it does what the script says and logs every operation that it is asked for.
#include "scripted_device.h"

#include <chrono>
#include <cmath>
#include <new>
#include <thread>

#include "bbaseaoi.h"
#include "bmutex.h"
#include "imagingdevice.h"
#include "script.h"
#include "scripted_picture.h"

namespace {

std::string TrueOrFalse(bool value) { return value ? "true" : "false"; }

std::string SourceName(int source) {
  switch (source) {
    case BImagingDeviceTrigger::eSoftware:
      return "software";
    case BImagingDeviceTrigger::eLine:
      return "line";
    case BImagingDeviceTrigger::eFreeRun:
      return "free run";
    default:
      return std::to_string(source);
  }
}

std::string KindName(int kind) {
  return kind == BBaseAoi::eMono8 ? "mono" : kind == BBaseAoi::eRgb ? "rgb" : std::to_string(kind);
}

constexpr const char* kNoFrame = "none";

// As a driver does when a frame arrives.
void ReportFrame(const std::string& camera, const std::string& id) {
  if (id == kNoFrame) return;
  const std::string message =
      "Camera 1 (" + camera +
      ") : Thread ID = 7 : OnFrameExt()\n   1 :       0.0 (  0.0) : Start\n   2 :       0.1 (  0.1) "
      ": "
      "Frame context id = 0 FrameStatusComplete FrameDimension = 5x3 FrameID = " +
      id + " Timestamp = 17\n   3 :       0.2 (  0.1) : End\n";
  ImagingDevice::ShowInfo(ToWString(message.c_str()).c_str(), L"");
}

// Waits until so many devices snap at the same time; false: a minute has passed.
bool HaveMet(int devices) {
  static BMutex mutex;
  static BCondition changed;
  static int here = 0;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  BMutexLock lock(mutex);
  ++here;
  changed.NotifyAll();
  while (here < devices && std::chrono::steady_clock::now() < deadline) changed.WaitUntil(lock, deadline);
  return here >= devices;
}

// The integer units of the controls.
constexpr double kGainStepsPerDecade = 20.0;
constexpr double kStepsPerUnit = 10.0;

}  // namespace

void Log(const std::string& operation) { ImagingDevice::LogMessage(ToWString(operation.c_str()), false); }

ScriptedControl::ScriptedControl(std::string name, NBoard::CONTROLTYPE type, int value, int min, int max)
    : BImagingDeviceControl(type), m_name(std::move(name)), m_value(value), m_min(min), m_max(max) {}

bool ScriptedControl::SetValue(int value) {
  Log(m_name + ".SetValue(" + std::to_string(value) + ")");
  m_value = value;
  return TheScript().Next("refuse", "nothing") != m_name;
}

bool ScriptedControl::GetRange(int& min, int& max) {
  min = m_min;
  max = m_max;
  return true;
}

WString ScriptedControl::UnitString() const {
  return Type() == NBoard::eGain ? L"[x]" : Type() == NBoard::eShutter ? L"[ms]" : L"";
}

double ScriptedControl::ToRealValue(int value) const {
  return Type() == NBoard::eGain ? std::pow(10.0, value / kGainStepsPerDecade) : value / kStepsPerUnit;
}

int ScriptedControl::FromRealValue(double value) const {
  return static_cast<int>(Type() == NBoard::eGain ? kGainStepsPerDecade * std::log10(value) : value * kStepsPerUnit);
}

void ScriptedTrigger::SetExternal(bool external) {
  Log("SetExternal(" + TrueOrFalse(external) + ")");
  m_external = external;
}

void ScriptedTrigger::SetOff() {
  Log("SetOff");
  m_external = false;
}

bool ScriptedTrigger::SetActivation(int edge) {
  Log(edge == eRising ? "SetActivation(rising)" : "SetActivation(falling)");
  return true;
}

bool ScriptedTrigger::SetSource(int source) {
  Log("SetSource(" + SourceName(source) + ")");
  return TheScript().Next("source", 1) != 0;
}

ScriptedDevice::ScriptedDevice(int number)
    : m_number(number),
      m_name(WString::Format(L"Vimba_Scripted_%d", number ? number : 1)),
      m_color(TheScript().Next("color", 0) != 0),
      m_has_trigger(TheScript().Next("trigger", 1) != 0),
      m_has_exposure(TheScript().Next("exposure", 1) != 0),
      m_gain("gain", NBoard::eGain, 20, 0, 30),
      m_exposure("exposure", NBoard::eShutter, 100, 1, 20000),
      m_temperature("temperature", NBoard::eTemperatureSensor, 300, 0, 0) {}

void ScriptedDevice::Log(const std::string& operation) const {
  ::Log(m_number ? std::to_string(m_number) + ": " + operation : operation);
}

BSize ScriptedDevice::ImageSize(bool& rotated) const {
  rotated = TheScript().Next("rotated", 0) != 0;
  return {ScriptedPicture::kWidth, ScriptedPicture::kHeight};
}

bool ScriptedDevice::FramesPerSecond(double& frames_per_second) {
  frames_per_second = 30.5;
  return TheScript().Next("fast", 1) != 0;
}

bool ScriptedDevice::SetColorMode(bool on) {
  Log("SetColorMode(" + TrueOrFalse(on) + ")");
  return TheScript().Next("colormode", 1) != 0;
}

bool ScriptedDevice::SetWhiteBalanceBlue(int value, bool color) {
  Log("SetWhiteBalanceBlue(" + std::to_string(value) + ", color = " + TrueOrFalse(color) + ")");
  return TheScript().Next("refuse", "nothing") != "wbblue";
}

bool ScriptedDevice::SetWhiteBalanceRed(int value, bool color) {
  Log("SetWhiteBalanceRed(" + std::to_string(value) + ", color = " + TrueOrFalse(color) + ")");
  return TheScript().Next("refuse", "nothing") != "wbred";
}

bool ScriptedDevice::WhiteBalanceRange(int& min, int& max) {
  min = 80;
  max = 400;
  return m_color;
}

void ScriptedDevice::StartSnap(bool one_shot) {
  Log(one_shot ? "StartSnap(one shot)" : "StartSnap(continuous)");
  if (const int code = TheScript().Next(Key("start"), 0)) throw BError(code, L"AcquisitionStart failed");
}

BError ScriptedDevice::Snap(BBaseAoi* aoi, std::uint32_t timeout_ms) {
  Log("Snap(" + KindName(aoi->ImageKind()) + ", '" + ToBString(aoi->Text()).Str() + "', " + std::to_string(timeout_ms) +
      " ms)");
  if (TheScript().Next("report", 0))
    ImagingDevice::ShowInfo(L"Camera 1 : Snap\n   1 :       0.0 (  0.0) : Fire SW trigger\n", L"");
  std::this_thread::sleep_for(std::chrono::seconds(TheScript().Next("snap_s", 0)));
  if (const int devices = TheScript().Next("together", 0); devices && !HaveMet(devices)) {
    return BError(BError::eTimeout);
  }
  ReportFrame(m_number ? ToBString(m_name.c_str()).Str() : "Scripted", TheScript().Next(Key("frame_id"), kNoFrame));
  const std::string outcome = TheScript().Next(Key("snap"), kSuccess);
  if (outcome == "nomemory") return BError(BError::eAcquisitionFailed, L"out of memory");
  if (outcome == "wrongkind") throw NBoard::Exception::eWrongImageKind;
  if (outcome == "exhausted") throw std::bad_alloc();
  if (outcome == "nopicture") return BError();
  if (outcome == "untouched") {
    aoi->Reset({ScriptedPicture::kWidth, ScriptedPicture::kHeight});
    return BError();
  }
  if (outcome != kSuccess) return BError(std::stoi(outcome));
  ScriptedPicture(++m_pictures).Fill(*aoi);
  return BError();
}

void ScriptedDevice::StopSnap() {
  Log("StopSnap");
  if (const int code = TheScript().Next(Key("stop"), 0)) throw BError(code, L"AcquisitionStop failed");
}

bool ScriptedDevice::AddBandwidthPartner(BImagingDevice* partner) {
  Log("AddBandwidthPartner(" + ToBString(partner->Name()).Str() + ")");
  return TheScript().Next("partner", 1) != 0;
}

bool ScriptedDevice::RemoveBandwidthPartner(BImagingDevice* partner) {
  Log("RemoveBandwidthPartner(" + ToBString(partner->Name()).Str() + ")");
  return true;
}
