// camera/camera_record.h
// What discovery has found out about one camera.
#pragma once

#include <string>
#include <string_view>

#include "VimbaC.h"

namespace Bridge {

// The texts are the camera's own: nothing is known of their length or content.
struct CameraRecord {
  // What callers know it by: "DEV_" and the MAC address in hexadecimal digits.
  std::string id;
  std::string name;
  std::string model;
  std::string serial;
  // Of the interface that it was found through.
  std::string interface_id;
  std::string ip_address;
  // As Aravis writes it, with colons.
  std::string mac_address;

  bool IsCalled(std::string_view text) const;
};

}  // namespace Bridge
