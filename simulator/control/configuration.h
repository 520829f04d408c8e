// control/configuration.h
// The simulator's JSON: configurations, faults, frames delivered by hand. docs/simulator.md lists every member.
#pragma once

#include <array>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "camera/camera_configuration.h"
#include "control/faults.h"

namespace Simulator {

enum class DiscoveryStatus { kOff, kAutomatic };
// The entries of GeVDiscoveryStatus, by the values above.
inline constexpr std::array<std::string_view, 2> kDiscoveryStatusNames{"Off", "Automatic"};

struct SystemConfiguration {
  bool gige_present = true;
  DiscoveryStatus discovery_status = DiscoveryStatus::kOff;
};

struct Configuration {
  std::vector<CameraConfiguration> cameras;
  double link_bytes_per_s = 124'000'000.0;
  SystemConfiguration system;
  Faults::Set faults;
  // What it was read from, UTF-8; empty: no file.
  std::string file;
};

// Runs the body; what it throws gets the file's name put in front, if there is a file.
template <class Body>
auto NamingFile(const std::string& file, Body body) {
  try {
    return body();
  } catch (const std::exception& error) {
    if (file.empty()) throw;
    throw std::runtime_error(file + ": " + error.what());
  }
}

// The cameras without any configuration: a monochrome and a colour one, and a colour one of another family.
std::vector<CameraConfiguration> BuiltInCameras();

// All throw std::invalid_argument that names the member and its value.
Configuration ParseConfiguration(std::string_view json);
// One fault or an array of them.
Faults::Set ParseFaults(std::string_view json);
FrameOverride ParseFrameOverride(std::string_view json);

// Of the file that VIMBA_SIM_CONFIG names; the built-in cameras without it. Throws std::runtime_error that names the
// file when it cannot be read or is wrong.
Configuration EnvironmentConfiguration();

}  // namespace Simulator
