// system/camera_directory.cpp
// The cameras that discovery has found.
#include "system/camera_directory.h"

#include <arv.h>

#include <algorithm>
#include <string>
#include <utility>

namespace Bridge {
namespace {

// More do not fit on a link, and a list that grows without end is no list of cameras.
constexpr unsigned int kMostCameras = 4'096;

std::string TextOf(const char* text) { return text ? text : ""; }

bool IsZero(std::string_view mac) {
  return std::all_of(mac.begin(), mac.end(), [](char digit) { return digit == '0' || digit == ':'; });
}

// "DEV_" and the MAC address; the serial number of a camera that has none.
std::string IdOf(const CameraRecord& camera) {
  std::string id = "DEV_";
  if (IsZero(camera.mac_address)) return id + (camera.serial.empty() ? camera.ip_address : camera.serial);
  for (const char digit : camera.mac_address) {
    if (digit != ':') id += digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
  }
  return id;
}

// Aravis' list, which it keeps until the next search.
CameraDirectory::Records ReadList() {
  CameraDirectory::Records cameras;
  const unsigned int count = std::min(arv_get_n_devices(), kMostCameras);
  for (unsigned int i = 0; i < count; ++i) {
    if (TextOf(arv_get_device_protocol(i)) != "GigEVision") continue;
    auto camera = std::make_shared<CameraRecord>();
    camera->model = TextOf(arv_get_device_model(i));
    camera->serial = TextOf(arv_get_device_serial_nbr(i));
    camera->name = TextOf(arv_get_device_vendor(i)) + ' ' + camera->model;
    camera->ip_address = TextOf(arv_get_device_address(i));
    camera->mac_address = TextOf(arv_get_device_physical_id(i));
    camera->interface_id = "GigE";
    camera->id = IdOf(*camera);
    cameras.push_back(std::move(camera));
  }
  const auto order = [](const auto& camera) { return std::pair(camera->id, camera->ip_address); };
  std::sort(cameras.begin(), cameras.end(), [&](const auto& a, const auto& b) { return order(a) < order(b); });
  return cameras;
}

// Those of the first whose id is not in the second.
CameraDirectory::Records Without(const CameraDirectory::Records& cameras, const CameraDirectory::Records& others) {
  CameraDirectory::Records rest;
  std::copy_if(cameras.begin(), cameras.end(), std::back_inserter(rest), [&](const auto& camera) {
    return std::none_of(others.begin(), others.end(), [&](const auto& other) { return other->id == camera->id; });
  });
  return rest;
}

bool SameCamera(const CameraRecord& a, const CameraRecord& b) {
  return a.id == b.id && a.name == b.name && a.serial == b.serial && a.ip_address == b.ip_address;
}

}  // namespace

CameraDirectory::Changes CameraDirectory::Search() {
  const BMutexLock search(m_search);
  m_searched = true;
  arv_update_device_list();
  Records found = ReadList();
  const BMutexLock lock(m_mutex);
  // A camera that is still there keeps its record.
  for (auto& camera : found) {
    for (const Records& known : {m_cameras, m_earlier}) {
      const auto same =
          std::find_if(known.begin(), known.end(), [&](const auto& each) { return SameCamera(*each, *camera); });
      if (same != known.end()) camera = *same;
    }
  }
  Changes changes{Without(m_cameras, found), Without(found, m_cameras)};
  for (const auto& camera : m_cameras) {
    if (std::find(m_earlier.begin(), m_earlier.end(), camera) == m_earlier.end()) m_earlier.push_back(camera);
  }
  m_cameras = std::move(found);
  return changes;
}

void CameraDirectory::SearchOnce() {
  {
    const BMutexLock search(m_search);
    if (m_searched) return;
  }
  Search();
}

CameraDirectory::Records CameraDirectory::All() {
  SearchOnce();
  const BMutexLock lock(m_mutex);
  return m_cameras;
}

std::shared_ptr<const CameraRecord> CameraDirectory::Find(std::string_view name) {
  for (const auto& camera : All()) {
    if (camera->IsCalled(name)) return camera;
  }
  return nullptr;
}

}  // namespace Bridge
