// bandwidth_link.h
// Open cameras that share a link.
#pragma once

#include <utility>
#include <vector>

#include "device/camera_session.h"

namespace Kelcam {

// Makes each camera a bandwidth partner of each other one for as long as it lives: both ways, because a driver's
// partnership has one direction. The cameras must be open as long, and may snap meanwhile.
class BandwidthLink {
 public:
  // Throws Failure when the driver refuses, and leaves no partners then.
  explicit BandwidthLink(const std::vector<const CameraSession*>& cameras);
  ~BandwidthLink();
  BandwidthLink(const BandwidthLink&) = delete;
  BandwidthLink& operator=(const BandwidthLink&) = delete;

 private:
  // The last one first.
  void Undo();

  // Who lists whom.
  std::vector<std::pair<BImagingDevice*, BImagingDevice*>> m_partners;
};

}  // namespace Kelcam
