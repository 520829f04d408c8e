// page_files.h
// The files of the page, which the build puts into the program.
#pragma once

#include <span>
#include <string_view>

namespace Kelcam {

struct PageFile {
  std::string_view name;
  std::string_view content;
};

std::span<const PageFile> PageFiles();

}  // namespace Kelcam
