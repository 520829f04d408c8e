// picture_notices.cpp
// Where a picture will not be what the profile and the options ask for.
#include "snap/picture_notices.h"

#include <cwchar>
#include <iostream>
#include <string>

#include "base/utf8.h"
#include "commands/camera_setup.h"
#include "messages/driver_messages.h"
#include "nboard.h"

namespace Kelcam {
namespace {

constexpr wchar_t kRotation[] = L"RotateBy90Degree";
constexpr wchar_t kBinning[] = L"BINNING";
constexpr wchar_t kColorFormat[] = L"COLORCODEcolor";

struct Facts {
  const Options& options;
  const BCamProfile& profile;
  bool is_color = false;  // the camera sees colours
  bool is_grey = false;   // the picture is grey
  bool is_turned = false;
  BSize size;      // before it is turned
  Lines messages;  // the driver's, since the camera was opened
};

// A number that the profile asks for; without one that can be used, 0.
int NumberOf(const Facts& facts, const wchar_t* key) {
  int number = 0;
  std::ignore = facts.profile.ReadInt(key, number, 0, IProfile::kMinInt, IProfile::kMaxInt);
  return number;
}

int AreaOf(const Facts& facts, NBoard::CAMAOIVALUE value) {
  return NumberOf(facts, NBoard::CamAOIValueString(value).c_str());
}

bool IsTurnedRaw(const Facts& facts) { return facts.is_turned && facts.options.raw; }
bool IsTurnedColor(const Facts& facts) {
  return facts.is_turned && facts.is_color && !facts.is_grey && !facts.options.raw;
}
bool IsTurnedGreyInRgb(const Facts& facts) {
  return facts.is_turned && !facts.is_color && !facts.is_grey && !facts.options.raw;
}
bool IsTurnedGreyOfColor(const Facts& facts) { return facts.is_turned && facts.is_color && facts.is_grey; }
bool IsCut(const Facts& facts) { return IsTurnedGreyOfColor(facts) && facts.size.width != facts.size.height; }
bool IsOnlyNotTurned(const Facts& facts) { return IsTurnedGreyOfColor(facts) && !IsCut(facts); }

// Drivers read it as a text: the number at its beginning counts.
bool LacksBinning(const Facts& facts, const char* failure) {
  WString text;
  facts.profile.ReadString(kBinning, text);
  return std::wcstol(text.c_str(), nullptr, 10) > 1 && AnyContains(facts.messages, failure);
}
bool LacksBinningX(const Facts& facts) { return LacksBinning(facts, "BinningX failed"); }
bool LacksBinningY(const Facts& facts) { return LacksBinning(facts, "BinningY failed"); }

bool IsTooWide(const Facts& facts) { return AreaOf(facts, NBoard::eAoiWidth) > facts.size.width; }
bool IsTooHigh(const Facts& facts) { return AreaOf(facts, NBoard::eAoiHeight) > facts.size.height; }
// An area as wide as the sensor has no other place.
bool HasLeftAlone(const Facts& facts) {
  return AreaOf(facts, NBoard::eAoiX) > 0 && AreaOf(facts, NBoard::eAoiWidth) <= 0;
}
bool HasTopAlone(const Facts& facts) {
  return AreaOf(facts, NBoard::eAoiY) > 0 && AreaOf(facts, NBoard::eAoiHeight) <= 0;
}

// The frames are a Bayer mosaic, and its colours matter.
bool IsFromMosaic(const Facts& facts) {
  WString format;
  facts.profile.ReadString(kColorFormat, format);
  const bool has_other_format = format.IEquals(L"YUV") || format.IEquals(L"RGB");
  return facts.is_color && !facts.is_grey && !(has_other_format && facts.options.color.value_or(false));
}
bool IsOdd(int number) { return number > 0 && number % 2 == 1; }
bool HasOddLeft(const Facts& facts) {
  return IsFromMosaic(facts) && IsOdd(AreaOf(facts, NBoard::eAoiX)) && !HasLeftAlone(facts) && !IsTooWide(facts);
}
bool HasOddTop(const Facts& facts) {
  return IsFromMosaic(facts) && IsOdd(AreaOf(facts, NBoard::eAoiY)) && !HasTopAlone(facts) && !IsTooHigh(facts);
}

bool IsGreyInRgb(const Facts& facts) { return facts.options.kind == BBaseAoi::eRgb && !facts.is_color; }
bool IsColorWithColorOff(const Facts& facts) {
  return facts.is_color && facts.options.color == false && !facts.options.kind && !facts.options.raw;
}
bool IsGreyWithColorOn(const Facts& facts) {
  return facts.is_color && facts.options.color == true && facts.options.is_grey_by_format;
}

std::wstring AreaKey(NBoard::CAMAOIVALUE value) { return NBoard::CamAOIValueString(value).c_str(); }

struct PictureNotice {
  std::wstring key;  // of the profile; empty: the text names an option
  bool (*holds)(const Facts&);
  const char* text;
};

const PictureNotice kPictureNotices[] = {
    {kRotation, IsTurnedRaw, "turns no raw picture: turn the file, or take it without --raw"},
    {kRotation, IsTurnedColor, "turns no colour picture: turn the file, or remove the key"},
    {kRotation, IsTurnedGreyInRgb, "turns no picture of --kind rgb: take it with --kind mono"},
    {kRotation, IsCut,
     "cuts the grey picture of a colour camera and does not turn it: remove the key, and turn the file"},
    {kRotation, IsOnlyNotTurned, "turns no picture of a colour camera: turn the file, or remove the key"},
    {kBinning, LacksBinningX, "has no effect on the width, which the camera does not bin: remove the key"},
    {kBinning, LacksBinningY, "has no effect on the height, which the camera does not bin: remove the key"},
    {AreaKey(NBoard::eAoiWidth), IsTooWide,
     "is more than the camera has, so the picture has the whole width: set a smaller one"},
    {AreaKey(NBoard::eAoiHeight), IsTooHigh,
     "is more than the camera has, so the picture has the whole height: set a smaller one"},
    {AreaKey(NBoard::eAoiX), HasLeftAlone, "has no effect on a picture of the whole width: set AOIWIDTH, too"},
    {AreaKey(NBoard::eAoiY), HasTopAlone, "has no effect on a picture of the whole height: set AOIHEIGHT, too"},
    {AreaKey(NBoard::eAoiX), HasOddLeft, "is odd, which gives a colour camera wrong colours: set an even number"},
    {AreaKey(NBoard::eAoiY), HasOddTop, "is odd, which gives a colour camera wrong colours: set an even number"},
    {{}, IsGreyInRgb, "--kind rgb: a monochrome camera has no colours, so the picture is grey"},
    {{},
     IsColorWithColorOff,
     "--color off switches the camera, and the picture has colours all the same: add --kind mono for a grey one"},
    {{}, IsGreyWithColorOn, "--color on: a .pgm picture is grey all the same; choose .png, .tif or .ppm for colours"},
};

Facts FactsOf(const Options& options, const CameraSession& camera) {
  Facts facts{.options = options, .profile = camera.Profile(), .size = {}, .messages = {}};
  facts.is_color = camera.Device().IsColor();
  facts.is_grey = !options.raw && PictureKind(options, camera.Device()) == BBaseAoi::eMono8;
  facts.size = camera.Device().ImageSize(facts.is_turned);
  facts.messages = LinesOf(camera.Messages().MessagesSince(0));
  return facts;
}

std::string SentenceOf(const PictureNotice& notice, const Facts& facts) {
  if (notice.key.empty()) return notice.text;
  WString value;
  facts.profile.ReadString(notice.key.c_str(), value);
  return Utf8(WString(notice.key.c_str())) + " = " + Utf8(value) + " " + notice.text;
}

}  // namespace

void PrintPictureNotices(const Options& options, const CameraSession& camera) {
  const Facts facts = FactsOf(options, camera);
  for (const PictureNotice& notice : kPictureNotices) {
    if (notice.holds(facts)) std::cerr << "notice: " + camera.Label() + SentenceOf(notice, facts) + "\n";
  }
}

}  // namespace Kelcam
