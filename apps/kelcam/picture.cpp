// picture.cpp
// Pictures as files: PNG, and the plain binary PGM and PPM.
#include "picture.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <vector>

#include "failure.h"
#include "utf8.h"

// Files are opened here, not there: their names need care where file names are wide.
#define STBI_WRITE_NO_STDIO
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include "stb/stb_image_write.h"

namespace Kelcam {
namespace {

constexpr std::string_view kNumberMark = "%d";

PictureFormat FormatByEnding(const std::string& pattern) {
  std::string ending = Utf8(Path(pattern).extension());
  std::transform(ending.begin(), ending.end(), ending.begin(), [](unsigned char c) { return std::tolower(c); });
  if (ending == ".png") return PictureFormat::kPng;
  if (ending == ".pgm") return PictureFormat::kPgm;
  if (ending == ".ppm") return PictureFormat::kPpm;
  throw UsageError("-o " + pattern + ": not a .png, .pgm or .ppm file");
}

}  // namespace

FilePattern::FilePattern(const std::string& pattern, int pictures)
    : m_pattern(pattern), m_format(FormatByEnding(pattern)) {
  if (pictures > 1 && pattern.find(kNumberMark) == std::string::npos) {
    throw UsageError("-o " + pattern + ": " + std::to_string(pictures) +
                     " pictures need a %d in the name for their numbers");
  }
}

std::filesystem::path FilePattern::File(int number) const {
  const std::string digits = std::to_string(number);
  std::string file = m_pattern;
  for (std::size_t at = 0; (at = file.find(kNumberMark, at)) != std::string::npos; at += digits.size()) {
    file.replace(at, kNumberMark.size(), digits);
  }
  return Path(file);
}

void CheckFolder(const std::filesystem::path& file) {
  const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) {
    throw Failure("the picture " + Utf8(file) + " cannot be written: there is no folder " + Utf8(folder));
  }
}

namespace {

// An image's rows, whichever kind it is.
struct Pixels {
  const std::uint8_t* first_row;
  std::size_t line_length_bytes;
  BSize size;
  std::size_t channels;
};

Pixels PixelsOf(BBaseAoi& area) {
  if (const BImage8u* mono = area.Mono(); mono && mono->Size().height > 0) {
    return {mono->Row(0), mono->LineLength(), mono->Size(), 1};
  }
  if (const BImageRgb* rgb = area.Rgb(); rgb && rgb->Size().height > 0) {
    return {rgb->Row(0), rgb->LineLength(), rgb->Size(), BImageRgb::kChannels};
  }
  throw Failure("the driver delivered no picture");
}

std::vector<std::uint8_t> EncodePng(const Pixels& pixels) {
  std::vector<std::uint8_t> file;
  const auto append = [](void* context, void* data, int size) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    auto* target = static_cast<std::vector<std::uint8_t>*>(context);
    target->insert(target->end(), bytes, bytes + size);
  };
  if (!stbi_write_png_to_func(append, &file, pixels.size.width, pixels.size.height, static_cast<int>(pixels.channels),
                              pixels.first_row, static_cast<int>(pixels.line_length_bytes))) {
    throw Failure("not enough memory for the picture");
  }
  return file;
}

// PGM (channels 1) and PPM (channels 3) differ in their first letters and in how often they repeat a grey value.
std::vector<std::uint8_t> EncodePlain(const Pixels& pixels, std::size_t channels) {
  if (pixels.channels > channels) throw Failure("a .pgm file cannot hold a colour picture");
  const std::string head = (channels == 1 ? "P5\n" : "P6\n") + std::to_string(pixels.size.width) + " " +
                           std::to_string(pixels.size.height) + "\n255\n";
  std::vector<std::uint8_t> file(head.begin(), head.end());
  const std::size_t row_bytes = static_cast<std::size_t>(pixels.size.width) * pixels.channels;
  const std::size_t copies = channels / pixels.channels;
  file.reserve(head.size() + row_bytes * copies * static_cast<std::size_t>(pixels.size.height));
  const std::uint8_t* row = pixels.first_row;
  for (int y = 0; y < pixels.size.height; ++y, row += pixels.line_length_bytes) {
    if (copies == 1) {
      file.insert(file.end(), row, row + row_bytes);
    } else {
      for (std::size_t x = 0; x < row_bytes; ++x) file.insert(file.end(), copies, row[x]);
    }
  }
  return file;
}

std::vector<std::uint8_t> Encode(BBaseAoi& area, PictureFormat format) {
  const Pixels pixels = PixelsOf(area);
  if (format == PictureFormat::kPng) return EncodePng(pixels);
  return EncodePlain(pixels, format == PictureFormat::kPgm ? 1 : BImageRgb::kChannels);
}

// Removed unless it gets its final name: a picture appears under that name only when it is whole.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(const std::filesystem::path& final_name) : m_final_name(final_name), m_name(final_name) {
    m_name += ".unfinished";
  }
  ~UnfinishedFile() {
    std::error_code ignored;
    if (!m_finished) std::filesystem::remove(m_name, ignored);
  }
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  void Write(const std::vector<std::uint8_t>& bytes) {
    errno = 0;
    std::ofstream file(m_name, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) Fail(std::strerror(errno));
    std::error_code error;
    std::filesystem::rename(m_name, m_final_name, error);
    if (error) Fail(error.message());
    m_finished = true;
  }

 private:
  [[noreturn]] void Fail(const std::string& reason) const {
    throw Failure("the picture " + Utf8(m_final_name) + " cannot be written: " + reason);
  }

  std::filesystem::path m_final_name;
  std::filesystem::path m_name;
  bool m_finished = false;
};

}  // namespace

void WritePicture(BBaseAoi& area, PictureFormat format, const std::filesystem::path& file) {
  const std::vector<std::uint8_t> bytes = Encode(area, format);
  UnfinishedFile(file).Write(bytes);
}

}  // namespace Kelcam
