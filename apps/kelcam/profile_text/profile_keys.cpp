// profile_keys.cpp
// Every key of a camera profile: what stands for a value, and what the key is for.
#include "profile_text/profile_keys.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <sstream>

#include "iprofile.h"

namespace Kelcam {
namespace {

constexpr double kLeast = IProfile::kMinInt;
constexpr double kMost = IProfile::kMaxInt;
// Of any camera, not of one.
constexpr double kMostBinning = 32;
constexpr double kLongestShutter = 20000;
constexpr double kSlowestRate = 0.001;
constexpr const char* kPicture = "Picture";
constexpr const char* kControls = "Controls";
constexpr const char* kLink = "Link";
constexpr const char* kYesOrNoWords = "1|true|yes|on|0|false|no|off";

using enum ValueType;

constexpr ProfileKeyRow kKeys[] = {
    {kIdentityGroup, "API", kText, "Vimba|PvAPI", 0, -1, "the driver that the profile is for"},
    {kIdentityGroup, "Init.Method", kText, "", 0, -1, "how to find the camera: Serial, IP, anything else: by id"},
    {kIdentityGroup, "Serial.Number", kText, "", 0, -1, "the camera's serial number, for Init.Method = Serial"},
    {kIdentityGroup, "Camera_Identifier", kText, "", 0, -1,
     "the camera's Vimba id; the driver writes that of the opened camera"},
    {kIdentityGroup, "IP", kText, "", 0, -1, "the camera's address, for Init.Method = IP and when nothing else helps"},
    {kIdentityGroup, "Ident", kText, "", 0, -1, "written by the driver: the identifier of the opened camera"},
    {kIdentityGroup, "MIIdent", kText, "", 0, -1, "written by the driver: the Vimba id of the opened camera"},

    {kPicture, "Bayertype", kText, "RGGB|GBRG|BGGR|GRBG", 0, -1, "the order of the colours on the sensor"},
    {kPicture, "COLORCODEcolor", kText, "YUV|RGB|raw", 0, -1, "what a colour camera sends in colour mode"},
    {kPicture, "YUVSTRETCH", kYesOrNo, kYesOrNoWords, 0, -1,
     "whether YUV brightness is stretched from 16 to 235 to the range 0 to 255"},
    {kPicture, "BINNING", kWholeNumber, "", 1, kMostBinning, "pixels that are combined, horizontally and vertically"},
    {kPicture, "AOIX", kWholeNumber, "", kLeast, kMost, "left edge of the area that is read out, in pixels"},
    {kPicture, "AOIY", kWholeNumber, "", kLeast, kMost, "top edge of the area, in pixels"},
    {kPicture, "AOIWIDTH", kWholeNumber, "", kLeast, kMost, "width of the area, in pixels; 0: the whole sensor"},
    {kPicture, "AOIHEIGHT", kWholeNumber, "", kLeast, kMost, "height of the area, in pixels; 0: the whole sensor"},
    {kPicture, "RotateBy90Degree", kWholeNumber, "-5|-4|-3|-1|0|1", 0, -1,
     "quarter turns: 1 clockwise, -1 counter-clockwise"},
    {kPicture, "CAMFREQ", kNumber, "", kSlowestRate, kMost,
     "the highest frame rate that is reported, in frames per second"},

    {kControls, "MINGAIN", kWholeNumber, "", kLeast, kMost, "lower limit of the gain, in dB"},
    {kControls, "MAXGAIN", kWholeNumber, "", kLeast, kMost, "upper limit of the gain, in dB"},
    {kControls, "MINSHUTTER", kWholeNumber, "", 0, kLongestShutter,
     "lower limit of the exposure, in tenths of a millisecond"},
    {kControls, "MAXSHUTTER", kWholeNumber, "", 0, kLongestShutter,
     "upper limit of the exposure, in tenths of a millisecond"},
    {kControls, "GAIN", kWholeNumber, "", kLeast, kMost, "start value of the gain, in dB"},
    {kControls, "SHUTTER", kWholeNumber, "", 0, kLongestShutter,
     "start value of the exposure, in tenths of a millisecond"},
    {kControls, "WHITEBALANCERED", kWholeNumber, "", 0, kMost, "start value of the red balance, in hundredths"},
    {kControls, "WHITEBALANCEBLUE", kWholeNumber, "", 0, kMost, "start value of the blue balance, in hundredths"},
    {kControls, "TEMPERATURESENSOR", kWholeNumber, "", kLeast, kMost,
     "temperature of the sensor, in tenths of a degree; only read, a value has no effect"},
    {kControls, "TEMPERATUREMAIN", kWholeNumber, "", kLeast, kMost,
     "temperature of the board, in tenths of a degree; only read, a value has no effect"},
    {kControls, "BRIGHTNESS", kWholeNumber, "", kLeast, kMost, "these cameras have no brightness; without effect"},
    {kControls, "WBCOLORBLUE", kWholeNumber, "", 0, kMost,
     "blue balance of colour mode, in hundredths; the driver writes it at the end"},
    {kControls, "WBCOLORRED", kWholeNumber, "", 0, kMost,
     "red balance of colour mode, in hundredths; the driver writes it at the end"},
    {kControls, "WBMONOBLUE", kWholeNumber, "", 0, kMost, "blue balance of mono mode, in hundredths"},
    {kControls, "WBMONORED", kWholeNumber, "", 0, kMost, "red balance of mono mode, in hundredths"},
    {kControls, "MAXSHUTTERFORFAST", kWholeNumber, "", kLeast, kMost,
     "the longest exposure of the host's fast mode, in tenths of a millisecond"},
    {kControls, "TRIGGERPOLARITY", kText, "LOW|HIGH", 0, -1,
     "the edge of the trigger line that counts: LOW is falling"},

    {kLink, "MIN_BYTEPERSECOND", kWholeNumber, "", 0, kMost, "lower limit of the stream rate, in bytes per second"},
    {kLink, "BYTEPERSECOND", kWholeNumber, "", 0, kMost, "upper limit of the stream rate, in bytes per second"},
};

bool IsSame(std::string_view a, std::string_view b) {
  const auto folded = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return folded(x) == folded(y); });
}

std::vector<std::string> ChoicesOf(const ProfileKeyRow& key) {
  std::vector<std::string> choices;
  std::istringstream text(key.choices);
  for (std::string choice; std::getline(text, choice, '|');) choices.push_back(choice);
  return choices;
}

std::string ListOf(const std::vector<std::string>& choices) {
  std::string list;
  for (std::size_t i = 0; i < choices.size(); ++i) {
    if (i > 0) list += i + 1 == choices.size() ? " and " : ", ";
    list += choices[i];
  }
  return list;
}

std::string Plain(double number) {
  std::ostringstream text;
  text.precision(12);
  text << number;
  return text.str();
}

// A number of the type; NaN for a text that is none.
double NumberOf(std::string_view text, ValueType type) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  if (type == kWholeNumber) {
    long long number = 0;
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? static_cast<double>(number) : std::nan("");
  }
  double number = 0.0;
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end && std::isfinite(number) ? number : std::nan("");
}

}  // namespace

std::span<const ProfileKeyRow> ProfileKeys() { return kKeys; }

const ProfileKeyRow* FindProfileKey(std::string_view name) {
  const auto* found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                   [&](const ProfileKeyRow& key) { return IsSame(key.name, name); });
  return found == std::end(kKeys) ? nullptr : found;
}

std::string WhyNotValue(const ProfileKeyRow& key, const std::string& value) {
  if (const std::vector<std::string> choices = ChoicesOf(key); !choices.empty()) {
    const bool is_choice =
        std::any_of(choices.begin(), choices.end(), [&](const std::string& choice) { return IsSame(choice, value); });
    return is_choice ? std::string() : "is none of " + ListOf(choices);
  }
  if (key.type != kWholeNumber && key.type != kNumber) return {};
  const double number = NumberOf(value, key.type);
  const std::string kind = key.type == kWholeNumber ? "a whole number" : "a number";
  if (number >= key.min && number <= key.max) return {};
  return "is not " + kind + " from " + Plain(key.min) + " to " + Plain(key.max);
}

std::vector<std::string> ProfileKeyNames() {
  std::vector<std::string> names;
  for (const ProfileKeyRow& key : kKeys) names.emplace_back(key.name);
  return names;
}

}  // namespace Kelcam
