// camera_choice.cpp
// A camera that the command line asks for.
#include "device/camera_choice.h"

#include <filesystem>

#include "base/failure.h"
#include "base/utf8.h"

namespace Kelcam {
namespace {

bool IsSame(const CameraChoice& a, const CameraChoice& b) {
  if (a.word != b.word) return false;
  return !a.word.empty() || IsSameFile(a.profile_file, b.profile_file);
}

}  // namespace

void CheckEachOnce(const std::vector<CameraChoice>& choices) {
  for (auto later = choices.begin(); later != choices.end(); ++later) {
    for (auto earlier = choices.begin(); earlier != later; ++earlier) {
      if (!IsSame(*earlier, *later)) continue;
      const bool is_other_name = earlier->Name() != later->Name();
      throw UsageError(later->Text() + (is_other_name ? " is " + earlier->Text() : "") +
                       ": a camera can be named only once");
    }
  }
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  if (std::filesystem::equivalent(Path(a), Path(b), error)) return true;
  const std::filesystem::path same = std::filesystem::weakly_canonical(Path(a), error);
  return !error && same == std::filesystem::weakly_canonical(Path(b), error) && !error;
}

}  // namespace Kelcam
