// picture_details.cpp
// What a file says of its picture: the camera, when and how it was taken.
#include "picture/picture_details.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "base/utf8.h"
#include "device/control_setting.h"
#include "picture/image_time.h"

namespace Kelcam {
namespace {

struct TimeUnit {
  std::string_view name;
  double seconds;
};
constexpr TimeUnit kTimeUnits[] = {{"s", 1.0}, {"ms", 1e-3}, {"us", 1e-6}};

std::string WithoutControlCharacters(std::string text) {
  constexpr unsigned char kFirstPrintable = 0x20;
  constexpr char kDelete = 0x7F;
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < kFirstPrintable || c == kDelete; },
      ' ');
  return text;
}

// All digits that the camera's steps have, and no more.
std::string RealValueOf(BImagingDeviceControl& control) {
  std::ostringstream text;
  text << control.ToRealValue(control.Value()) << " " << UnitOf(control);
  return WithoutControlCharacters(text.str());
}

std::optional<std::chrono::duration<double>> TimeOf(BImagingDeviceControl& control) {
  const std::string unit = UnitOf(control);
  const auto* const found = std::find_if(std::begin(kTimeUnits), std::end(kTimeUnits),
                                         [&](const TimeUnit& known) { return known.name == unit; });
  if (found == std::end(kTimeUnits)) return std::nullopt;
  return std::chrono::duration<double>(control.ToRealValue(control.Value()) * found->seconds);
}

BImagingDeviceControl* IfAvailable(BImagingDeviceControl* control) {
  return control && control->IsAvailable() ? control : nullptr;
}

}  // namespace

std::string SerialOf(const BImagingDevice& device) {
  const std::string camera = WithoutControlCharacters(Utf8(WString(device.Name())));
  const std::size_t last_part = camera.rfind('_');
  return last_part == std::string::npos ? std::string() : camera.substr(last_part + 1);
}

PictureIdentity IdentityOf(const BImagingDevice& device) {
  PictureIdentity identity;
  identity.serial = SerialOf(device);
  identity.camera = WithoutControlCharacters(Utf8(WString(device.Name())));
  return identity;
}

PictureDetails DetailsOf(BImagingDevice& device) {
  PictureDetails details;
  details.camera = WithoutControlCharacters(Utf8(WString(device.Name())));
  details.serial = SerialOf(device);
  if (BImagingDeviceControl* gain = IfAvailable(device.GainControl())) details.gain = RealValueOf(*gain);
  if (BImagingDeviceControl* exposure = IfAvailable(device.ShutterControl())) {
    details.exposure = RealValueOf(*exposure);
    details.exposure_time = TimeOf(*exposure);
  }
  return details;
}

std::vector<std::pair<std::string_view, std::string>> TextsOf(const PictureDetails& details) {
  std::vector<std::pair<std::string_view, std::string>> texts = {
      {"Source", details.camera},
      {"Serial Number", details.serial},
      {"Creation Time", LocalTimeOf(details.time).Extended()},
      {"Exposure", details.exposure},
      {"Gain", details.gain},
      {"Bayer Order", details.bayer_order},
      {"Software", SoftwareName()},
  };
  std::erase_if(texts, [](const auto& entry) { return entry.second.empty(); });
  return texts;
}

std::string SoftwareName() { return std::string("kelcam ") + KEL_VERSION; }

}  // namespace Kelcam
