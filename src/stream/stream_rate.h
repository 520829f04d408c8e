// stream_rate.h
// The rate at which one camera streams: its range, and what it learns from snaps. Bytes per second.
#pragma once

#include <cstdint>

#include "VimbaC.h"
#include "bmutex.h"
#include "stream/bandwidth_limits.h"

class BLogCollector;
class IProfile;
class VimbaCamera;

class StreamRate {
 public:
  // Adapting the rate holds `snap_mutex`, which the snap that it follows holds already. Both must outlive this object.
  StreamRate(const VimbaCamera& camera, BRecursiveMutex& snap_mutex);
  StreamRate(const StreamRate&) = delete;
  StreamRate& operator=(const StreamRate&) = delete;

  // Takes the range from the camera and the profile and sets the rate at which it starts. A camera that refuses only
  // has it logged. [host thread]
  void InitializeBandwidthRange(const IProfile& profile, BLogCollector& log);

  // The rate that the camera streams at now; 0 when it cannot be read. [any thread]
  std::int64_t GetBandwidth() const;
  // Sets the rate as it is, whatever the range; success, too, when the camera has it already. [any thread]
  [[nodiscard]] VmbError_t SetBandwidth(std::int64_t bytes_per_s);

  // Lowers the rate after a failed acquisition (`snap_error` is its code) and raises it after a good one (0), inside
  // limits that good ones draw toward the rates that worked. [any thread]
  void AfterSnap(std::int32_t snap_error, BLogCollector& log);

 private:
  VmbError_t ChangeBandwidth(double factor) KEL_REQUIRES(m_snap_mutex);
  VmbError_t SetBandwidthClamped(std::int64_t bytes_per_s);

  const VimbaCamera& m_camera;
  BRecursiveMutex& m_snap_mutex;
  BandwidthState m_state KEL_GUARDED_BY(m_snap_mutex);
};
