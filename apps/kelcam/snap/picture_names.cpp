// picture_names.cpp
// Whether several cameras write to different files.
#include "snap/picture_names.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <iterator>
#include <string>
#include <utility>

#include "base/failure.h"
#include "base/report.h"
#include "base/utf8.h"
#include "picture/file_pattern.h"
#include "picture/picture_details.h"

namespace Kelcam {
namespace {

std::string InLowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

std::string NameOf(const FilePattern& pattern, PictureIdentity picture, int number) {
  picture.number = number;
  return InLowerCase(Utf8(pattern.File(picture)));
}

// Names of one length differ in their cameras or not at all. In others "1" and picture 11 may be "11" and picture 1.
int NumbersToCompare(const FilePattern& pattern, const std::vector<PictureIdentity>& pictures, int images) {
  const auto length = [&](const PictureIdentity& picture) { return NameOf(pattern, picture, 1).size(); };
  const bool is_one_length = std::all_of(pictures.begin(), pictures.end(), [&](const PictureIdentity& picture) {
    return length(picture) == length(pictures.front());
  });
  return is_one_length ? 1 : images;
}

}  // namespace

void CheckNamesDiffer(const Options& options, const std::vector<const CameraSession*>& cameras) {
  const FilePattern pattern(options.pattern, options.format, options.images);
  std::vector<PictureIdentity> pictures;
  pictures.reserve(cameras.size());
  for (const CameraSession* camera : cameras) pictures.push_back(IdentityOf(camera->Device()));
  const int numbers = NumbersToCompare(pattern, pictures, options.images);
  std::vector<std::pair<std::size_t, std::size_t>> names;  // each one's hash, and its camera
  for (std::size_t i = 0; i < cameras.size(); ++i) {
    for (int number = 1; number <= numbers; ++number) {
      names.emplace_back(std::hash<std::string>()(NameOf(pattern, pictures[i], number)), i);
    }
  }
  std::sort(names.begin(), names.end());
  const auto is_of_two = [](const auto& a, const auto& b) { return a.first == b.first && a.second != b.second; };
  const auto same = std::adjacent_find(names.begin(), names.end(), is_of_two);
  if (same == names.end()) return;
  throw UsageError("-o " + options.pattern + ": " + Printable(cameras[same->second]->Identifier()) + " and " +
                   Printable(cameras[std::next(same)->second]->Identifier()) + " would write to one file");
}

}  // namespace Kelcam
