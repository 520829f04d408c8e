// wholefile.h
// Files that are read and replaced as a whole.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>

#include "wstring.h"

// What is larger is no profile, and a device that never ends is not read until memory does.
constexpr std::size_t kLargestWholeFile = 16U << 20U;

// Gives all bytes of the file, or the reason why not.
std::error_code ReadWholeFile(const WString& file_name, std::string& bytes);

// Replaces the content of an existing file: the bytes go to a new file in the same folder, down to the disk, which then
// takes the old one's name in one step. A link is followed. On failure the old file is what it was.
std::error_code ReplaceWholeFile(const WString& file_name, std::string_view bytes);
