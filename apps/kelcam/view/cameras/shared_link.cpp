// shared_link.cpp
// Cameras that share a link, and come and go.
#include "view/cameras/shared_link.h"

#include <tuple>

#include "base/failure.h"

namespace Kelcam {

SharedLink::Member::Member(SharedLink& link, BImagingDevice& device) : m_link(link), m_device(device) {
  const BMutexLock lock(m_link.m_mutex);
  for (BImagingDevice* other : m_link.m_devices) {
    if (device.AddBandwidthPartner(other) && other->AddBandwidthPartner(&device)) continue;
    m_link.Part(device);
    throw Failure("--link: the driver does not make the cameras bandwidth partners");
  }
  m_link.m_devices.push_back(&device);
}

SharedLink::Member::~Member() {
  const BMutexLock lock(m_link.m_mutex);
  std::erase(m_link.m_devices, &m_device);
  m_link.Part(m_device);
}

void SharedLink::Part(BImagingDevice& device) {
  for (BImagingDevice* other : m_devices) {
    std::ignore = device.RemoveBandwidthPartner(other);
    std::ignore = other->RemoveBandwidthPartner(&device);
  }
}

}  // namespace Kelcam
