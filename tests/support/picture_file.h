// picture_file.h
// Pictures on disk, for scenes that a simulated camera looks at.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

// Throws std::runtime_error when the file cannot be written.
void WriteGreyPng(const std::filesystem::path& file, int width, int height, const std::vector<std::uint8_t>& pixels);
