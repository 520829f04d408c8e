// masking.cpp
// Takes out of a text what tells whose cameras and whose computer it is about.
#include "check/masking.h"

#include <algorithm>
#include <regex>

namespace Kelcam {
namespace {

// A shorter one is no serial number, and stands in many other words.
constexpr std::size_t kShortestSecret = 4;

void ReplaceAll(std::string& text, const std::string& part, const std::string& other) {
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + other.size())) {
    text.replace(at, part.size(), other);
  }
}

}  // namespace

Masking::Masking(const std::string& home_folder) {
  if (home_folder.size() > 1) Add(home_folder, "~");
}

void Masking::Add(const std::string& secret, const std::string& mask) {
  const auto is_longer = [&](const auto& other) { return other.first.size() < secret.size(); };
  const bool is_known =
      std::any_of(m_masks.begin(), m_masks.end(), [&](const auto& other) { return other.first == secret; });
  if (!is_known) m_masks.emplace(std::find_if(m_masks.begin(), m_masks.end(), is_longer), secret, mask);
}

void Masking::MaskSerial(const std::string& serial) {
  const bool is_known =
      std::any_of(m_masks.begin(), m_masks.end(), [&](const auto& other) { return other.first == serial; });
  if (serial.size() >= kShortestSecret && !is_known) Add(serial, "serial-" + std::to_string(++m_serials));
}

void Masking::MaskCameras(const CheckFacts& facts, const std::string& user_name) {
  m_masks_cameras = true;
  m_user_name = user_name;
  std::vector<CameraRow> rows = facts.system.cameras.value_or(std::vector<CameraRow>());
  for (const CameraFacts& camera : facts.cameras) {
    if (camera.row) rows.push_back(*camera.row);
  }
  for (const CameraRow& row : rows) {
    MaskSerial(row.serial);
    const bool is_known =
        std::any_of(m_masks.begin(), m_masks.end(), [&](const auto& other) { return other.first == row.id; });
    if (row.id.size() >= kShortestSecret && !is_known) Add(row.id, "id-" + std::to_string(++m_ids));
  }
}

std::string Masking::WithoutAddresses(const std::string& text) const {
  static const std::regex kAddress(R"(\b\d{1,3}\.\d{1,3}\.\d{1,3}\.\d{1,3}\b)");
  std::string masked;
  std::size_t end = 0;
  for (std::sregex_iterator match(text.begin(), text.end(), kAddress), none; match != none; ++match) {
    const std::string address = match->str();
    auto known = std::find(m_addresses.begin(), m_addresses.end(), address);
    if (known == m_addresses.end()) known = m_addresses.insert(known, address);
    masked.append(text, end, static_cast<std::size_t>(match->position()) - end);
    masked += "address-" + std::to_string(known - m_addresses.begin() + 1);
    end = static_cast<std::size_t>(match->position() + match->length());
  }
  return masked.append(text, end);
}

std::string Masking::Masked(std::string text) const {
  for (const auto& [secret, mask] : m_masks) ReplaceAll(text, secret, mask);
  if (!m_masks_cameras) return text;
  if (!m_user_name.empty()) {
    // A folder of this name, or below one; elsewhere it is a word like any other.
    for (const char* const separator : {"/", "\\"}) {
      ReplaceAll(text, separator + m_user_name + separator, std::string(separator) + "user" + separator);
    }
  }
  return WithoutAddresses(text);
}

Json Masking::MaskedDocument(Json document) const {
  if (document.is_string()) return Masked(document.get<std::string>());
  if (document.is_structured()) {
    for (Json& child : document) child = MaskedDocument(child);
  }
  return document;
}

}  // namespace Kelcam
