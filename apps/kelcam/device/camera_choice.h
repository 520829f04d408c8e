// camera_choice.h
// A camera that the command line asks for.
#pragma once

#include <string>
#include <vector>

namespace Kelcam {

struct CameraChoice {
  std::string profile_file;  // empty: none
  std::string word;          // what names the camera where there is no profile
  bool is_one_of_several = false;

  // "camera.ini", or the word.
  const std::string& Name() const { return word.empty() ? profile_file : word; }
  // As on the command line: "--profile camera.ini".
  std::string Text() const { return (word.empty() ? "--profile " : "--camera ") + Name(); }
  // "the camera of the profile camera.ini", or "the camera WORD".
  std::string Title() const { return (word.empty() ? "the camera of the profile " : "the camera ") + Name(); }
  // With which notices begin until the camera's identifier is known: "camera.ini: "; empty for one camera alone.
  std::string LabelBeforeOpening() const { return is_one_of_several ? Name() + ": " : std::string(); }
};

// Throws UsageError when a word or a file is there twice, the file under any of its names.
void CheckEachOnce(const std::vector<CameraChoice>& choices);

// Whether both names lead to one file, or would if it were there.
bool IsSameFile(const std::string& a, const std::string& b);

}  // namespace Kelcam
