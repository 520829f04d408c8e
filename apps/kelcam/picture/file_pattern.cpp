// file_pattern.cpp
// The names of pictures, and the format that a name stands for.
#include "picture/file_pattern.h"

#include <algorithm>
#include <cctype>

#include "base/failure.h"
#include "base/utf8.h"
#include "picture/image_time.h"

namespace Kelcam {
namespace {

constexpr std::string_view kStandardOutput = "-";
constexpr std::string_view kUnknown = "unknown";
// Of an identifier in a name, which has room for 255 in all.
constexpr std::size_t kLongestCamera = 100;

PictureFormat FormatByEnding(const std::string& pattern) {
  std::string ending = Utf8(Path(pattern).extension());
  std::transform(ending.begin(), ending.end(), ending.begin(), [](unsigned char c) { return std::tolower(c); });
  if (ending == ".png" || pattern == kStandardOutput) return PictureFormat::kPng;
  if (ending == ".pgm") return PictureFormat::kPgm;
  if (ending == ".ppm") return PictureFormat::kPpm;
  if (ending == ".tif" || ending == ".tiff") return PictureFormat::kTiff;
  throw UsageError("-o " + pattern + ": not a .png, .pgm, .ppm or .tif file");
}

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

// A mark of a number at the head of the text: "%d", or "%0" with one or two digits and "d".
struct NumberMark {
  std::size_t length = 0;  // 0: there is none
  std::size_t width = 0;
};

NumberMark NumberMarkOf(std::string_view text) {
  constexpr std::size_t kMostDigits = 2;
  if (text.substr(0, 2) == "%d") return {2, 0};
  if (text.substr(0, 2) != "%0") return {};
  std::size_t at = 2;
  std::size_t width = 0;
  for (; at < text.size() && at < 2 + kMostDigits && IsDigit(text[at]); ++at) {
    width = 10 * width + static_cast<std::size_t>(text[at] - '0');
  }
  return width > 0 && at < text.size() && text[at] == 'd' ? NumberMark{at + 1, width} : NumberMark{};
}

std::string Padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

// A camera may claim any text; a part of a file name is what becomes of it.
std::string AsPartOfName(std::string_view text) {
  std::string name(text.empty() ? kUnknown : text);
  const auto is_plain = [](unsigned char c) { return c < 0x80 && (std::isalnum(c) || c == '-'); };
  std::replace_if(
      name.begin(), name.end(), [&](char c) { return !is_plain(static_cast<unsigned char>(c)); }, '_');
  return name;
}

}  // namespace

FilePattern::FilePattern(const std::string& pattern, std::optional<PictureFormat> format, int pictures)
    : m_text(pattern), m_parts(Parts(pattern)), m_format(format ? *format : FormatByEnding(pattern)) {
  if (pictures > 1 && !Has(Mark::kNumber) && !HasTime() && !IsStandardOutput()) {
    throw UsageError("-o " + pattern + ": " + std::to_string(pictures) +
                     " pictures need a %d in the name for their numbers");
  }
}

std::vector<FilePattern::Part> FilePattern::Parts(const std::string& pattern) {
  std::vector<Part> parts;
  const std::string_view all = pattern;
  for (std::size_t at = 0; at < all.size();) {
    const std::string_view two = all.substr(at, 2);
    if (const NumberMark number = NumberMarkOf(all.substr(at)); number.length > 0) {
      parts.push_back({Mark::kNumber, {}, number.width});
      at += number.length;
    } else if (two == "%t" || two == "%s" || two == "%c") {
      parts.push_back({two == "%t" ? Mark::kTime : two == "%s" ? Mark::kSerial : Mark::kCamera, {}});
      at += two.size();
    } else {
      if (parts.empty() || parts.back().mark != Mark::kText) parts.push_back({Mark::kText, {}});
      parts.back().text += all[at];
      at += two == "%%" ? 2 : 1;
    }
  }
  return parts;
}

bool FilePattern::Has(Mark mark) const {
  return std::any_of(m_parts.begin(), m_parts.end(), [&](const Part& part) { return part.mark == mark; });
}

bool FilePattern::IsStandardOutput(const std::string& pattern) { return pattern == kStandardOutput; }
bool FilePattern::HasTime() const { return Has(Mark::kTime); }
bool FilePattern::NamesCamera() const { return Has(Mark::kSerial) || Has(Mark::kCamera); }

void FilePattern::CheckForSeveralCameras() const {
  if (IsStandardOutput()) throw UsageError("-o -: the pictures of several cameras need files, with a %c in the name");
  if (NamesCamera()) return;
  throw UsageError("-o " + m_text + ": the pictures of several cameras need a %c in the name for the camera");
}

std::filesystem::path FilePattern::File(const PictureIdentity& picture) const {
  std::string file;
  for (const Part& part : m_parts) {
    switch (part.mark) {
      case Mark::kText:
        file += part.text;
        break;
      case Mark::kNumber:
        file += Padded(picture.number, part.width);
        break;
      case Mark::kTime:
        file += LocalTimeOf(picture.time).Basic();
        break;
      case Mark::kSerial:
        file += AsPartOfName(picture.serial);
        break;
      case Mark::kCamera:
        file += AsPartOfName(picture.camera).substr(0, kLongestCamera);
        break;
    }
  }
  return Path(file);
}

}  // namespace Kelcam
