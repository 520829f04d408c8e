// bandwidth_link.cpp
// Open cameras that share a link.
#include "device/bandwidth_link.h"

#include <tuple>

#include "base/failure.h"

namespace Kelcam {

BandwidthLink::BandwidthLink(const std::vector<const CameraSession*>& cameras) {
  for (const CameraSession* camera : cameras) {
    for (const CameraSession* other : cameras) {
      if (camera == other) continue;
      if (camera->Device().AddBandwidthPartner(&other->Device())) {
        m_partners.emplace_back(&camera->Device(), &other->Device());
        continue;
      }
      Undo();
      throw Failure("--link: the driver does not make " + other->Identifier() + " a bandwidth partner of " +
                    camera->Identifier());
    }
  }
}

BandwidthLink::~BandwidthLink() { Undo(); }

void BandwidthLink::Undo() {
  for (; !m_partners.empty(); m_partners.pop_back()) {
    const auto& [device, partner] = m_partners.back();
    std::ignore = device->RemoveBandwidthPartner(partner);
  }
}

}  // namespace Kelcam
