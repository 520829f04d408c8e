// tiff.cpp
// Pictures as TIFF files.
#include "picture/tiff.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "base/failure.h"
#include "picture/image_time.h"

namespace Kelcam {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Of TIFF 6.0, in the order in which a directory has them.
enum Tag : std::uint16_t {
  kImageWidth = 256,
  kImageLength = 257,
  kBitsPerSample = 258,
  kCompression = 259,
  kPhotometric = 262,
  kImageDescription = 270,
  kModel = 272,
  kStripOffsets = 273,
  kSamplesPerPixel = 277,
  kRowsPerStrip = 278,
  kStripByteCounts = 279,
  kXResolution = 282,
  kYResolution = 283,
  kPlanarConfiguration = 284,
  kResolutionUnit = 296,
  kSoftware = 305,
  kDateTime = 306,
  kExifDirectory = 34665,
};

// Of Exif 2.32, in the same way.
enum ExifTag : std::uint16_t {
  kExposureTime = 33434,
  kExifVersion = 36864,
  kDateTimeOriginal = 36867,
  kOffsetTimeOriginal = 36881,
  kSubSecTimeOriginal = 37521,
  kBodySerialNumber = 42033,
};

enum class Type : std::uint16_t { kAscii = 2, kShort = 3, kLong = 4, kRational = 5, kUndefined = 7 };

constexpr std::uint16_t kBitsPerChannel = 8;
constexpr std::uint16_t kNotCompressed = 1;
constexpr std::uint16_t kBlackIsZero = 1;
constexpr std::uint16_t kRedGreenBlue = 2;
constexpr std::uint16_t kChannelsTogether = 1;
// Pixels are square and of no known size.
constexpr std::uint16_t kNoUnit = 1;
constexpr std::size_t kFirstDirectoryAt = 4;
constexpr std::size_t kPixelsAt = 8;
// For directories and their values.
constexpr std::size_t kMostOtherBytes = 1U << 16U;

void AppendNumber(Bytes& bytes, std::size_t number, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

std::uint32_t EvenEnd(Bytes& file) {
  if (file.size() % 2 != 0) file.push_back(0);
  return static_cast<std::uint32_t>(file.size());
}

// A directory of tags. Values of more than four bytes lie behind it.
class Directory {
 public:
  void Short(std::uint16_t tag, std::uint16_t value) { Shorts(tag, 1, value); }
  // That many times the same.
  void Shorts(std::uint16_t tag, std::size_t count, std::uint16_t value) {
    Bytes bytes;
    for (std::size_t i = 0; i < count; ++i) AppendNumber(bytes, value, 2);
    Add(tag, Type::kShort, count, std::move(bytes));
  }
  void Long(std::uint16_t tag, std::size_t value) {
    Bytes bytes;
    AppendNumber(bytes, value, 4);
    Add(tag, Type::kLong, 1, std::move(bytes));
  }
  void Rational(std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator) {
    Bytes bytes;
    AppendNumber(bytes, numerator, 4);
    AppendNumber(bytes, denominator, 4);
    Add(tag, Type::kRational, 1, std::move(bytes));
  }
  // An empty text is left out.
  void Text(std::uint16_t tag, const std::string& text) {
    if (text.empty()) return;
    Bytes bytes(text.begin(), text.end());
    bytes.push_back(0);
    const std::size_t count = bytes.size();
    Add(tag, Type::kAscii, count, std::move(bytes));
  }
  void Undefined(std::uint16_t tag, std::string_view text) {
    Add(tag, Type::kUndefined, text.size(), Bytes(text.begin(), text.end()));
  }

  // Returns where the directory begins.
  std::uint32_t AppendTo(Bytes& file) const {
    constexpr std::size_t kCountBytes = 2;
    constexpr std::size_t kEntryBytes = 12;
    constexpr std::size_t kNextBytes = 4;
    const std::uint32_t start = EvenEnd(file);
    std::size_t values_at = start + kCountBytes + m_entries.size() * kEntryBytes + kNextBytes;
    Bytes values;
    AppendNumber(file, m_entries.size(), kCountBytes);
    for (const Entry& entry : m_entries) {
      AppendNumber(file, entry.tag, 2);
      AppendNumber(file, static_cast<std::size_t>(entry.type), 2);
      AppendNumber(file, entry.count, 4);
      AppendValue(file, entry.bytes, values_at, values);
    }
    AppendNumber(file, 0, kNextBytes);
    file.insert(file.end(), values.begin(), values.end());
    return start;
  }

 private:
  struct Entry {
    std::uint16_t tag;
    Type type;
    std::size_t count;
    Bytes bytes;
  };

  void Add(std::uint16_t tag, Type type, std::size_t count, Bytes bytes) {
    m_entries.push_back({tag, type, count, std::move(bytes)});
  }

  static void AppendValue(Bytes& file, const Bytes& value, std::size_t values_at, Bytes& values) {
    constexpr std::size_t kMostInEntry = 4;
    if (value.size() > kMostInEntry) {
      AppendNumber(file, values_at + values.size(), kMostInEntry);
      values.insert(values.end(), value.begin(), value.end());
      std::ignore = EvenEnd(values);
    } else {
      file.insert(file.end(), value.begin(), value.end());
      file.insert(file.end(), kMostInEntry - value.size(), 0);
    }
  }

  std::vector<Entry> m_entries;
};

std::string Description(const PictureDetails& details) {
  std::string description;
  for (const auto& [name, text] : TextsOf(details)) {
    description.append(description.empty() ? "" : "; ").append(name).append(": ").append(text);
  }
  return description;
}

void AddExposure(Directory& exif, const PictureDetails& details) {
  constexpr std::uint32_t kPerSecond = 1'000'000;
  if (!details.exposure_time) return;
  const double parts = std::round(details.exposure_time->count() * kPerSecond);
  if (parts < 0.0 || parts > std::numeric_limits<std::uint32_t>::max()) return;
  exif.Rational(kExposureTime, static_cast<std::uint32_t>(parts), kPerSecond);
}

Directory ExifOf(const PictureDetails& details) {
  const LocalTime time = LocalTimeOf(details.time);
  Directory exif;
  AddExposure(exif, details);
  exif.Undefined(kExifVersion, "0232");
  exif.Text(kDateTimeOriginal, time.ExifSecond());
  exif.Text(kOffsetTimeOriginal, time.ExifOffset());
  exif.Text(kSubSecTimeOriginal, time.ExifFraction());
  exif.Text(kBodySerialNumber, details.serial);
  return exif;
}

Directory MainDirectory(const Pixels& pixels, const PictureDetails& details, std::uint32_t exif_at) {
  const auto height = static_cast<std::size_t>(pixels.size.height);
  Directory main;
  main.Long(kImageWidth, static_cast<std::size_t>(pixels.size.width));
  main.Long(kImageLength, height);
  main.Shorts(kBitsPerSample, pixels.channels, kBitsPerChannel);
  main.Short(kCompression, kNotCompressed);
  main.Short(kPhotometric, pixels.channels == 1 ? kBlackIsZero : kRedGreenBlue);
  main.Text(kImageDescription, Description(details));
  main.Text(kModel, details.camera);
  main.Long(kStripOffsets, kPixelsAt);
  main.Short(kSamplesPerPixel, static_cast<std::uint16_t>(pixels.channels));
  main.Long(kRowsPerStrip, height);
  main.Long(kStripByteCounts, pixels.Bytes());
  main.Rational(kXResolution, 1, 1);
  main.Rational(kYResolution, 1, 1);
  main.Short(kPlanarConfiguration, kChannelsTogether);
  main.Short(kResolutionUnit, kNoUnit);
  main.Text(kSoftware, SoftwareName());
  main.Text(kDateTime, LocalTimeOf(details.time).ExifSecond());
  main.Long(kExifDirectory, exif_at);
  return main;
}

}  // namespace

std::vector<std::uint8_t> EncodeTiff(const Pixels& pixels, const PictureDetails& details) {
  if (pixels.Bytes() > std::numeric_limits<std::uint32_t>::max() - kMostOtherBytes) {
    throw Failure("a .tif file cannot hold a picture of more than four gigabytes");
  }
  // Little-endian, the number of TIFF, and the place of the directory, which follows.
  Bytes file = {'I', 'I', 42, 0, 0, 0, 0, 0};
  file.reserve(kPixelsAt + pixels.Bytes() + kMostOtherBytes);
  for (int y = 0; y < pixels.size.height; ++y) {
    file.insert(file.end(), pixels.Row(y), pixels.Row(y) + pixels.RowBytes());
  }
  const std::uint32_t exif_at = ExifOf(details).AppendTo(file);
  const std::uint32_t main_at = MainDirectory(pixels, details, exif_at).AppendTo(file);
  for (std::size_t i = 0; i < 4; ++i) file[kFirstDirectoryAt + i] = static_cast<std::uint8_t>(main_at >> (8 * i));
  return file;
}

}  // namespace Kelcam
