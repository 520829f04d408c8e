// control/environment.h
// The environment variable and the file that it names: where operating systems differ.
#pragma once

#include <optional>
#include <string>

namespace Simulator {

// The value of VIMBA_SIM_CONFIG as UTF-8; nothing when it is unset or empty.
std::optional<std::string> ConfigurationFile();

// Throws std::runtime_error with the file's name and the system's reason.
std::string ReadTextFile(const std::string& utf8_path);

}  // namespace Simulator
