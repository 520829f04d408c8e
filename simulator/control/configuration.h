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
#include "library/system_features.h"
#include "link/link_settings.h"

namespace Simulator {

using VimbaLibrary::SystemConfiguration;

struct Configuration {
  std::vector<CameraConfiguration> cameras;
  // At least one.
  std::vector<LinkSettings> links{1};
  SystemConfiguration system;
  // Whether calls are recorded.
  bool records_calls = true;
  Faults::Set faults;
  // The file that it was read from, UTF-8; empty: none.
  std::string file;
};

// Runs the body and puts the file's name, if there is one, in front of the error that it throws.
template <class Body>
auto NamingFile(const std::string& file, Body body) {
  try {
    return body();
  } catch (const std::exception& error) {
    if (file.empty()) throw;
    throw std::runtime_error(file + ": " + error.what());
  }
}

// The cameras of a link without configuration: a monochrome and a colour one, and a colour one of another family.
std::vector<CameraConfiguration> BuiltInCameras();

// Like the next two, throws std::invalid_argument that names the member and its value.
Configuration ParseConfiguration(std::string_view json);
// One fault or an array of them.
Faults::Set ParseFaults(std::string_view json);
FrameOverride ParseFrameOverride(std::string_view json);

// The configuration of the file that VIMBA_SIM_CONFIG names; without that variable, the built-in cameras. Throws
// std::runtime_error that names the file when it cannot be read or is wrong.
Configuration EnvironmentConfiguration();

}  // namespace Simulator
