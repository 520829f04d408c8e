// masking.h
// Takes out of a text what tells whose cameras and whose computer it is about.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/report.h"
#include "check/check_facts.h"

namespace Kelcam {

class Masking {
 public:
  // The home folder becomes "~".
  explicit Masking(const std::string& home_folder);
  // In addition the user's name in paths becomes "user", and serial numbers, ids and addresses become "serial-1",
  // "id-1", "address-1": the same one always the same.
  void MaskCameras(const CheckFacts& facts, const std::string& user_name);
  void MaskSerial(const std::string& serial);

  std::string Masked(std::string text) const;
  // In every text of the document.
  Json MaskedDocument(Json document) const;

 private:
  void Add(const std::string& secret, const std::string& mask);
  std::string WithoutAddresses(const std::string& text) const;

  std::vector<std::pair<std::string, std::string>> m_masks;  // the longest first
  std::string m_user_name;
  bool m_masks_cameras = false;
  std::size_t m_serials = 0, m_ids = 0;
  mutable std::vector<std::string> m_addresses;  // in the order in which they were met
};

}  // namespace Kelcam
