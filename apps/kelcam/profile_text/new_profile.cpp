// new_profile.cpp
// The text of a new profile: every key, with the camera's present value.
#include "profile_text/new_profile.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

#include "base/report.h"
#include "base/utf8.h"
#include "device/camera_profile.h"
#include "device/camera_session.h"
#include "profile_text/profile_keys.h"

namespace Kelcam {
namespace {

// The driver's lower limit of the stream rate, where the camera can stream faster.
constexpr std::int64_t kRateFloor = 45'000'000;
constexpr double kHundredths = 100.0;

struct Entry {
  std::string value;
  bool is_set = false;  // otherwise a comment
  std::string range;    // of this camera; empty: none to name
};

// By key; what is not in it has no value for this camera.
using Entries = std::map<std::string, Entry>;

std::string RangeText(std::int64_t min, std::int64_t max) { return std::to_string(min) + " to " + std::to_string(max); }

CameraRecord RecordOf(const NamedCamera& named, const VimbaSession& session) {
  for (const CameraRecord& camera : session.Cameras()) {
    if (camera.id == named.id) return camera;
    if (named.is_address && OpenedCamera(session, camera.id, VmbAccessModeRead).Address() == named.id) return camera;
  }
  throw Failure("there is no camera " + named.id + " among those that are attached (kelcam list --long)");
}

void AddIdentity(const CameraRecord& record, const OpenedCamera& camera, Entries& entries) {
  const bool has_serial = !record.serial.empty() && record.serial.find_first_of("\r\n") == std::string::npos;
  entries["API"] = {"Vimba", true, {}};
  entries["Init.Method"] = {has_serial ? "Serial" : "Id", true, {}};
  if (has_serial) entries["Serial.Number"] = {record.serial, true, {}};
  entries["Camera_Identifier"] = {record.id, true, {}};
  if (const std::optional<std::string> address = camera.Address()) entries["IP"] = {*address, true, {}};
}

void AddWhiteBalance(const OpenedCamera& camera, Entries& entries) {
  constexpr const char* kSelector = "BalanceRatioSelector";
  const std::optional<std::string> before = camera.Entry(kSelector);
  for (const auto& [colour, keys] : {std::pair("Red", std::array{"WHITEBALANCERED", "WBCOLORRED", "WBMONORED"}),
                                     std::pair("Blue", std::array{"WHITEBALANCEBLUE", "WBCOLORBLUE", "WBMONOBLUE"})}) {
    if (!camera.SetEntry(kSelector, colour)) continue;
    const std::optional<double> ratio = camera.Number("BalanceRatioAbs");
    if (!ratio) continue;
    for (const char* key : keys) entries[key] = {std::to_string(std::lround(*ratio * kHundredths)), true, {}};
  }
  if (before) std::ignore = camera.SetEntry(kSelector, *before);
}

void AddPicture(const OpenedCamera& camera, Entries& entries) {
  const auto add = [&](const char* key, const char* feature) {
    const std::optional<std::int64_t> value = camera.Integer(feature);
    if (!value) return;
    const auto range = camera.IntegerRange(feature);
    entries[key] = {std::to_string(*value), true, range ? RangeText(range->first, range->second) : ""};
  };
  add("BINNING", "BinningHorizontal");
  add("AOIX", "OffsetX");
  add("AOIY", "OffsetY");
  add("AOIWIDTH", "Width");
  add("AOIHEIGHT", "Height");
  entries["RotateBy90Degree"] = {"0", true, {}};
  if (const std::optional<std::string> order = FindBayerOrder(camera)) {
    entries["Bayertype"] = {*order, true, {}};
    entries["COLORCODEcolor"] = {"raw", true, {}};
    entries["YUVSTRETCH"] = {"no", true, {}};
    AddWhiteBalance(camera, entries);
  }
}

void AddLink(const OpenedCamera& camera, Entries& entries) {
  const auto range = camera.IntegerRange("StreamBytesPerSecond");
  if (!range) return;
  const std::string text = RangeText(range->first, range->second);
  const std::int64_t least = std::max(range->first, std::min(range->second, kRateFloor));
  entries["MIN_BYTEPERSECOND"] = {std::to_string(least), true, text};
  entries["BYTEPERSECOND"] = {std::to_string(range->second), range->second <= IProfile::kMaxInt, text};
}

void AddControl(BImagingDeviceControl* control, const std::string& key, const std::string& least,
                const std::string& most, Entries& entries) {
  if (!control || !control->IsAvailable()) return;
  int min = 0;
  int max = 0;
  if (!control->GetRange(min, max)) return;
  const std::string range = RangeText(min, max);
  entries[key] = {std::to_string(control->Value()), true, range};
  entries[least] = {std::to_string(min), true, range};
  entries[most] = {std::to_string(max), true, range};
}

// What the driver knows in its own units.
void AddDevice(BImagingDevice& device, Entries& entries) {
  AddControl(device.GainControl(), "GAIN", "MINGAIN", "MAXGAIN", entries);
  AddControl(device.ShutterControl(), "SHUTTER", "MINSHUTTER", "MAXSHUTTER", entries);
  for (const auto& [key, is_sensor] : {std::pair("TEMPERATURESENSOR", true), std::pair("TEMPERATUREMAIN", false)}) {
    BImagingDeviceControl* temperature = device.TemperatureControl(is_sensor);
    if (temperature && temperature->IsAvailable()) entries[key] = {std::to_string(temperature->Value()), false, {}};
  }
  entries["MAXSHUTTERFORFAST"] = {std::to_string(device.MaxShutterForFast()), true, {}};
  double rate_hz = 0.0;
  if (device.FramesPerSecond(rate_hz) || rate_hz > 0.0) entries["CAMFREQ"] = {Fixed(rate_hz, 2), false, {}};
  int min = 0;
  int max = 0;
  if (!device.WhiteBalanceRange(min, max)) return;
  for (auto& [key, entry] : entries) {
    if (key.starts_with("WB") || key.starts_with("WHITEBALANCE")) entry.range = RangeText(min, max);
  }
}

// Opened with what the camera is set to, it stays so.
std::string OpeningText(const CameraRecord& record, const Entries& entries) {
  std::string text = ProfileLine("API", "Vimba") + ProfileLine("Init.Method", "Id");
  text += ProfileLine("Camera_Identifier", record.id);
  for (const char* key : {"Bayertype", "BINNING", "AOIX", "AOIY", "AOIWIDTH", "AOIHEIGHT", "WBCOLORRED", "WBCOLORBLUE",
                          "WBMONORED", "WBMONOBLUE"}) {
    const auto found = entries.find(key);
    if (found != entries.end()) text += ProfileLine(key, found->second.value);
  }
  return text;
}

// "the order of the colours on the sensor; one of RGGB, GBRG, BGGR, GRBG"
std::string CommentOf(const ProfileKeyRow& key, const std::string& range) {
  std::string comment = key.meaning;
  if (!range.empty()) comment += "; this camera: " + range;
  if (key.type != ValueType::kText || !*key.choices) return comment;
  comment += "; one of ";
  for (const char* c = key.choices; *c; ++c) comment += *c == '|' ? std::string(", ") : std::string(1, *c);
  return comment;
}

std::string TextOf(const std::string& camera, const Entries& entries) {
  std::ostringstream text;
  text << "; The profile of " << camera << ", with the values of the moment at which it was written.\n"
       << "; A line that begins with a semicolon is a comment: the key in it is not set.\n";
  std::string group;
  for (const ProfileKeyRow& key : ProfileKeys()) {
    if (group != key.group) text << "\n; === " << (group = key.group) << "\n";
    const auto found = entries.find(key.name);
    const Entry entry = found != entries.end() ? found->second : Entry{};
    text << "\n; " << CommentOf(key, entry.range) << "\n"
         << (entry.is_set ? "" : ";") << ProfileLine(key.name, entry.value);
  }
  return text.str();
}

}  // namespace

NewProfile ProfileOfCamera(const std::string& word, const Module& module, MessageLog& log) {
  if (!module.Vimba()) throw Failure("--camera " + word + ": this module has no VimbaC library that could be asked");
  Entries entries;
  CameraRecord record;
  {
    const VimbaSession session(*module.Vimba());
    record = RecordOf(FindCamera(word, session), session);
    const OpenedCamera camera(session, record.id, VmbAccessModeFull);
    if (!camera.IsOpen()) {
      throw Failure("the camera " + word + " cannot be opened: VmbCameraOpen returns " + std::to_string(camera.Code()));
    }
    AddIdentity(record, camera, entries);
    AddPicture(camera, entries);
    AddLink(camera, entries);
    const bool is_falling = camera.Entry("TriggerActivation") == "FallingEdge";
    entries["TRIGGERPOLARITY"] = {is_falling ? "LOW" : "HIGH", true, {}};
  }
  const CameraSession session(module, log, ProfileInMemory(OpeningText(record, entries)), "the camera " + word);
  AddDevice(session.Device(), entries);
  const std::string name = Utf8(WString(session.Device().Name()));
  return {name, TextOf(name, entries)};
}

}  // namespace Kelcam
