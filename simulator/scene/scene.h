// scene/scene.h
// What a simulated camera looks at, and the picture that its sensor makes of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace Simulator {

// Everything that decides about one frame. Positions and sizes count binned pixels; the area must lie on the binned
// sensor (sensor size divided by the binning, rounded down). What lies outside comes out as black.
struct Shot {
  // Values of VimbaC.h: Mono8, the four Bayer formats, RGB8, YUV422 (bytes U Y V Y, BT.601, full range; even widths).
  std::uint32_t pixel_format = 0x01080001;
  int offset_x = 0;
  int offset_y = 0;
  int width = 0;
  int height = 0;
  // Pixels averaged into one; averaging keeps the brightness and lowers the noise.
  int binning_x = 1;
  int binning_y = 1;
  // The signal is light * exposure * gain * balance, in linear light. At 10,000 us, 0 dB and balance 1 the chart's
  // patches have their published colours and its white is at nine tenths of saturation. 20 dB are a factor of ten.
  double exposure_us = 10000.0;
  double gain_db = 0.0;
  double balance_red = 1.0;
  double balance_blue = 1.0;
  // Shown by the chart's counter, modulo 1,000,000; part of the noise's seed.
  std::uint64_t frame_number = 0;
  // Camera time at the start of exposure: the chart's hand turns once in a second.
  double time_s = 0.0;
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

  // Writes the picture, rows from the top without padding: width * height * bytes per pixel of the format. [any
  // thread], also several at once. The first picture of a format and binning takes longer: the still parts are drawn
  // then and kept. An unknown format or a binning below 1 throws std::invalid_argument and leaves `out` as it was.
  //
  // A Bayer format names the colours of the sensor's top left corner: pixel (x, y) of the picture has the colour of
  // sensor pixel (offset_x + x, offset_y + y), so the picture's own phase equals its format's where both offsets are
  // even, as a colour camera's offset increments see to. Binned Bayer data keep that phase. A monochrome sensor has no
  // mosaic.
  virtual void Render(const Shot& shot, std::uint8_t* out) const = 0;

 protected:
  Scene() = default;
};

// The built-in test chart with moving hand and frame counter, drawn for this sensor size. `bayer_order` (0 BGGR, 1
// RGGB, 2 GBRG, 3 GRBG) is the sensor's own and told in the chart's legend. Throws std::invalid_argument for a size
// outside 1 to 32768.
std::shared_ptr<const Scene> MakeChartScene(int sensor_width, int sensor_height, bool colour, int bayer_order);

// A PNG or JPEG picture, scaled to cover the sensor, its middle in the middle; the sRGB values of the file are met at
// the default exposure. Throws std::runtime_error with the file's name and the reason when it cannot be read, is no
// such picture, has more than 100 million pixels, or has to cover a sensor of more than 715 million;
// std::invalid_argument as above.
std::shared_ptr<const Scene> MakePictureScene(const std::string& utf8_path, int sensor_width, int sensor_height,
                                              bool colour, int bayer_order);

}  // namespace Simulator
