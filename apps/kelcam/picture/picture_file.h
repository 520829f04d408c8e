// picture_file.h
// Where the bytes of a picture go.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace Kelcam {

enum class ExistingFile { kIsReplaced, kStays };

// Throws Failure when the folder in which a picture is to lie does not exist.
void CheckFolder(const std::filesystem::path& file);

// Throws Failure when there is a file of this name.
void CheckIsNew(const std::filesystem::path& file);

// Writes the file, which appears under its name only when it is whole. Throws Failure, and leaves what was there.
void WritePictureFile(const std::filesystem::path& file, const std::vector<std::uint8_t>& bytes, ExistingFile existing);

// Throws Failure when standard output does not take them all.
void WriteToStandardOutput(const std::vector<std::uint8_t>& bytes);

}  // namespace Kelcam
