// file_pattern.h
// The names of pictures, and the format that a name stands for.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Kelcam {

enum class PictureFormat { kPng, kPgm, kPpm, kTiff };

// What a picture's name may hold.
struct PictureIdentity {
  int number = 0;                              // %d, or with zeros in front %04d
  std::chrono::system_clock::time_point time;  // %t
  std::string serial;                          // %s, the camera's; "unknown" where it is empty
  std::string camera;                          // %c, its identifier; the same
};

// A pattern of file names: the marks above are replaced, and %% is a percent sign. Nothing else in it is special. The
// pattern "-" is standard output.
class FilePattern {
 public:
  // format: none: that of the pattern's ending. Throws UsageError when the ending stands for no format, or when several
  // pictures would get one name.
  FilePattern(const std::string& pattern, std::optional<PictureFormat> format, int pictures);

  PictureFormat Format() const { return m_format; }
  static bool IsStandardOutput(const std::string& pattern);
  bool IsStandardOutput() const { return IsStandardOutput(m_text); }
  // Whether names are known before pictures are taken, and before a camera is open.
  bool HasTime() const;
  bool NamesCamera() const;
  // Throws UsageError when several cameras would write to one name, whatever their identifiers.
  void CheckForSeveralCameras() const;
  std::filesystem::path File(const PictureIdentity& picture) const;
  // As it was written.
  const std::string& Text() const { return m_text; }

 private:
  enum class Mark { kText, kNumber, kTime, kSerial, kCamera };
  struct Part {
    Mark mark;
    std::string text;       // of kText
    std::size_t width = 0;  // of kNumber
  };

  static std::vector<Part> Parts(const std::string& pattern);
  bool Has(Mark mark) const;

  std::string m_text;
  std::vector<Part> m_parts;
  PictureFormat m_format;
};

}  // namespace Kelcam
