// stream_rate.cpp
// The rate at which one camera streams: its range, and what it learns from snaps. Bytes per second.
#include "stream/stream_rate.h"

#include <algorithm>
#include <locale>
#include <optional>
#include <sstream>
#include <tuple>

#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "profile/profile_integer.h"
#include "profile/profile_keys.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_camera.h"
#include "vimba/vimba_features.h"

namespace {

constexpr double kAfterFailure = -0.1;
constexpr double kAfterSuccess = 0.02;
constexpr std::int32_t kFailuresUntilReset = 3;

}  // namespace

StreamRate::StreamRate(const VimbaCamera& camera, BRecursiveMutex& snap_mutex)
    : m_camera(camera), m_snap_mutex(snap_mutex) {}

std::int64_t StreamRate::GetBandwidth() const {
  std::int64_t rate = 0;
  std::ignore = Vimba::GetInt(m_camera.Handle(), Feature::kStreamBytesPerSecond, rate);
  return rate;
}

VmbError_t StreamRate::SetBandwidth(std::int64_t bytes_per_s) {
  std::int64_t current = 0;
  VmbError_t code = Vimba::GetInt(m_camera.Handle(), Feature::kStreamBytesPerSecond, current);
  if (code != VmbErrorSuccess || current == bytes_per_s) return code;
  code = Vimba::SetInt(m_camera.Handle(), Feature::kStreamBytesPerSecond, bytes_per_s);
  if (code != VmbErrorSuccess) return code;
  ImagingDevice::ShowInfo(
      WString::Format(L"Camera(%s): SetBandwidth() : %lld --> %lld", m_camera.Identifier(), current, bytes_per_s)
          .c_str());
  return VmbErrorSuccess;
}

VmbError_t StreamRate::SetBandwidthClamped(std::int64_t bytes_per_s) {
  const BRecursiveMutexLock lock(m_snap_mutex);
  return SetBandwidth(ClampedRate(bytes_per_s, m_state.min, m_state.max));
}

void StreamRate::InitializeBandwidthRange(const IProfile& profile, BLogCollector& log) {
  const BRecursiveMutexLock lock(m_snap_mutex);
  log << L"InitializeBandwidthRange " << m_camera.Identifier().c_str() << L'\n';
  std::int64_t camera_min = m_state.min;
  std::int64_t camera_max = m_state.max;
  std::ignore = Vimba::GetIntRange(m_camera.Handle(), Feature::kStreamBytesPerSecond, camera_min, camera_max);
  if (camera_min < kRateFloor && camera_max > kRateFloor) camera_min = kRateFloor;
  log << L"StreamBytesPerSecond range = " << camera_min << L" , " << camera_max << L'\n';
  m_state.min = BoundedRate(camera_min);
  m_state.max = BoundedRate(camera_max);
  if (const std::optional<int> lower = ReadInteger(profile, ProfileKey::kMinBytePerSecond)) {
    m_state.min = std::max<std::int64_t>(*lower, m_state.min);
  }
  if (const std::optional<int> upper = ReadInteger(profile, ProfileKey::kBytePerSecond)) {
    m_state.max = std::min<std::int64_t>(*upper, m_state.max);
  }
  log << L"StreamBytesPerSecond by profile = " << m_state.min << L" , " << m_state.max << L'\n';
  const std::int64_t start = m_state.StartRate();
  const bool set = Vimba::SetInt(m_camera.Handle(), Feature::kStreamBytesPerSecond, start) == VmbErrorSuccess;
  log << L"Set StreamBytesPerSecond = " << start << (set ? L"\n" : L" failed\n");
}

VmbError_t StreamRate::ChangeBandwidth(double factor) {
  std::wostringstream label;
  label.imbue(std::locale::classic());
  label << L"ChangeBandwidth( " << factor << L" )";
  BLogCollector log(m_camera.Prefix() + label.str());
  std::int64_t current = 0;
  const VmbError_t code = Vimba::GetInt(m_camera.Handle(), Feature::kStreamBytesPerSecond, current);
  if (code != VmbErrorSuccess) return code;
  current = BoundedRate(current);
  const auto change = static_cast<std::int64_t>(static_cast<double>(current) * factor);
  const std::int64_t wanted = m_state.BandwidthLimit(current + change);
  log << L"ChangeBandwidth absolute : " << current << L" -> " << wanted << L" (Min=" << m_state.LearnedMin()
      << L"; Max=" << m_state.LearnedMax() << L")" << L'\n';
  return SetBandwidthClamped(wanted);
}

void StreamRate::AfterSnap(std::int32_t snap_error, BLogCollector& log) {
  const BRecursiveMutexLock lock(m_snap_mutex);
  if (snap_error != 0) {
    ++m_state.failures;
    log << L"Snap failure " << snap_error << L" #failure = " << m_state.failures << L'\n';
    if (m_state.failures > kFailuresUntilReset) {
      log << L"#failure > 3 --> reset bandwidth control parameters" << L'\n';
      m_state.ForgetLearned();
    }
    std::ignore = ChangeBandwidth(kAfterFailure);
  } else {
    m_state.CountSuccess(BoundedRate(GetBandwidth()));
    log << L"Successful snap, failure counter = 0, bandwidth.av = " << static_cast<std::int64_t>(m_state.average)
        << L" #snaps = " << m_state.snap_count << L'\n';
    std::ignore = ChangeBandwidth(kAfterSuccess);
  }
}
