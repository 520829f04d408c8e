// image_format.h
// What the camera's image is made to be: pixel formats, binning, area of interest.
#pragma once

#include <cstdint>

#include "bpoint.h"
#include "bsize.h"
#include "bsmartref.h"
#include "bstring.h"

class BColorConverter;
class BLogCollector;
class IProfile;
class VimbaCamera;

// Set up once while a device is initialized, in the order of the declarations; from then on only the colour mode
// switches between the two formats. A step that fails shows its notice and leaves what was set before. [host thread]
class ImageFormat {
 public:
  // The camera must outlive this object.
  explicit ImageFormat(const VimbaCamera& camera) : m_camera(camera) {}
  ImageFormat(const ImageFormat&) = delete;
  ImageFormat& operator=(const ImageFormat&) = delete;

  // Whether the sensor sees colours. A camera that does not report its sensor counts as monochrome.
  bool ReadSensorType();
  // Chooses the formats of mono and of colour mode, proves that the camera takes both, and leaves it in that of mono
  // mode.
  [[nodiscard]] bool SetPixelFormats(const IProfile& profile, BLogCollector& log);
  [[nodiscard]] bool SetBinning(const IProfile& profile);
  [[nodiscard]] bool SetChipRectangle(const IProfile& profile);

  // Switches to the format of colour mode, or of mono mode, unless the camera has it already.
  [[nodiscard]] bool SetColorMode(bool on);

  bool IsColor() const { return m_is_color; }
  // Of the area of interest, in pixels.
  const BSize& ImageSize() const { return m_image_size; }
  bool YuvStretch() const { return m_yuv_stretch; }
  // For images of this size and this camera's mosaic. A monochrome camera has none.
  BSmartRef<BColorConverter> MakeColorConverter() const;

 private:
  bool ProveColorFormat(const IProfile& profile);

  const VimbaCamera& m_camera;
  bool m_is_color = false;
  // As the host's colour converter numbers them.
  int m_bayer_order = 0;
  BString m_mono_pixel_format;
  BString m_color_pixel_format;
  // The one last set on the camera.
  BString m_pixel_format;
  bool m_yuv_stretch = false;
  BSize m_image_size;
  // What was set last, for whoever looks at a device in a debugger; nothing reads it.
  bool m_color_mode_on = false;
  std::int64_t m_binning_horizontal = 1;
  std::int64_t m_binning_vertical = 1;
  BPoint m_image_offset;
};
