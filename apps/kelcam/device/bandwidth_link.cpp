// bandwidth_link.cpp
// Open cameras that share a link.
#include "device/bandwidth_link.h"

#include <tuple>

#include "base/failure.h"

namespace Kelcam {

BandwidthLink::BandwidthLink(const std::vector<const CameraSession*>& cameras) : m_cameras(cameras) {
  const BMutexLock lock(m_mutex);
  try {
    for (const CameraSession* camera : cameras) {
      for (const CameraSession* other : cameras) {
        if (camera != other) Add(*camera, *other);
      }
    }
  } catch (...) {
    Undo();
    throw;
  }
}

BandwidthLink::~BandwidthLink() {
  const BMutexLock lock(m_mutex);
  Undo();
}

void BandwidthLink::Leave(const CameraSession& camera) {
  const BMutexLock lock(m_mutex);
  std::erase(m_cameras, &camera);
  RemovePartnersOf(camera.Device());
}

void BandwidthLink::Join(const CameraSession& camera) {
  const BMutexLock lock(m_mutex);
  try {
    for (const CameraSession* other : m_cameras) {
      Add(camera, *other);
      Add(*other, camera);
    }
    m_cameras.push_back(&camera);
  } catch (...) {
    RemovePartnersOf(camera.Device());
    throw;
  }
}

void BandwidthLink::Add(const CameraSession& camera, const CameraSession& partner) {
  if (!camera.Device().AddBandwidthPartner(&partner.Device())) {
    throw Failure("--link: the driver does not make " + partner.Identifier() + " a bandwidth partner of " +
                  camera.Identifier());
  }
  m_partners.emplace_back(&camera.Device(), &partner.Device());
}

void BandwidthLink::RemovePartnersOf(const BImagingDevice& device) {
  std::erase_if(m_partners, [&device](const auto& pair) {
    if (pair.first != &device && pair.second != &device) return false;
    std::ignore = pair.first->RemoveBandwidthPartner(pair.second);
    return true;
  });
}

void BandwidthLink::Undo() {
  for (; !m_partners.empty(); m_partners.pop_back()) {
    const auto& [device, partner] = m_partners.back();
    std::ignore = device->RemoveBandwidthPartner(partner);
  }
}

}  // namespace Kelcam
