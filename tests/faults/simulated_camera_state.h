// simulated_camera_state.h
// What the simulated camera of the sweeps says of itself, past the API.
#pragma once

#include <cstdint>
#include <string>

class BImagingDevice;

// Frames exposed since the cameras were set up.
std::uint64_t ExposedSoFar();
std::string PixelFormatNow();
// What the camera's clock was when it was asked last.
std::int64_t LatchedTime();
// One falling and one rising edge of the trigger line.
void SendEdge();
// A third camera leaves the link and comes back. Whether all that follows from it ends in time.
bool ComesAndGoes();

// Whether the module copies frames of this format into an area of this kind.
bool IsCopied(const std::string& pixel_format, int image_kind, const BImagingDevice& device);
