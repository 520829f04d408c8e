// command_info.cpp
// kelcam info: what a camera's device reports.
#include <iomanip>
#include <iostream>
#include <optional>
#include <tuple>
#include <vector>

#include "base/interrupt.h"
#include "base/report.h"
#include "base/utf8.h"
#include "commands/commands.h"
#include "device/camera_session.h"
#include "device/distinct_cameras.h"

namespace Kelcam {
namespace {

constexpr const char* kSensorTemperature = "sensor temperature";
constexpr const char* kBoardTemperature = "board temperature";
// Of a degree.
constexpr double kTemperatureSteps = 10.0;

struct ControlReport {
  std::string name;
  int value, min, max;
  double real_value, real_min, real_max;
  std::string unit;
};

bool IsTemperature(const ControlReport& control) {
  return control.name == kSensorTemperature || control.name == kBoardTemperature;
}

struct WhiteBalanceReport {
  int min, max, red, blue;
};

struct DeviceReport {
  std::string name, type;
  std::optional<VimbaLibrary> vimba;  // none: the module reaches cameras in another way
  BSize size;
  bool rotated = false;
  bool color = false;
  std::vector<ControlReport> controls;
  std::optional<WhiteBalanceReport> white_balance;
  std::optional<bool> external_trigger;  // none: no trigger
  std::int64_t stream_rate_bytes_per_s = 0;
  std::optional<double> frame_rate_hz;  // none: the camera does not report it
  bool fast = false;                    // the frame rate holds at this exposure
  int max_shutter_for_fast = 0;
  std::string max_shutter_for_fast_text;
};

std::vector<ControlReport> ControlsOf(BImagingDevice& device) {
  const std::pair<const char*, BImagingDeviceControl*> controls[] = {
      {kGain, device.GainControl()},
      {kExposure, device.ShutterControl()},
      {"brightness", device.BrightnessControl()},
      {"offset", device.OffsetControl()},
      {"gamma", device.GammaControl()},
      {"sharpness", device.SharpnessControl()},
      {"hue", device.HueControl()},
      {"saturation", device.SaturationControl()},
      {kSensorTemperature, device.TemperatureControl(true)},
      {kBoardTemperature, device.TemperatureControl(false)},
  };
  std::vector<ControlReport> reports;
  for (const auto& [name, control] : controls) {
    if (!control || !control->IsAvailable()) continue;
    ControlReport report{name, control->Value(), 0, 0, 0.0, 0.0, 0.0, UnitOf(*control)};
    std::ignore = control->GetRange(report.min, report.max);
    // From the one reading: a temperature may differ the next time.
    report.real_value = control->ToRealValue(report.value);
    std::ignore = control->GetRealRange(report.real_min, report.real_max);
    reports.push_back(report);
  }
  return reports;
}

DeviceReport ReportOf(BImagingDevice& device) {
  DeviceReport report;
  report.name = Utf8(WString(device.Name()));
  report.type = Utf8(WString(device.TypeName()));
  report.size = device.ImageSize(report.rotated);
  report.color = device.IsColor();
  report.controls = ControlsOf(device);
  WhiteBalanceReport balance{0, 0, device.ColorRedBalance(), device.ColorBlueBalance()};
  if (device.WhiteBalanceRange(balance.min, balance.max)) report.white_balance = balance;
  if (const BImagingDeviceTrigger* trigger = device.Trigger()) report.external_trigger = trigger->IsExternal();
  report.stream_rate_bytes_per_s = device.GetBandwidth();
  double rate_hz = 0.0;
  report.fast = device.FramesPerSecond(rate_hz);
  if (report.fast || rate_hz > 0.0) report.frame_rate_hz = rate_hz;
  report.max_shutter_for_fast = device.MaxShutterForFast();
  report.max_shutter_for_fast_text = std::to_string(report.max_shutter_for_fast);
  if (const BImagingDeviceControl* exposure = device.ShutterControl()) {
    const std::string real = Fixed(exposure->ToRealValue(report.max_shutter_for_fast), 1) + " " + UnitOf(*exposure);
    report.max_shutter_for_fast_text += " = " + real;
  }
  return report;
}

DeviceReport WatchedReportOf(const CameraSession& camera) {
  const CallWatch::Call call(camera.Watch(), Operation::kControls);
  return ReportOf(camera.Device());
}

Json ToJson(const ControlReport& control) {
  return {{"name", control.name},
          {"value", control.value},
          {"min", control.min},
          {"max", control.max},
          {"real", {{"value", control.real_value}, {"min", control.real_min}, {"max", control.real_max}}},
          {"unit", control.unit}};
}

Json ToJson(const DeviceReport& report) {
  Json controls = Json::array();
  for (const ControlReport& control : report.controls) controls.push_back(ToJson(control));
  Json white_balance, trigger, frame_rate_hz, vimba;
  if (const auto& balance = report.white_balance) {
    white_balance = {{"red", balance->red}, {"blue", balance->blue}, {"min", balance->min}, {"max", balance->max}};
  }
  if (report.external_trigger) trigger = {{"external", *report.external_trigger}};
  if (report.frame_rate_hz) frame_rate_hz = *report.frame_rate_hz;
  if (report.vimba) vimba = ToJson(*report.vimba);
  return {{"name", report.name},
          {"type", report.type},
          {"vimbac", vimba},
          {"width", report.size.width},
          {"height", report.size.height},
          {"rotated", report.rotated},
          {"color", report.color},
          {"controls", controls},
          {"whiteBalance", white_balance},
          {"trigger", trigger},
          {"streamBytesPerSecond", report.stream_rate_bytes_per_s},
          {"framesPerSecond", frame_rate_hz},
          {"fast", report.fast},
          {"maxShutterForFast", report.max_shutter_for_fast}};
}

void PrintRow(const std::string& name, const std::string& value) {
  constexpr int kNameWidth = 22;
  std::cout << std::left << std::setw(kNameWidth) << name << value << "\n";
}

// A control that is only read has no range.
bool HasRange(const ControlReport& control) { return control.min < control.max; }

// "6 dB = 2.0x (0 to 24 dB = 1.0x to 15.8x)"
std::string DescribedGain(const ControlReport& gain) {
  std::string text = std::to_string(gain.value) + " dB = " + Fixed(gain.real_value, 1) + gain.unit;
  if (!HasRange(gain)) return text;
  return text + " (" + std::to_string(gain.min) + " to " + std::to_string(gain.max) +
         " dB = " + Fixed(gain.real_min, 1) + gain.unit + " to " + Fixed(gain.real_max, 1) + gain.unit + ")";
}

// "100 = 10.0 ms (1 to 20000 = 0.1 to 2000.0 ms, steps of 0.1 ms)"
std::string Described(const ControlReport& control) {
  const std::string unit = control.unit.empty() ? "" : " " + control.unit;
  std::string text = std::to_string(control.value) + " = " + Fixed(control.real_value, 1) + unit;
  if (!HasRange(control)) return text;
  text += " (" + std::to_string(control.min) + " to " + std::to_string(control.max) + " = " +
          Fixed(control.real_min, 1) + " to " + Fixed(control.real_max, 1) + unit;
  if (control.name == kExposure) text += ", steps of 0.1" + unit;
  return text + ")";
}

std::string Row(const ControlReport& control) {
  if (control.name == kGain) return DescribedGain(control);
  // The driver's real value has lost the tenth.
  if (IsTemperature(control)) return Fixed(control.value / kTemperatureSteps, 1) + " °C";
  return Described(control);
}

void Print(const DeviceReport& report) {
  PrintRow("name", report.name);
  PrintRow("type", report.type);
  if (report.vimba) PrintRow("library", "VimbaC " + report.vimba->Version() + ", " + report.vimba->Description());
  PrintRow("size", std::to_string(report.size.width) + " x " + std::to_string(report.size.height) +
                       (report.rotated ? ", turned by a quarter" : ""));
  PrintRow("colour", report.color ? "yes" : "no");
  for (const ControlReport& control : report.controls) PrintRow(control.name, Row(control));
  if (const auto& balance = report.white_balance) {
    PrintRow("white balance", "red " + std::to_string(balance->red) + ", blue " + std::to_string(balance->blue) + " (" +
                                  std::to_string(balance->min) + " to " + std::to_string(balance->max) + ")");
  } else {
    PrintRow("white balance", "none");
  }
  PrintRow("trigger", !report.external_trigger ? "none" : *report.external_trigger ? "line" : "software");
  PrintRow("stream rate", std::to_string(report.stream_rate_bytes_per_s) + " bytes/s");
  PrintRow("frame rate", !report.frame_rate_hz ? "unknown"
                                               : Fixed(*report.frame_rate_hz, 2) + " images/s" +
                                                     (report.fast ? "" : ", not at this exposure"));
  PrintRow("max shutter for fast", report.max_shutter_for_fast_text);
}

DeviceReport ReportOfChosen(const CameraChoice& choice, const Module& module, MessageLog& log) {
  const CameraSession camera(module, log, choice);
  DeviceReport report = WatchedReportOf(camera);
  report.vimba = module.Vimba();
  return report;
}

// What the document has of one camera. One that fails is reported, and does not keep the next from being asked.
Json PrintOneOfSeveral(const Options& options, const CameraChoice& choice, const Module& module, MessageLog& log,
                       ExitCode& result) {
  try {
    const DeviceReport report = ReportOfChosen(choice, module, log);
    if (options.json) return ToJson(report);
    if (&choice != &options.cameras.front()) std::cout << "\n";
    Print(report);
    std::cout << std::flush;
    return {};
  } catch (...) {
    const Fault fault = FaultOfCurrentException();
    std::cerr << fault.Sentence() + "\n" + fault.reason.Text();
    result = kFailed;
    return {{"camera", choice.Name()}, {"error", ToJson(fault)}};
  }
}

// One camera after the other, each closed before the next is opened.
ExitCode InfoOfSeveral(const Options& options, const Module& module, MessageLog& log) {
  CheckDistinct(options.cameras, module);
  ExitCode result = kDone;
  Json cameras = Json::array();
  for (const CameraChoice& choice : options.cameras) {
    cameras.push_back(Interrupted() ? Json{{"camera", choice.Name()}}
                                    : PrintOneOfSeveral(options, choice, module, log, result));
  }
  if (options.json) PrintDocument({{"cameras", cameras}});
  return result;
}

}  // namespace

ExitCode RunInfo(const Options& options, const Module& module, MessageLog& log) {
  if (options.cameras.size() > 1) return InfoOfSeveral(options, module, log);
  const DeviceReport report = ReportOfChosen(options.cameras.front(), module, log);
  options.json ? PrintDocument(ToJson(report)) : Print(report);
  return kDone;
}

}  // namespace Kelcam
