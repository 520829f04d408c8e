// picture_metadata.h
// What PNG and TIFF files say of their pictures, read by this project's own eyes.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "picture_file.h"

// Keywords and texts of the file's tEXt and iTXt chunks; empty unless every chunk's length and checksum are right.
std::map<std::string, std::string> PngTexts(const std::string& file);

// A TIFF file taken apart.
struct TiffFile {
  // By tag, of the first directory and of the Exif directory in it: numbers, a rational as two of them.
  std::map<int, std::vector<std::uint32_t>> numbers;
  std::map<int, std::string> texts;
  bool is_sorted = true;  // tags rise, and values begin at even places
  DecodedPicture picture;
};

TiffFile DecodedTiff(const std::string& file);
