// scene/picture_scene_test.cpp
// A PNG or JPEG picture in front of the camera.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>

#include "unit/scene/shots.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#include <stb/stb_image_write.h>

namespace SceneTest {
namespace {

// A file in a folder of its own, removed with it.
class PictureFile {
 public:
  explicit PictureFile(const std::string& name)
      : m_folder(std::filesystem::temp_directory_path() / ("scene-test-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(m_folder);
    m_file = m_folder / std::filesystem::path(std::u8string(name.begin(), name.end()));
  }
  ~PictureFile() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }
  PictureFile(const PictureFile&) = delete;
  PictureFile& operator=(const PictureFile&) = delete;

  std::string Utf8Path() const {
    const std::u8string path = m_file.u8string();
    return std::string(path.begin(), path.end());
  }

  void Write(const Bytes& bytes) const {
    std::ofstream(m_file, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }

 private:
  std::filesystem::path m_folder;
  std::filesystem::path m_file;
};

void Append(void* bytes, void* data, int size) {
  const auto* first = static_cast<const std::uint8_t*>(data);
  static_cast<Bytes*>(bytes)->insert(static_cast<Bytes*>(bytes)->end(), first, first + size);
}

Bytes Png(const Bytes& pixels, int width, int height, int channels) {
  Bytes file;
  stbi_write_png_to_func(Append, &file, width, height, channels, pixels.data(), width * channels);
  return file;
}

// Red and green above blue and yellow.
constexpr std::array<Rgb, 4> kQuarters{{{200, 30, 40}, {20, 160, 60}, {40, 60, 190}, {230, 210, 50}}};

Bytes Quarters(int width, int height) {
  Bytes pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const std::size_t row = 2 * y >= height ? 2 : 0;
      const std::size_t column = 2 * x >= width ? 1 : 0;
      for (const int value : kQuarters[row + column]) pixels.push_back(static_cast<std::uint8_t>(value));
    }
  }
  return pixels;
}

void ExpectQuarters(const Simulator::Scene& scene, int width, int height, int tolerance) {
  const Simulator::Shot shot = WholeShot(VmbPixelFormatRgb8, width, height);
  const Bytes picture = Take(scene, shot);
  for (std::size_t quarter = 0; quarter < 4; ++quarter) {
    const int x = quarter % 2 == 0 ? width / 4 : width * 3 / 4;
    const int y = quarter / 2 == 0 ? height / 4 : height * 3 / 4;
    const Rgb pixel = PixelAt(picture, shot, x, y);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(pixel[i], kQuarters[quarter][i], tolerance) << quarter;
  }
}

std::shared_ptr<const Simulator::Scene> ColourPicture(const PictureFile& file, int sensor_width, int sensor_height) {
  return Simulator::MakePictureScene(file.Utf8Path(), sensor_width, sensor_height, true);
}

std::shared_ptr<const Simulator::Scene> MonoPicture(const PictureFile& file, int sensor_width, int sensor_height) {
  return Simulator::MakePictureScene(file.Utf8Path(), sensor_width, sensor_height, false);
}

std::string FailureOf(const std::string& path, int sensor_width = 64, int sensor_height = 48) {
  try {
    Simulator::MakePictureScene(path, sensor_width, sensor_height, true);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no failure";
}

TEST(PictureScene, PngOfTheSensorsSizeComesOutPixelByPixel) {
  const PictureFile file("Prüfbild 検査.png");
  const Bytes pixels = Quarters(64, 48);
  file.Write(Png(pixels, 64, 48, 3));

  const auto scene = ColourPicture(file, 64, 48);

  EXPECT_EQ(Take(*scene, WholeShot(VmbPixelFormatRgb8, 64, 48)), pixels);
}

TEST(PictureScene, LargerAndSmallerPicturesAreScaled) {
  const PictureFile file("quarters.png");
  for (const int size : {40, 64, 333}) {
    file.Write(Png(Quarters(size, size), size, size, 3));

    ExpectQuarters(*ColourPicture(file, 128, 128), 128, 128, 2);
  }
}

TEST(PictureScene, PictureOfOtherProportionsCoversTheSensorFromItsMiddle) {
  const PictureFile file("wide.png");
  file.Write(Png(Quarters(300, 100), 300, 100, 3));

  const auto scene = ColourPicture(file, 96, 96);

  // Its left and right thirds are cut off: the quarters still meet in the middle.
  ExpectQuarters(*scene, 96, 96, 2);
}

TEST(PictureScene, JpegIsReadToo) {
  const PictureFile file("picture.jpg");
  Bytes jpeg;
  const Bytes pixels = Quarters(64, 64);
  stbi_write_jpg_to_func(Append, &jpeg, 64, 64, 3, pixels.data(), 95);
  file.Write(jpeg);

  const auto scene = ColourPicture(file, 64, 64);

  ExpectQuarters(*scene, 64, 64, 8);
}

TEST(PictureScene, GreyPictureIsReadToo) {
  const PictureFile file("grey.png");
  file.Write(Png(Bytes(100, 90), 10, 10, 1));

  const auto scene = MonoPicture(file, 16, 16);

  EXPECT_EQ(Take(*scene, WholeShot(VmbPixelFormatMono8, 16, 16)), Bytes(256, 90));
}

TEST(PictureScene, ExposureActsOnThePictureInLinearLight) {
  const PictureFile file("grey.png");
  file.Write(Png(Bytes(256, 180), 16, 16, 1));
  const auto scene = MonoPicture(file, 16, 16);
  Simulator::Shot shot = WholeShot(VmbPixelFormatMono8, 16, 16);

  shot.exposure = Simulator::kDefaultExposure / 2;

  EXPECT_NEAR(Linear(Take(*scene, shot)[0]), Linear(180) / 2, 0.003);
}

TEST(PictureScene, MissingFileIsNamed) {
  const std::string message = FailureOf("/nowhere/ä/picture.png");

  EXPECT_THAT(message, testing::StartsWith("picture /nowhere/ä/picture.png: cannot be read: "));
}

TEST(PictureScene, FileThatIsNoPictureIsNamed) {
  const PictureFile file("notes.png");
  for (const Bytes& content : {Bytes(200, 'x'), Bytes{}}) {
    file.Write(content);

    EXPECT_EQ(FailureOf(file.Utf8Path()), "picture " + file.Utf8Path() + ": is neither a PNG nor a JPEG picture");
  }
}

TEST(PictureScene, TornPictureIsNamed) {
  const PictureFile file("torn.png");
  Bytes png = Png(Quarters(64, 48), 64, 48, 3);
  png.resize(60);
  file.Write(png);

  const std::string message = FailureOf(file.Utf8Path());

  EXPECT_THAT(message, testing::StartsWith("picture " + file.Utf8Path() + ": cannot be decoded: "));
}

// A picture of one pixel whose head claims other dimensions. Each has four bytes, behind the signature and the head of
// the first chunk; only the given three of them are changed.
Bytes PngThatClaims(const std::array<std::uint8_t, 3>& dimension) {
  Bytes png = Png(Bytes(3, 0), 1, 1, 3);
  for (const std::ptrdiff_t at : {16, 20}) std::copy(dimension.begin(), dimension.end(), png.begin() + at + 1);
  return png;
}

TEST(PictureScene, TooManyPixelsAreRefusedBeforeDecoding) {
  const PictureFile file("huge.png");
  file.Write(PngThatClaims({0x00, 0x2E, 0xE0}));

  EXPECT_EQ(FailureOf(file.Utf8Path()),
            "picture " + file.Utf8Path() + ": has 12000 x 12000 pixels, more than 100 million");
}

TEST(PictureScene, AbsurdDimensionsAreRefusedBeforeDecoding) {
  const PictureFile file("absurd.png");
  file.Write(PngThatClaims({0xFF, 0x2E, 0xE0}));

  EXPECT_EQ(FailureOf(file.Utf8Path()), "picture " + file.Utf8Path() + ": has a damaged head or absurd dimensions");
}

TEST(PictureScene, SensorTooLargeToCoverIsRefusedWithItsSize) {
  const PictureFile file("small.png");
  file.Write(Png(Bytes(3, 0), 1, 1, 3));

  const std::string message = FailureOf(file.Utf8Path(), 32768, 21846);

  EXPECT_EQ(message,
            "picture " + file.Utf8Path() + ": cannot cover a sensor of 32768 x 21846 pixels, more than 715827882");
}

}  // namespace
}  // namespace SceneTest
