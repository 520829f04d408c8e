// camera/camera_clock.cpp
// The clock of one camera's frames.
#include "camera/camera_clock.h"

#include "aravis/errors.h"

namespace Bridge {
namespace {

// The timestamp registers of the bootstrap block, from the GigE Vision standard.
constexpr std::uint64_t kControlRegister = 0x0944;
constexpr std::uint64_t kHighRegister = 0x0948;
constexpr std::uint64_t kLowRegister = 0x094c;
constexpr std::uint32_t kLatch = 2;

constexpr std::uint64_t kNsPerS = 1'000'000'000;
constexpr std::int64_t kNsPerUs = 1'000;

// Without overflow for any number of ticks, and rounded as Aravis rounds the times of frames.
std::uint64_t InNs(std::uint64_t ticks, std::uint64_t ticks_per_s) {
  return ticks / ticks_per_s * kNsPerS + ticks % ticks_per_s * kNsPerS / ticks_per_s;
}

}  // namespace

CameraClock::CameraClock(ArvDevice* device) : m_device(device) {
  if (!ARV_IS_GV_DEVICE(device)) return;
  ErrorSlot error;
  const std::uint64_t frequency = arv_gv_device_get_timestamp_tick_frequency(ARV_GV_DEVICE(device), error.Take());
  std::uint64_t ticks = 0;
  if (error.Code() || frequency == 0 || ReadTicks(ticks) || ticks == 0) return;
  m_ticks_per_s = frequency;
}

VmbError_t CameraClock::ReadTicks(std::uint64_t& ticks) const {
  ErrorSlot error;
  std::uint32_t high = 0;
  std::uint32_t low = 0;
  if (arv_device_write_register(m_device, kControlRegister, kLatch, error.Take()) &&
      arv_device_read_register(m_device, kHighRegister, &high, error.Take()) &&
      arv_device_read_register(m_device, kLowRegister, &low, error.Take())) {
    ticks = std::uint64_t{high} << 32U | low;
    return VmbErrorSuccess;
  }
  return error.Code() ? error.Code() : VmbError_t{VmbErrorIO};
}

VmbError_t CameraClock::Latch() {
  if (!m_ticks_per_s) {
    m_latched_ns = g_get_real_time() * kNsPerUs;
    return VmbErrorSuccess;
  }
  std::uint64_t ticks = 0;
  const VmbError_t error = ReadTicks(ticks);
  if (!error) m_latched_ns = static_cast<std::int64_t>(InNs(ticks, *m_ticks_per_s));
  return error;
}

std::uint64_t CameraClock::TimeOf(ArvBuffer* buffer) const {
  // Set by the leader, whichever clock counts.
  if (arv_buffer_get_system_timestamp(buffer) == 0) return 0;
  return m_ticks_per_s ? arv_buffer_get_timestamp(buffer) : arv_buffer_get_system_timestamp(buffer);
}

}  // namespace Bridge
