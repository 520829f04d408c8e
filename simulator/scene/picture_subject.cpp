// scene/picture_subject.cpp
// A picture of the user's as what the camera sees.
#include "scene/picture_subject.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <stdexcept>

#include "scene/tone_curve.h"

#define STBI_NO_STDIO
#include <stb/stb_image.h>
#include <stb/stb_image_resize.h>

namespace Simulator {
namespace {

constexpr std::int64_t kMostPixels = 100'000'000;
// The library that scales the picture counts the bytes of its result in int.
constexpr std::int64_t kMostSensorPixels = std::numeric_limits<int>::max() / 3;
constexpr std::uintmax_t kMostFileBytes = 512u << 20;

struct FreePixels {
  void operator()(stbi_uc* pixels) const { stbi_image_free(pixels); }
};
using Pixels = std::unique_ptr<stbi_uc, FreePixels>;

[[noreturn]] void Fail(const std::string& utf8_path, const std::string& reason) {
  throw std::runtime_error("picture " + utf8_path + ": " + reason);
}

std::vector<stbi_uc> ReadFile(const std::string& utf8_path) {
  const std::filesystem::path path(std::u8string(utf8_path.begin(), utf8_path.end()));
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error) Fail(utf8_path, "cannot be read: " + error.message());
  if (size > kMostFileBytes) Fail(utf8_path, "is larger than 512 MiB");
  std::vector<stbi_uc> bytes(static_cast<std::size_t>(size));
  std::ifstream file(path, std::ios::binary);
  if (!file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()))) {
    Fail(utf8_path, "cannot be read");
  }
  return bytes;
}

bool IsMarkedAsPicture(const std::vector<stbi_uc>& bytes) {
  constexpr std::array<stbi_uc, 4> kPng{0x89, 'P', 'N', 'G'};
  constexpr std::array<stbi_uc, 3> kJpeg{0xFF, 0xD8, 0xFF};
  const auto starts_with = [&bytes](const auto& mark) {
    return bytes.size() >= mark.size() && std::equal(mark.begin(), mark.end(), bytes.begin());
  };
  return starts_with(kPng) || starts_with(kJpeg);
}

// The picture's middle part that has the sensor's proportions, scaled to the sensor's size.
std::vector<std::uint8_t> Cover(const Pixels& pixels, int width, int height, int sensor_width, int sensor_height) {
  const double scale = std::max(static_cast<double>(sensor_width) / width, static_cast<double>(sensor_height) / height);
  const auto part_x = static_cast<float>(0.5 * sensor_width / (scale * width));
  const auto part_y = static_cast<float>(0.5 * sensor_height / (scale * height));
  std::vector<std::uint8_t> covering(static_cast<std::size_t>(sensor_width) * static_cast<std::size_t>(sensor_height) *
                                     3);
  // The first filter is exact where nothing is scaled. The second, smoother one keeps fine patterns from ringing when
  // pixels melt together.
  const stbir_filter filter = scale >= 1.0 ? STBIR_FILTER_CATMULLROM : STBIR_FILTER_MITCHELL;
  const int done =
      stbir_resize_region(pixels.get(), width, height, 0, covering.data(), sensor_width, sensor_height, 0,
                          STBIR_TYPE_UINT8, 3, STBIR_ALPHA_CHANNEL_NONE, 0, STBIR_EDGE_CLAMP, STBIR_EDGE_CLAMP, filter,
                          filter, STBIR_COLORSPACE_SRGB, nullptr, std::max(0.0f, 0.5f - part_x),
                          std::max(0.0f, 0.5f - part_y), std::min(1.0f, 0.5f + part_x), std::min(1.0f, 0.5f + part_y));
  if (done == 0) throw std::bad_alloc();
  return covering;
}

std::vector<std::uint8_t> LoadPicture(const std::string& utf8_path, int sensor_width, int sensor_height) {
  if (static_cast<std::int64_t>(sensor_width) * sensor_height > kMostSensorPixels) {
    Fail(utf8_path, "cannot cover a sensor of " + std::to_string(sensor_width) + " x " + std::to_string(sensor_height) +
                        " pixels, more than " + std::to_string(kMostSensorPixels));
  }
  const std::vector<stbi_uc> bytes = ReadFile(utf8_path);
  const int size = static_cast<int>(bytes.size());
  int width = 0;
  int height = 0;
  int channels = 0;
  if (stbi_info_from_memory(bytes.data(), size, &width, &height, &channels) == 0) {
    Fail(utf8_path,
         IsMarkedAsPicture(bytes) ? "has a damaged head or absurd dimensions" : "is neither a PNG nor a JPEG picture");
  }
  if (static_cast<std::int64_t>(width) * height > kMostPixels) {
    Fail(utf8_path, "has " + std::to_string(width) + " x " + std::to_string(height) + " pixels, more than 100 million");
  }
  const Pixels pixels(stbi_load_from_memory(bytes.data(), size, &width, &height, &channels, 3));
  if (!pixels) Fail(utf8_path, std::string("cannot be decoded: ") + stbi_failure_reason());
  return Cover(pixels, width, height, sensor_width, sensor_height);
}

}  // namespace

PictureSubject::PictureSubject(const std::string& utf8_path, int sensor_width, int sensor_height)
    : m_width(sensor_width), m_height(sensor_height), m_pixels(LoadPicture(utf8_path, sensor_width, sensor_height)) {}

void PictureSubject::Paint(Canvas& canvas) const {
  for (int y = canvas.Top(); y < canvas.Top() + canvas.Height(); ++y) {
    const std::size_t start =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(canvas.Left());
    std::transform(
        m_pixels.begin() + static_cast<std::ptrdiff_t>(3 * start),
        m_pixels.begin() + static_cast<std::ptrdiff_t>(3 * (start + static_cast<std::size_t>(canvas.Width()))),
        canvas.Row(y), LightOfCode);
  }
}

std::vector<MovingPart> PictureSubject::MovingParts(std::uint64_t, Seconds) const { return {}; }

}  // namespace Simulator
