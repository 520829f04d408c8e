// pixel_format_and_geometry.cpp
// Fitting the camera's image to the profile: pixel formats, binning, area of interest; and the colour-mode switch.
#include <algorithm>
#include <cwchar>
#include <limits>

#include "camera/profile_keys.h"
#include "camera/vimba_imaging_device_impl.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "stream/packet_size.h"
#include "vimba/feature_names.h"
#include "vimba/pixel_formats.h"
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
  Vimba::GetIntRange(camera, feature, min, max);
  return max;
}

// The profile's extent where it is a real part of the chip, else the whole.
std::int64_t ExtentWithin(std::int64_t wanted, std::int64_t whole) {
  return wanted > 0 && wanted < whole ? wanted : whole;
}

// A camera may claim any range; an image's sides are 32-bit numbers.
bool FitsImage(std::int64_t width, std::int64_t height) {
  constexpr std::int64_t kLongestSide = std::numeric_limits<std::int32_t>::max();
  return width > 0 && height > 0 && width <= kLongestSide && height <= kLongestSide;
}

std::int64_t PositionWithin(std::int64_t wanted, std::int64_t room) { return wanted > 0 ? std::min(wanted, room) : 0; }

}  // namespace

bool BVimbaImagingDeviceImpl::ReadSensorType() {
  BString type;
  m_is_color = Vimba::GetEnum(m_camera, Feature::kSensorType, type) == VmbErrorSuccess && !type.IEquals("Mono");
  return m_is_color;
}

bool BVimbaImagingDeviceImpl::InitPixelFormatAndGeometry(BLogCollector& log) {
  if (!SetPixelFormats(log) || !SetBinning()) return false;
  InitializeBandwidthRange(log);
  GVSPAdjustPacketSize(log, m_camera);
  return SetChipRectangle();
}

int BVimbaImagingDeviceImpl::BayerOrder() const {
  WString text;
  Profile()->ReadString(ProfileKey::kBayerType, text);
  return BayerOrderOf(text);
}

// A colour camera's mono format is its raw one: the host makes its grey image from the mosaic.
bool BVimbaImagingDeviceImpl::SetPixelFormats(BLogCollector& log) {
  m_mono_pixel_format = m_is_color ? BayerFormatName(BayerOrder()) : PixelFormatName::kMono8;
  if (Vimba::SetEnum(m_camera, Feature::kPixelFormat, m_mono_pixel_format.c_str()) != VmbErrorSuccess) {
    return Fail(L"ColorCodeMono failed");
  }
  if (m_is_color && !ProveColorFormat()) return false;
  BString format;
  if (Vimba::GetEnum(m_camera, Feature::kPixelFormat, format) == VmbErrorSuccess) {
    log << L"PixelFormat = " << ToWString(format).c_str() << L'\n';
  } else {
    log << L"VmbFeatureEnumGet PixelFormat failed" << L'\n';
  }
  m_pixel_format = m_mono_pixel_format;
  return true;
}

// Sets the colour format once, so that a camera that does not take it fails here and not in the first colour snap.
bool BVimbaImagingDeviceImpl::ProveColorFormat() {
  m_color_pixel_format = m_mono_pixel_format;
  WString color_code;
  Profile()->ReadString(ProfileKey::kColorCodeColor, color_code);
  if (color_code.IEquals(L"YUV")) m_color_pixel_format = PixelFormatName::kYuv422;
  if (color_code.IEquals(L"RGB")) m_color_pixel_format = PixelFormatName::kRgb8;
  if (Vimba::SetEnum(m_camera, Feature::kPixelFormat, m_color_pixel_format.c_str()) != VmbErrorSuccess) {
    return Fail(L"ColorCodeColor failed");
  }
  Profile()->ReadBool(ProfileKey::kYuvStretch, m_yuv_stretch, false);
  Vimba::SetEnum(m_camera, Feature::kPixelFormat, m_mono_pixel_format.c_str());
  return true;
}

bool BVimbaImagingDeviceImpl::SetBinning() {
  WString text;
  Profile()->ReadString(ProfileKey::kBinning, text, L"1");
  m_binning_horizontal = std::wcstol(text.c_str(), nullptr, 10);
  m_binning_vertical = m_binning_horizontal;
  return SetOneBinning(m_camera, Feature::kBinningHorizontal, m_binning_horizontal, L"BinningX failed") &&
         SetOneBinning(m_camera, Feature::kBinningVertical, m_binning_vertical, L"BinningY failed");
}

bool BVimbaImagingDeviceImpl::SetChipRectangle() {
  const std::int64_t max_width = LargestValue(m_camera, Feature::kWidth);
  const std::int64_t max_height = LargestValue(m_camera, Feature::kHeight);
  const auto aoi = [this](NBoard::CAMAOIVALUE index) {
    int value = 0;
    ReadIntKey(NBoard::CamAOIValueString(index), value, 0);
    return std::int64_t{value};
  };
  const std::int64_t width = ExtentWithin(aoi(NBoard::eAoiWidth), max_width);
  const std::int64_t height = ExtentWithin(aoi(NBoard::eAoiHeight), max_height);
  const std::int64_t x = PositionWithin(aoi(NBoard::eAoiX), max_width - width);
  const std::int64_t y = PositionWithin(aoi(NBoard::eAoiY), max_height - height);
  // From the corner any size fits.
  Vimba::SetInt(m_camera, Feature::kOffsetX, 0);
  Vimba::SetInt(m_camera, Feature::kOffsetY, 0);
  const bool set = Vimba::SetInt(m_camera, Feature::kWidth, width) == VmbErrorSuccess &&
                   Vimba::SetInt(m_camera, Feature::kHeight, height) == VmbErrorSuccess &&
                   Vimba::SetInt(m_camera, Feature::kOffsetX, x) == VmbErrorSuccess &&
                   Vimba::SetInt(m_camera, Feature::kOffsetY, y) == VmbErrorSuccess;
  if (!set || !FitsImage(width, height)) return Fail(L"ChipRect failed");
  m_image_offset = {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
  m_image_size = {static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
  return true;
}

bool BVimbaImagingDeviceImpl::SetColorMode(bool on) {
  if (!m_is_color || m_continuous_mode) return true;
  m_color_mode_on = on;
  return on ? ApplyColorMode(m_color_pixel_format, m_color_balance, true)
            : ApplyColorMode(m_mono_pixel_format, m_mono_balance, false);
}

bool BVimbaImagingDeviceImpl::ApplyColorMode(const BString& format, const WhiteBalance& balance, bool color) {
  if (m_pixel_format != format) {
    if (Vimba::SetEnum(m_camera, Feature::kPixelFormat, format.c_str()) != VmbErrorSuccess) {
      return Fail(L"ColorCodeColor failed");
    }
    m_pixel_format = format;
  }
  if (m_current_balance.blue != balance.blue) SetWhiteBalanceBlue(balance.blue, color);
  if (m_current_balance.red != balance.red) SetWhiteBalanceRed(balance.red, color);
  return true;
}
