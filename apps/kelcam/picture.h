// picture.h
// Pictures as files: PNG, and the plain binary PGM and PPM.
#pragma once

#include <filesystem>
#include <string>

#include "bbaseaoi.h"

namespace kelcam {

enum class PictureFormat { ePng, ePgm, ePpm };

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
// A monochrome image goes into a PPM as grey; a colour image does not go into a PGM.
void WritePicture(BBaseAoi& area, PictureFormat format, const std::filesystem::path& file);

}  // namespace kelcam
