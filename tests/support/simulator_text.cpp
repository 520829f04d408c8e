// simulator_text.cpp
// What the simulated library reports as text: its record of calls and its state.
#include "support/simulator_text.h"

std::string SimulatorText(std::size_t (*read)(char* buffer, std::size_t size)) {
  std::string text;
  for (std::size_t needed = read(nullptr, 0); needed > text.size(); needed = read(text.data(), text.size())) {
    // Room for what is added until the next look.
    text.resize(2 * needed);
  }
  text.resize(text.find('\0'));
  return text;
}
