// simulator_text.h
// What the simulated library reports as text: its record of calls and its state.
#pragma once

#include <cstddef>
#include <string>

// All that VimbaSimCalls or VimbaSimState has to report, also when it grows meanwhile.
std::string SimulatorText(std::size_t (*read)(char* buffer, std::size_t size));
