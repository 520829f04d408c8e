// scene/scene.h
// What a simulated camera looks at, and the picture that its sensor makes of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "VimbaC.h"
#include "scene/bayer_order.h"
#include "scene/times.h"

namespace Simulator {

// At this exposure, 0 dB and balance 1 the chart's patches have their published colours, and its white is at nine
// tenths of saturation.
inline constexpr Microseconds kDefaultExposure{10'000.0};

// Everything that decides about one frame. Positions and sizes count binned pixels. The area must lie on the binned
// sensor (sensor size divided by the binning, rounded down); pixels outside it are black.
struct Shot {
  // Mono8, one of the four Bayer formats, RGB8 or YUV422 (bytes U Y V Y, BT.601, full range; even widths).
  VmbPixelFormat_t pixel_format = VmbPixelFormatMono8;
  int offset_x = 0;
  int offset_y = 0;
  int width = 0;
  int height = 0;
  // So many pixels are averaged into one, which keeps the brightness and lowers the noise.
  int binning_x = 1;
  int binning_y = 1;
  // The signal is light * exposure * gain * balance, in linear light. 20 dB are a factor of ten.
  Microseconds exposure = kDefaultExposure;
  double gain_db = 0.0;
  double balance_red = 1.0;
  double balance_blue = 1.0;
  // Shown by the chart's counter, modulo 1,000,000; part of the noise's seed.
  std::uint64_t frame_number = 0;
  // Camera time at the start of exposure: the chart's hand turns once in a second.
  Seconds time{};
  std::uint64_t seed = 0;
  // Photon and read noise. Without it equal light gives equal bytes.
  bool noise = true;
};

// One view of one sensor. The camera's output stage is the sRGB curve: eight-bit data look right on a screen, while
// exposure, gain and white balance act on linear light before it. Same arguments, same bytes, on every platform.
class Scene {
 public:
  virtual ~Scene() = default;
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  // Writes the picture: width * height pixels of the format, rows from the top, without padding. The first picture of a
  // format and binning takes longer, because the still parts are drawn then and kept. An unknown format or a binning
  // below 1 throws std::invalid_argument and leaves `out` as it was. [any thread], also several at once.
  //
  // A Bayer format names the colours of the sensor's top left corner. Pixel (x, y) of the picture has the colour of
  // sensor pixel (offset_x + x, offset_y + y), so the picture begins with the format's own pattern where both offsets
  // are even. Binned Bayer data keep the pattern. A monochrome sensor has no mosaic.
  virtual void Render(const Shot& shot, std::uint8_t* out) const = 0;

 protected:
  Scene() = default;
};

// The built-in test chart with moving hand and frame counter, drawn for this sensor size. The chart's legend names
// `bayer_order`, the order of a colour sensor. Throws std::invalid_argument for a size outside 1 to 32768.
std::shared_ptr<const Scene> MakeChartScene(int sensor_width, int sensor_height, bool colour, BayerOrder bayer_order);

// A PNG or JPEG picture, scaled to cover the sensor, its middle in the middle. At the default exposure the camera gives
// the file's sRGB values. Throws std::runtime_error with the file's name and the reason when it cannot be read, is no
// such picture, has more than 100 million pixels, or has to cover a sensor of more than 715 million. Throws
// std::invalid_argument as above.
std::shared_ptr<const Scene> MakePictureScene(const std::string& utf8_path, int sensor_width, int sensor_height,
                                              bool colour);

// Every frame is even grey, its upper and its lower half alike in all colours: what is copied from it still says which
// frame it was. The halves are the two digits of the frame number, the lower digit above, to this base.
inline constexpr int kNumberSceneBase = 200;
// The grey value of the digit 0, so that no digit is black or white.
inline constexpr int kNumberSceneDark = 28;
std::shared_ptr<const Scene> MakeNumberScene();

}  // namespace Simulator
