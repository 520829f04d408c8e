// picture.h
// Pictures as files: PNG, and the plain binary PGM and PPM.
#pragma once

#include <filesystem>
#include <string>

#include "bbaseaoi.h"

namespace Kelcam {

enum class PictureFormat { kPng, kPgm, kPpm };

// A pattern of file names: "%d", wherever it stands, is replaced by the picture's number. Nothing else in it is
// special.
class FilePattern {
 public:
  // Throws UsageError when the ending stands for no format, or when several pictures would get one name.
  FilePattern(const std::string& pattern, int pictures);

  PictureFormat Format() const { return m_format; }
  std::filesystem::path File(int number) const;

 private:
  std::string m_pattern;
  PictureFormat m_format;
};

// Throws Failure when the folder in which a picture is to lie does not exist.
void CheckFolder(const std::filesystem::path& file);

// Writes the area's image. A picture that cannot be written whole leaves what was there before and throws Failure.
// A monochrome image becomes a grey PPM; a colour image cannot become a PGM.
void WritePicture(BBaseAoi& area, PictureFormat format, const std::filesystem::path& file);

}  // namespace Kelcam
