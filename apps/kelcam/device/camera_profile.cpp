// camera_profile.cpp
// The profile by which a module opens a camera: a file, or one made up for a camera that the command line names.
#include "device/camera_profile.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <fstream>
#include <iostream>
#include <random>
#include <thread>

#include "base/interrupt.h"
#include "base/nearest_name.h"
#include "base/report.h"
#include "base/utf8.h"

namespace Kelcam {
namespace {

// Cameras answer the search one after the other.
constexpr int kAttempts = 10;
constexpr std::chrono::milliseconds kPauseAfterFailure{200};

constexpr const char* kPixelFormat = "PixelFormat";
constexpr const char* kSensorType = "SensorType";
constexpr const char* kMonochrome = "Mono";

// The words of Bayertype, and the pixel format that each needs.
constexpr std::pair<const char*, const char*> kBayerOrders[] = {
    {"RGGB", "BayerRG8"}, {"GBRG", "BayerGB8"}, {"BGGR", "BayerBG8"}, {"GRBG", "BayerGR8"}};

class MemoryProfile : public BCamProfile {
 public:
  using BCamProfile::BCamProfile;
  bool Write(const WString& /*key*/, const WString& /*value*/) override { return true; }
};

// A file that exists for as long as a profile is read from it.
class PassingFile {
 public:
  explicit PassingFile(const std::string& text) {
    std::random_device random;
    const std::string number = std::to_string(random()) + std::to_string(random());
    m_path = std::filesystem::temp_directory_path() / ("kelcam-" + number + ".ini");
    std::ofstream file(m_path, std::ios::binary);
    file << text;
    if (!file.flush()) throw Failure("the file " + Utf8(m_path) + " cannot be written");
  }
  ~PassingFile() {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
  }
  PassingFile(const PassingFile&) = delete;
  PassingFile& operator=(const PassingFile&) = delete;

  const std::filesystem::path& Path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

bool IsAddress(const std::string& word) {
  const char* at = word.data();
  const char* const end = at + word.size();
  for (int part = 0; part < 4; ++part) {
    if (part > 0 && (at == end || *at++ != '.')) return false;
    std::uint8_t number = 0;
    const auto [rest, error] = std::from_chars(at, end, number);
    if (error != std::errc()) return false;
    at = rest;
  }
  return at == end;
}

// The camera's place in the list, from 1; 0 for a word that is no number.
std::size_t NumberIn(const std::string& word) {
  std::size_t number = 0;
  const char* const end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, number);
  return error == std::errc() && rest == end ? number : 0;
}

const CameraRecord* Match(const std::vector<CameraRecord>& cameras, const std::string& word) {
  // An identifier of a module's list ends in the serial number.
  const auto has_name = [&](const CameraRecord& camera) {
    const bool is_identifier =
        !camera.serial.empty() && word.starts_with("Vimba_") && word.ends_with("_" + camera.serial);
    return camera.serial == word || camera.id == word || is_identifier;
  };
  const auto found = std::find_if(cameras.begin(), cameras.end(), has_name);
  if (found != cameras.end()) return &*found;
  const std::size_t number = NumberIn(word);
  return number >= 1 && number <= cameras.size() ? &cameras[number - 1] : nullptr;
}

[[noreturn]] void FailToFind(const std::string& word, const std::vector<CameraRecord>& cameras) {
  std::vector<std::string> names;
  for (const CameraRecord& camera : cameras) names.insert(names.end(), {camera.serial, camera.id});
  throw Failure("there is no camera " + word + DidYouMean(word, names) + " (" + Counted(cameras.size(), "camera") +
                (cameras.size() == 1 ? " is" : " are") + " attached: kelcam list --long)");
}

std::string TextFor(const CameraChoice& choice, const VimbaLibrary& library) {
  const VimbaSession session(library);
  const NamedCamera named = FindCamera(choice.word, session);
  std::string text = ProfileLine("API", "Vimba");
  text += named.is_address ? ProfileLine("Init.Method", "IP") + ProfileLine("IP", named.id)
                           : ProfileLine("Init.Method", "Id") + ProfileLine("Camera_Identifier", named.id);
  const OpenedCamera camera(session, named.id, VmbAccessModeFull);
  // The driver tries again, and reports what it meets.
  if (!camera.IsOpen()) return text;
  if (const std::optional<std::string> order = FindBayerOrder(camera)) {
    std::cerr << "notice: " << choice.LabelBeforeOpening() << "the order of the colours on the sensor is " << *order
              << ", found by trying (in a profile: Bayertype = " << *order << ")\n";
    text += ProfileLine("Bayertype", *order);
  }
  return text;
}

}  // namespace

NamedCamera FindCamera(const std::string& word, const VimbaSession& session) {
  if (IsAddress(word)) return {word, true};
  for (int attempt = 1;; ++attempt) {
    const std::vector<CameraRecord> cameras = session.Cameras();
    if (const CameraRecord* camera = Match(cameras, word)) return {camera->id, false};
    if (attempt == kAttempts) FailToFind(word, cameras);
    const NothingToClose searching;
    std::this_thread::sleep_for(kPauseAfterFailure);
  }
}

std::optional<std::string> IdOfNamed(const std::string& word, const VimbaSession& session) {
  if (IsAddress(word)) return session.IdOf(word);
  const std::vector<CameraRecord> cameras = session.Cameras();
  const CameraRecord* camera = Match(cameras, word);
  return camera ? std::optional(camera->id) : std::nullopt;
}

std::optional<std::string> FindBayerOrder(const OpenedCamera& camera) {
  const std::optional<std::string> sensor = camera.Entry(kSensorType);
  if (!sensor || *sensor == kMonochrome) return std::nullopt;
  const std::optional<std::string> before = camera.Entry(kPixelFormat);
  for (const auto& [order, format] : kBayerOrders) {
    if (before == format) return order;
  }
  for (const auto& [order, format] : kBayerOrders) {
    if (!camera.SetEntry(kPixelFormat, format)) continue;
    if (before) std::ignore = camera.SetEntry(kPixelFormat, *before);
    return order;
  }
  return std::nullopt;
}

std::string ProfileLine(const std::string& key, const std::string& value) {
  if (value.find_first_of(std::string("\r\n\0", 3)) != std::string::npos) {
    throw Failure("a profile cannot hold the camera's " + key + ", which has a line break");
  }
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  const bool has_quotes = value.size() > 1 && value.front() == '"' && value.back() == '"';
  const bool needs_quotes = !value.empty() && (is_blank(value.front()) || is_blank(value.back()) || has_quotes);
  return key + " = " + (needs_quotes ? "\"" + value + "\"" : value) + "\n";
}

BSmartRef<BCamProfile> ProfileInMemory(const std::string& text) {
  const PassingFile file(text);
  return BSmartRef<BCamProfile>(new MemoryProfile(Wide(Utf8(file.Path()))));
}

BSmartRef<BCamProfile> ProfileOf(const CameraChoice& choice, const Module& module) {
  if (choice.word.empty()) return BSmartRef<BCamProfile>(new BCamProfile(Wide(choice.profile_file)));
  if (!module.Vimba()) throw Failure(choice.Text() + ": this module has no VimbaC library; use --profile");
  return ProfileInMemory(TextFor(choice, *module.Vimba()));
}

}  // namespace Kelcam
