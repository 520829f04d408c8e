// bandwidth_link.h
// Open cameras that share a link.
#pragma once

#include <utility>
#include <vector>

#include "bmutex.h"
#include "device/camera_session.h"

namespace Kelcam {

// Makes each camera a bandwidth partner of each other one for as long as it lives: both ways, because a driver's
// partnership has one direction. The cameras may snap meanwhile, and must be open as long, or leave before they are
// closed.
class BandwidthLink {
 public:
  // Throws Failure when the driver refuses, and leaves no partners then.
  explicit BandwidthLink(const std::vector<const CameraSession*>& cameras);
  ~BandwidthLink();
  BandwidthLink(const BandwidthLink&) = delete;
  BandwidthLink& operator=(const BandwidthLink&) = delete;

  // From now on it is nobody's partner, and may be closed. [any thread]
  void Leave(const CameraSession& camera);
  // Makes it a partner of all others. Throws Failure when the driver refuses, and leaves it without partners then. [any
  // thread]
  void Join(const CameraSession& camera);

 private:
  void Add(const CameraSession& camera, const CameraSession& partner) KEL_REQUIRES(m_mutex);
  void RemovePartnersOf(const BImagingDevice& device) KEL_REQUIRES(m_mutex);
  // The last one first.
  void Undo() KEL_REQUIRES(m_mutex);

  BMutex m_mutex;
  std::vector<const CameraSession*> m_cameras KEL_GUARDED_BY(m_mutex);
  // Who lists whom.
  std::vector<std::pair<BImagingDevice*, BImagingDevice*>> m_partners KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam
