// opening_explained.cpp
// Why a camera could not be opened, and what to do next.
#include "device/opening_explained.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/utf8.h"
#include "bcamprofilekeys.h"

namespace Kelcam {
namespace {

using Evidence = OpeningEvidence;

constexpr wchar_t kBayerType[] = L"Bayertype";
constexpr wchar_t kBySerial[] = L"Serial";

// What the driver's lines say of a step that failed.
constexpr std::string_view kFailures[] = {" failed", " fails : ", "returns error", "GeVTLIsPresent = false"};

constexpr const char* kSerialFailed = " - InitBySerial failed";
constexpr const char* kAddressFailed = " - InitByAddr failed";
constexpr const char* kIdFailed = " - InitByUid failed";

bool IsFailure(std::string_view line) {
  return std::any_of(std::begin(kFailures), std::end(kFailures), [&](auto part) { return Contains(line, part); });
}

bool WasOpened(const Evidence& evidence) {
  return std::any_of(evidence.lines.begin(), evidence.lines.end(),
                     [](const std::string& line) { return Contains(line, "InitBy") && Contains(line, " success"); });
}

bool HasRefusedApi(const Evidence& evidence) {
  return AnyContains(evidence.lines, "Initialize by ") && !AnyContains(evidence.lines, "API = ");
}

bool HasNoApi(const Evidence& evidence) { return HasRefusedApi(evidence) && evidence.profile.api.empty(); }
bool HasApiInSection(const Evidence& evidence) { return HasNoApi(evidence) && evidence.profile.has_api_in_section; }
bool HasOtherApi(const Evidence& evidence) { return HasRefusedApi(evidence) && !evidence.profile.api.empty(); }

// The driver has searched, and opened none.
bool FoundNone(const Evidence& evidence) { return AnyContains(evidence.lines, "InitMethod: ") && !WasOpened(evidence); }

bool NamesNoCamera(const Evidence& evidence) {
  const ProfileFacts& profile = evidence.profile;
  return FoundNone(evidence) && !profile.is_by_serial && profile.camera_id.empty() && profile.address.empty();
}

bool HasNoSuchSerial(const Evidence& evidence) {
  return FoundNone(evidence) && evidence.profile.is_by_serial && !AnyContains(evidence.lines, kSerialFailed);
}

// The module lists the camera that this profile opened the last time, and it is the one that it names.
bool IsListedButClosed(const Evidence& evidence) {
  const ProfileFacts& profile = evidence.profile;
  if (!FoundNone(evidence) || !evidence.attached || profile.last_ident.empty()) return false;
  const Lines& attached = *evidence.attached;
  return profile.last_id == profile.camera_id &&
         std::find(attached.begin(), attached.end(), profile.last_ident) != attached.end();
}

bool HasNoneAttached(const Evidence& evidence) {
  return FoundNone(evidence) && !NamesNoCamera(evidence) && evidence.attached && evidence.attached->empty();
}

bool IsAddressSilent(const Evidence& evidence) { return evidence.at_address == CameraAnswer::kNobody; }
bool IsAddressInUse(const Evidence& evidence) { return evidence.at_address == CameraAnswer::kInUse; }
bool IsAddressOpenable(const Evidence& evidence) { return evidence.at_address == CameraAnswer::kOpenable; }

bool IsIdSilent(const Evidence& evidence) { return evidence.with_id == CameraAnswer::kNobody; }
bool IsIdInUse(const Evidence& evidence) { return evidence.with_id == CameraAnswer::kInUse; }
bool IsIdOpenable(const Evidence& evidence) { return evidence.with_id == CameraAnswer::kOpenable; }

bool LacksBayerType(const Evidence& evidence) { return !evidence.profile.has_bayer_type; }

struct OpeningCause {
  const char* line;                // part of a line of the driver's that shows it; null: none does
  bool (*holds)(const Evidence&);  // what else must be so; null: nothing
  const char* why;
  const char* to_do;
};

// In the order of the driver's steps: the last one that holds is the one that ended the opening.
// docs/troubleshooting.md shows the same sentences, row by row.
constexpr OpeningCause kOpeningCauses[] = {
    {"Vimba Startup fails : ", nullptr, "the Vimba library does not start",
     "install Vimba with its transport layers, or repair its installation"},
    {"GeVTLIsPresent = false", nullptr, "Vimba has no transport layer for GigE cameras",
     "install Vimba's GigE transport layer"},
    {"VmbFeatureBoolGet( GeVTLIsPresent ) returns error", nullptr,
     "Vimba does not say whether it has a transport layer for GigE cameras", "repair Vimba's installation"},
    {"VmbFeatureCommandRun( GeVDiscoveryAllOnce ) returns error", nullptr, "the search for cameras does not start",
     "check that a network adapter is connected and has an address"},
    {nullptr, HasNoApi, "the profile has no key API, so it is for no driver",
     "write API = Vimba at the head of the profile"},
    {nullptr, HasApiInSection, "the profile's keys are below a section, where the driver does not read them",
     "move API and the other keys above the first line in brackets"},
    {nullptr, HasOtherApi, "the profile is for another driver", "write API = Vimba at the head of the profile"},
    {nullptr, NamesNoCamera, "the profile names no camera",
     "write Init.Method = Serial and Serial.Number at the head of the profile; kelcam list shows the serial numbers"},
    {nullptr, HasNoSuchSerial, "no attached camera has this serial number",
     "compare it with kelcam list; check the camera's power and cable, and that it is in the adapter's subnet"},
    {kAddressFailed, FoundNone,
     "no camera could be opened at this address: there is none, or another program has it open",
     "check the address and that the computer is in its subnet; end the program that has the camera open"},
    {kAddressFailed, IsAddressSilent, "no camera answers at this address",
     "compare it with kelcam list --long; check the camera's power and cable, and that the computer is in its subnet"},
    {kIdFailed, FoundNone, "no camera with this id could be opened: there is none, or another program has it open",
     "check the id and the camera's power and cable; end the program that has the camera open"},
    {kIdFailed, IsIdSilent, "no camera with this id is attached",
     "compare it with kelcam list --long; check the camera's power and cable"},
    {nullptr, HasNoneAttached, "no camera is attached",
     "check power, cable and firewall, and that camera and network adapter are in one subnet"},
    {kAddressFailed, IsAddressInUse,
     "the camera at this address is attached and cannot be opened: another program has it open",
     "end that program; after a crash, wait 5 seconds and try again"},
    {kAddressFailed, IsAddressOpenable, "the camera at this address could not be opened, and can be opened now",
     "try again"},
    {kIdFailed, IsIdInUse, "the camera with this id is attached and cannot be opened: another program has it open",
     "end that program; after a crash, wait 5 seconds and try again"},
    {kIdFailed, IsIdOpenable, "the camera with this id could not be opened, and can be opened now", "try again"},
    {kIdFailed, IsListedButClosed, "the camera is attached and cannot be opened: another program has it open",
     "end that program; after a crash, wait 5 seconds and try again"},
    {kSerialFailed, FoundNone,
     "the camera with this serial number is attached and cannot be opened: another program has "
     "it open",
     "end that program; after a crash, wait 5 seconds and try again"},
    {"VmbCamerasList failed", nullptr, "Vimba claims more cameras than a network can have",
     "report it to the library's vendor"},
    {"ColorCodeMono failed", nullptr, "the camera does not have the raw pixel format that Bayertype selects",
     "set Bayertype = RGGB, GBRG, BGGR or GRBG, the order of colours on this camera's sensor"},
    {"ColorCodeMono failed", LacksBayerType,
     "the camera does not take the pixel format; without Bayertype a colour camera gets that of "
     "GRBG",
     "for a colour camera, set Bayertype = RGGB, GBRG, BGGR or GRBG, the order of colours on its sensor"},
    {"ColorCodeColor failed", nullptr, "the camera does not have the pixel format that COLORCODEcolor selects",
     "set COLORCODEcolor = YUV, or remove the key"},
    {"BinningX failed", nullptr, "the camera refuses the horizontal binning", "set BINNING = 1, or remove the key"},
    {"BinningY failed", nullptr, "the camera refuses the vertical binning", "set BINNING = 1, or remove the key"},
    {"ChipRect failed", nullptr, "the camera refuses the area of interest",
     "remove AOIX, AOIY, AOIWIDTH and AOIHEIGHT, or set them to the camera's steps"},
    {"PayloadSize failed", nullptr, "the camera does not report a size of its frames that a buffer can have",
     "switch the camera off and on; if it fails again, look for a newer firmware"},
    {"VmbCaptureStart failed", nullptr, "the library does not start to capture",
     "end other programs that use the camera, switch it off and on, and try again"},
    {"AcquisitionMode failed", nullptr, "the camera refuses its acquisition mode",
     "switch the camera off and on; if it fails again, look for a newer firmware"},
    {"SWTriggerMode failed", nullptr, "the camera refuses the software trigger",
     "use a camera with TriggerSelector, TriggerMode and TriggerSource: this driver needs them"},
    {"QueueFrame failed", nullptr,
     "the library refuses the buffers for frames (VmbFrameAnnounce, VmbCaptureFrameQueue)",
     "end programs that need much memory, or set a smaller area of interest"},
};

constexpr const char* kRotationToDo = "set RotateBy90Degree = 1, -1 or 0, or remove the key";

bool Holds(const OpeningCause& cause, const Evidence& evidence) {
  return (!cause.line || AnyContains(evidence.lines, cause.line)) && (!cause.holds || cause.holds(evidence));
}

const OpeningCause* CauseOf(const Evidence& evidence) {
  const auto found = std::find_if(std::rbegin(kOpeningCauses), std::rend(kOpeningCauses),
                                  [&](const OpeningCause& cause) { return Holds(cause, evidence); });
  return found == std::rend(kOpeningCauses) ? nullptr : &*found;
}

// Whether a section of the file has the key that belongs at its head.
bool FileHasApiInSection(const std::filesystem::path& file) {
  std::ifstream text(file, std::ios::binary);
  bool is_in_section = false;
  for (std::string line; std::getline(text, line);) {
    line.erase(0, line.find_first_not_of(" \t"));
    is_in_section = is_in_section || line.starts_with("[");
    const WString key = Wide(line.substr(0, line.find_first_of(" \t=")));
    if (is_in_section && key.IEquals(CamProfileKey::kApi)) return true;
  }
  return false;
}

std::string TextIn(const BCamProfile& profile, const wchar_t* key) {
  WString text;
  profile.ReadString(key, text);
  return Utf8(text);
}

std::string AttachedText(const Lines& attached) {
  std::string text;
  for (const std::string& camera : attached) text += (text.empty() ? "; attached: " : ", ") + camera;
  return text;
}

}  // namespace

ProfileFacts FactsOf(const BCamProfile& profile) {
  ProfileFacts facts;
  facts.api = TextIn(profile, CamProfileKey::kApi);
  facts.has_api_in_section = FileHasApiInSection(Path(Utf8(profile.FileName())));
  WString method;
  profile.ReadString(CamProfileKey::kInitMethod, method);
  facts.serial = TextIn(profile, CamProfileKey::kSerialNumber);
  facts.is_by_serial = method.IEquals(kBySerial) && !facts.serial.empty();
  facts.camera_id = TextIn(profile, CamProfileKey::kCameraIdentifier);
  facts.address = TextIn(profile, CamProfileKey::kIp);
  facts.has_bayer_type = !TextIn(profile, kBayerType).empty();
  facts.last_ident = TextIn(profile, CamProfileKey::kIdent);
  facts.last_id = TextIn(profile, CamProfileKey::kMIIdent);
  return facts;
}

bool OpeningEvidence::IsWithoutCamera() const {
  return FoundNone(*this) && !NamesNoCamera(*this) && !AnyContains(lines, kSerialFailed);
}

bool OpeningEvidence::HasTriedAddress() const { return AnyContains(lines, kAddressFailed); }
bool OpeningEvidence::HasTriedId() const { return AnyContains(lines, kIdFailed); }

Reason ExplainOpening(const OpeningEvidence& evidence) {
  Reason reason;
  Lines failures;
  std::copy_if(evidence.lines.begin(), evidence.lines.end(), std::back_inserter(failures), IsFailure);
  reason.messages = Condensed(failures);
  const OpeningCause* cause = CauseOf(evidence);
  if (!cause) return reason;
  reason.why = cause->why;
  if (evidence.attached) reason.why += AttachedText(*evidence.attached);
  reason.to_do = cause->to_do;
  return reason;
}

Fault OpeningFault(std::string sentence, const OpeningEvidence& evidence, const MessageMemory& messages) {
  Reason reason = ExplainOpening(evidence);
  if (reason.why.empty()) return {Fault::kNoCode, messages.WithLastNotices(std::move(sentence))};
  reason.has_more = true;
  return {Fault::kNoCode, std::move(sentence), std::move(reason)};
}

Reason ExplainOpeningError(int code) {
  Reason reason;
  if (code == BError::eBadRotation) reason.to_do = kRotationToDo;
  return reason;
}

}  // namespace Kelcam
