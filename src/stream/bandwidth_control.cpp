// bandwidth_control.cpp
// The camera's stream rate: its range, what partners share of it, and what it learns from snaps.
#include <algorithm>
#include <limits>
#include <locale>
#include <mutex>
#include <sstream>

#include "camera/profile_keys.h"
#include "camera/vimba_imaging_device_impl.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_features.h"

namespace {

constexpr double kAfterFailure = -0.1;
constexpr double kAfterSuccess = 0.02;
constexpr std::int32_t kFailuresUntilReset = 3;

// Guards the partner sets of all cameras, and the list of the cameras that have one.
std::mutex partner_mutex;
std::set<BVimbaImagingDeviceImpl*> live_devices;

}  // namespace

std::int64_t BVimbaImagingDeviceImpl::GetBandwidth() const {
  std::int64_t rate = 0;
  Vimba::GetInt(m_camera, Feature::kStreamBytesPerSecond, rate);
  return rate;
}

VmbError_t BVimbaImagingDeviceImpl::SetBandwidth(std::int64_t rate) {
  std::int64_t current = 0;
  VmbError_t code = Vimba::GetInt(m_camera, Feature::kStreamBytesPerSecond, current);
  if (code != VmbErrorSuccess || current == rate) return code;
  code = Vimba::SetInt(m_camera, Feature::kStreamBytesPerSecond, rate);
  if (code != VmbErrorSuccess) return code;
  ImagingDevice::ShowInfo(
      WString::Format(L"Camera(%s): SetBandwidth() : %lld --> %lld", m_identifier, current, rate).c_str());
  return VmbErrorSuccess;
}

VmbError_t BVimbaImagingDeviceImpl::SetBandwidthClamped(std::int64_t rate) {
  const std::lock_guard lock(m_snap_mutex);
  return SetBandwidth(ClampedRate(rate, m_bandwidth.min, m_bandwidth.max));
}

void BVimbaImagingDeviceImpl::InitializeBandwidthRange(BLogCollector& log) {
  log << L"InitializeBandwidthRange " << m_identifier.c_str() << L'\n';
  std::int64_t camera_min = m_bandwidth.min;
  std::int64_t camera_max = m_bandwidth.max;
  Vimba::GetIntRange(m_camera, Feature::kStreamBytesPerSecond, camera_min, camera_max);
  if (camera_min < kRateFloor && camera_max > kRateFloor) camera_min = kRateFloor;
  log << L"StreamBytesPerSecond range = " << camera_min << L" , " << camera_max << L'\n';
  int value = 0;
  m_bandwidth.min = BoundedRate(camera_min);
  m_bandwidth.max = BoundedRate(camera_max);
  if (ReadIntKey(ProfileKey::kMinBytePerSecond, value, 0)) {
    m_bandwidth.min = std::max<std::int64_t>(value, m_bandwidth.min);
  }
  if (ReadIntKey(ProfileKey::kBytePerSecond, value, 0)) {
    m_bandwidth.max = std::min<std::int64_t>(value, m_bandwidth.max);
  }
  log << L"StreamBytesPerSecond by profile = " << m_bandwidth.min << L" , " << m_bandwidth.max << L'\n';
  const std::int64_t start = m_bandwidth.StartRate();
  const bool set = Vimba::SetInt(m_camera, Feature::kStreamBytesPerSecond, start) == VmbErrorSuccess;
  log << L"Set StreamBytesPerSecond = " << start << (set ? L"\n" : L" failed\n");
}

VmbError_t BVimbaImagingDeviceImpl::ChangeBandwidth(double factor) {
  std::wostringstream label;
  label.imbue(std::locale::classic());
  label << L"ChangeBandwidth( " << factor << L" )";
  BLogCollector log(Prefix() + label.str());
  std::int64_t current = 0;
  const VmbError_t code = Vimba::GetInt(m_camera, Feature::kStreamBytesPerSecond, current);
  if (code != VmbErrorSuccess) return code;
  current = BoundedRate(current);
  const auto change = static_cast<std::int64_t>(static_cast<double>(current) * factor);
  const std::int64_t wanted = m_bandwidth.BandwidthLimit(current + change);
  log << L"ChangeBandwidth absolute : " << current << L" -> " << wanted << L" (Min=" << m_bandwidth.LearnedMin()
      << L"; Max=" << m_bandwidth.LearnedMax() << L")" << L'\n';
  return SetBandwidthClamped(wanted);
}

void BVimbaImagingDeviceImpl::AfterSnap(BLogCollector& log) {
  if (m_last_snap_error != 0) {
    ++m_bandwidth.failures;
    log << L"Snap failure " << m_last_snap_error.load() << L" #failure = " << m_bandwidth.failures << L'\n';
    if (m_bandwidth.failures > kFailuresUntilReset) {
      log << L"#failure > 3 --> reset bandwidth control parameters" << L'\n';
      m_bandwidth.ForgetLearned();
    }
    ChangeBandwidth(kAfterFailure);
    m_last_snap_error.exchange(0);
  } else {
    m_bandwidth.CountSuccess(BoundedRate(GetBandwidth()));
    log << L"Successful snap, failure counter = 0, bandwidth.av = " << static_cast<std::int64_t>(m_bandwidth.average)
        << L" #snaps = " << m_bandwidth.snap_count << L'\n';
    ChangeBandwidth(kAfterSuccess);
  }
}

void BVimbaImagingDeviceImpl::SynchBandwidth(BLogCollector& log) {
  const std::lock_guard lock(partner_mutex);
  std::int64_t lowest = std::numeric_limits<std::int64_t>::max();
  for (const BVimbaImagingDeviceImpl* partner : m_bandwidth_partners) {
    const std::int64_t rate = partner->GetBandwidth();
    if (rate > 0) lowest = std::min(lowest, rate);
  }
  const std::int64_t own = GetBandwidth();
  if (lowest >= own) return;
  log << L"SynchBandwidth : " << own << L"bps -->" << lowest << L"bps" << L'\n';
  SetBandwidth(lowest);
}

bool BVimbaImagingDeviceImpl::AddBandwidthPartner(BVimbaImagingDeviceImpl* other) {
  const std::lock_guard lock(partner_mutex);
  if (!other) return false;
  m_has_partners = true;
  return m_bandwidth_partners.insert(other).second;
}

bool BVimbaImagingDeviceImpl::RemoveBandwidthPartner(BVimbaImagingDeviceImpl* other) {
  const std::lock_guard lock(partner_mutex);
  return Unlist(other);
}

bool BVimbaImagingDeviceImpl::Unlist(BVimbaImagingDeviceImpl* other) {
  const bool listed = m_bandwidth_partners.erase(other) != 0;
  m_has_partners = !m_bandwidth_partners.empty();
  return listed;
}

// A failed frame here most likely cost the others some of theirs: they stop waiting for them. Without partners the
// mutex is left alone: a device that compares rates holds it while cameras answer.
void BVimbaImagingDeviceImpl::AbortPartners() {
  if (!m_has_partners) return;
  const std::lock_guard lock(partner_mutex);
  for (BVimbaImagingDeviceImpl* partner : m_bandwidth_partners) partner->m_frame_queue.PushAbort();
}

void BVimbaImagingDeviceImpl::JoinPartners() {
  const std::lock_guard lock(partner_mutex);
  live_devices.insert(this);
}

// Others may list this device as their partner; none may reach it once it goes.
void BVimbaImagingDeviceImpl::LeavePartners() {
  const std::lock_guard lock(partner_mutex);
  live_devices.erase(this);
  for (BVimbaImagingDeviceImpl* device : live_devices) device->Unlist(this);
}
