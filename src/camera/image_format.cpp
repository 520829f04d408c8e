// image_format.cpp
// What the camera's image is made to be: pixel formats, binning, area of interest.
#include "camera/image_format.h"

#include <algorithm>
#include <cwchar>
#include <tuple>

#include "VimbaC.h"
#include "bcolorconverter.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "iprofile.h"
#include "nboard.h"
#include "profile/profile_integer.h"
#include "profile/profile_keys.h"
#include "vimba/feature_names.h"
#include "vimba/pixel_formats.h"
#include "vimba/vimba_camera.h"
#include "vimba/vimba_features.h"

namespace {

bool Fail(const wchar_t* notice) {
  ImagingDevice::ShowInfo(notice, L"!");
  return false;
}

// Cameras without binning are let through; they show the notice all the same.
bool SetOneBinning(VmbHandle_t camera, const char* feature, std::int64_t binning, const wchar_t* notice) {
  const VmbError_t code = Vimba::SetInt(camera, feature, binning);
  if (code == VmbErrorSuccess) return true;
  ImagingDevice::ShowInfo(notice, L"!");
  return code == VmbErrorNotFound;
}

std::int64_t LargestValue(VmbHandle_t camera, const char* feature) {
  std::int64_t min = 0;
  std::int64_t max = 0;
  std::ignore = Vimba::GetIntRange(camera, feature, min, max);
  return max;
}

// The profile's extent where it is a real part of the chip, else the whole.
std::int64_t ExtentWithin(std::int64_t wanted, std::int64_t whole) {
  return wanted > 0 && wanted < whole ? wanted : whole;
}

std::int64_t PositionWithin(std::int64_t wanted, std::int64_t room) { return wanted > 0 ? std::min(wanted, room) : 0; }

// A camera may claim any range. No sensor has longer sides; an image of such a claim would have no memory.
bool IsBelievable(std::int64_t width, std::int64_t height) {
  constexpr std::int64_t kLongestSide = 65'536;
  return width > 0 && height > 0 && width <= kLongestSide && height <= kLongestSide;
}

}  // namespace

bool ImageFormat::ReadSensorType() {
  BString type;
  m_is_color = Vimba::GetEnum(m_camera.Handle(), Feature::kSensorType, type) == VmbErrorSuccess &&
               !type.IEquals(FeatureEntry::kMono);
  return m_is_color;
}

// A colour camera's mono format is its raw one: the host makes its grey image from the mosaic.
bool ImageFormat::SetPixelFormats(const IProfile& profile, BLogCollector& log) {
  m_mono_pixel_format = PixelFormatName::kMono8;
  if (m_is_color) {
    WString bayer_type;
    profile.ReadString(ProfileKey::kBayerType, bayer_type);
    m_bayer_order = BayerOrderOf(bayer_type);
    m_mono_pixel_format = BayerFormatName(m_bayer_order);
  }
  if (Vimba::SetEnum(m_camera.Handle(), Feature::kPixelFormat, m_mono_pixel_format.c_str()) != VmbErrorSuccess) {
    return Fail(L"ColorCodeMono failed");
  }
  if (m_is_color && !ProveColorFormat(profile)) return false;
  BString format;
  if (Vimba::GetEnum(m_camera.Handle(), Feature::kPixelFormat, format) == VmbErrorSuccess) {
    log << L"PixelFormat = " << ToWString(format).c_str() << L'\n';
  } else {
    log << L"VmbFeatureEnumGet PixelFormat failed" << L'\n';
  }
  m_pixel_format = m_mono_pixel_format;
  return true;
}

// Sets the colour format once, so that a camera that does not take it fails here and not in the first colour snap.
bool ImageFormat::ProveColorFormat(const IProfile& profile) {
  m_color_pixel_format = m_mono_pixel_format;
  WString color_code;
  profile.ReadString(ProfileKey::kColorCodeColor, color_code);
  if (color_code.IEquals(L"YUV")) m_color_pixel_format = PixelFormatName::kYuv422;
  if (color_code.IEquals(L"RGB")) m_color_pixel_format = PixelFormatName::kRgb8;
  if (Vimba::SetEnum(m_camera.Handle(), Feature::kPixelFormat, m_color_pixel_format.c_str()) != VmbErrorSuccess) {
    return Fail(L"ColorCodeColor failed");
  }
  profile.ReadBool(ProfileKey::kYuvStretch, m_yuv_stretch, false);
  std::ignore = Vimba::SetEnum(m_camera.Handle(), Feature::kPixelFormat, m_mono_pixel_format.c_str());
  return true;
}

bool ImageFormat::SetBinning(const IProfile& profile) {
  WString text;
  profile.ReadString(ProfileKey::kBinning, text, L"1");
  m_binning_horizontal = std::wcstol(text.c_str(), nullptr, 10);
  m_binning_vertical = m_binning_horizontal;
  return SetOneBinning(m_camera.Handle(), Feature::kBinningHorizontal, m_binning_horizontal, L"BinningX failed") &&
         SetOneBinning(m_camera.Handle(), Feature::kBinningVertical, m_binning_vertical, L"BinningY failed");
}

bool ImageFormat::SetChipRectangle(const IProfile& profile) {
  const VmbHandle_t camera = m_camera.Handle();
  const std::int64_t max_width = LargestValue(camera, Feature::kWidth);
  const std::int64_t max_height = LargestValue(camera, Feature::kHeight);
  const auto aoi = [&](NBoard::CAMAOIVALUE index) {
    return std::int64_t{ReadInteger(profile, NBoard::CamAOIValueString(index)).value_or(0)};
  };
  const std::int64_t width = ExtentWithin(aoi(NBoard::eAoiWidth), max_width);
  const std::int64_t height = ExtentWithin(aoi(NBoard::eAoiHeight), max_height);
  const std::int64_t x = PositionWithin(aoi(NBoard::eAoiX), max_width - width);
  const std::int64_t y = PositionWithin(aoi(NBoard::eAoiY), max_height - height);
  if (!IsBelievable(width, height)) return Fail(L"ChipRect failed");
  // From the corner any size fits.
  std::ignore = Vimba::SetInt(camera, Feature::kOffsetX, 0);
  std::ignore = Vimba::SetInt(camera, Feature::kOffsetY, 0);
  const bool set = Vimba::SetInt(camera, Feature::kWidth, width) == VmbErrorSuccess &&
                   Vimba::SetInt(camera, Feature::kHeight, height) == VmbErrorSuccess &&
                   Vimba::SetInt(camera, Feature::kOffsetX, x) == VmbErrorSuccess &&
                   Vimba::SetInt(camera, Feature::kOffsetY, y) == VmbErrorSuccess;
  if (!set) return Fail(L"ChipRect failed");
  m_image_offset = {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
  m_image_size = {static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
  return true;
}

bool ImageFormat::SetColorMode(bool on) {
  m_color_mode_on = on;
  const BString& format = on ? m_color_pixel_format : m_mono_pixel_format;
  if (m_pixel_format == format) return true;
  if (Vimba::SetEnum(m_camera.Handle(), Feature::kPixelFormat, format.c_str()) != VmbErrorSuccess) {
    return Fail(L"ColorCodeColor failed");
  }
  m_pixel_format = format;
  return true;
}

BSmartRef<BColorConverter> ImageFormat::MakeColorConverter() const {
  return m_is_color ? new BColorConverter(m_image_size, m_bayer_order, 0) : nullptr;
}
