// picture_metadata.cpp
// What PNG and TIFF files say of their pictures, read by this project's own eyes.
#include "picture_metadata.h"

#include <array>
#include <stdexcept>

namespace {

constexpr std::size_t kSignatureBytes = 8;
constexpr std::size_t kChunkFrameBytes = 12;

std::uint32_t BigEndian(const std::string& bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) number = number << 8U | static_cast<unsigned char>(bytes.at(at + i));
  return number;
}

// As the PNG standard defines it, bit by bit.
std::uint32_t Checksum(const std::string& bytes) {
  constexpr std::uint32_t kPolynomial = 0xEDB88320U;
  std::uint32_t sum = 0xFFFFFFFFU;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1U ^ (sum & 1U ? kPolynomial : 0U);
  }
  return ~sum;
}

// Without its keyword, and in an iTXt chunk without what says that it is plain and of no language.
std::string TextOf(const std::string& type, const std::string& data, std::size_t keyword_end) {
  constexpr std::size_t kInternationalBytes = 4;
  return data.substr(keyword_end + 1 + (type == "iTXt" ? kInternationalBytes : 0));
}

// Of a little-endian TIFF file.
class TiffReader {
 public:
  explicit TiffReader(const std::string& file) : m_file(file) {}

  std::uint32_t Number(std::size_t at, std::size_t size) const {
    std::uint32_t number = 0;
    for (std::size_t i = size; i-- > 0;) number = number << 8U | static_cast<unsigned char>(m_file.at(at + i));
    return number;
  }

  void ReadDirectory(std::size_t at, TiffFile& tiff) const {
    const std::uint32_t count = Number(at, 2);
    std::uint32_t last_tag = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::size_t entry = at + 2 + std::size_t{12} * i;
      const std::uint32_t tag = Number(entry, 2);
      tiff.is_sorted = tiff.is_sorted && tag > last_tag;
      last_tag = tag;
      ReadValue(entry, static_cast<int>(tag), tiff);
    }
  }

 private:
  void ReadValue(std::size_t entry, int tag, TiffFile& tiff) const {
    constexpr std::array<std::size_t, 8> kBytesOfType = {0, 1, 1, 2, 4, 8, 1, 1};
    constexpr std::uint32_t kAscii = 2;
    constexpr std::uint32_t kUndefined = 7;
    const std::uint32_t type = Number(entry + 2, 2);
    const std::uint32_t count = Number(entry + 4, 4);
    const std::size_t size = kBytesOfType.at(type);
    const std::size_t at = count * size > 4 ? Number(entry + 8, 4) : entry + 8;
    tiff.is_sorted = tiff.is_sorted && at % 2 == 0;
    if (type == kAscii || type == kUndefined) {
      if (type == kAscii && m_file.at(at + count - 1) != '\0') throw std::runtime_error("a text has no end");
      tiff.texts[tag] = m_file.substr(at, type == kAscii ? count - 1 : count);
      return;
    }
    const std::size_t word = size == 8 ? 4 : size;
    for (std::size_t i = 0; i < count * size / word; ++i) tiff.numbers[tag].push_back(Number(at + word * i, word));
  }

  const std::string& m_file;
};

}  // namespace

std::map<std::string, std::string> PngTexts(const std::string& file) {
  std::map<std::string, std::string> texts;
  for (std::size_t at = kSignatureBytes; at < file.size();) {
    const std::uint32_t length = BigEndian(file, at);
    const std::string type = file.substr(at + 4, 4);
    const std::string data = file.substr(at + 8, length);
    if (Checksum(type + data) != BigEndian(file, at + 8 + length)) return {};
    const std::size_t keyword_end = data.find('\0');
    if (type == "tEXt" || type == "iTXt") texts[data.substr(0, keyword_end)] = TextOf(type, data, keyword_end);
    at += kChunkFrameBytes + length;
  }
  return texts;
}

TiffFile DecodedTiff(const std::string& file) {
  constexpr int kWidth = 256, kHeight = 257, kStripOffsets = 273, kSamplesPerPixel = 277, kStripByteCounts = 279;
  constexpr int kExifDirectory = 34665;
  TiffFile tiff;
  if (file.substr(0, 4) != std::string("II*\0", 4)) return tiff;
  const TiffReader reader(file);
  reader.ReadDirectory(reader.Number(4, 4), tiff);
  reader.ReadDirectory(tiff.numbers.at(kExifDirectory).at(0), tiff);
  tiff.picture.width = static_cast<int>(tiff.numbers.at(kWidth).at(0));
  tiff.picture.height = static_cast<int>(tiff.numbers.at(kHeight).at(0));
  tiff.picture.channels = static_cast<int>(tiff.numbers.at(kSamplesPerPixel).at(0));
  const std::string pixels = file.substr(tiff.numbers.at(kStripOffsets).at(0), tiff.numbers.at(kStripByteCounts).at(0));
  tiff.picture.pixels.assign(pixels.begin(), pixels.end());
  return tiff;
}
