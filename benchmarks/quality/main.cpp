// main.cpp
// Prints how near demosaiced photographs and the test chart come to the originals, ours beside OpenCV's.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "demosaicing.h"
#include "original.h"

namespace {

// Debian package mate-backgrounds.
constexpr const char* kPhotographs = "/usr/share/backgrounds/mate/nature";

std::vector<std::string> PicturesIn(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string ending = entry.path().extension().string();
    if (ending == ".jpg" || ending == ".png") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void PrintRow(const std::string& name, const std::vector<double>& results) {
  std::printf("| %s |", name.c_str());
  for (double result : results) std::printf(" %.2f |", result);
  std::printf("\n");
}

void PrintTable(const std::vector<std::string>& files) {
  std::printf("| colour PSNR, dB |");
  for (const std::string& name : WayNames()) std::printf(" %s |", name.c_str());
  std::printf("\n|---|");
  for (std::size_t i = 0; i < WayNames().size(); ++i) std::printf("---:|");
  std::printf("\n");
  std::vector<double> mean(WayNames().size(), 0.0);
  for (const std::string& file : files) {
    const Original photograph = HalvedPhotograph(file);
    const std::vector<double> results = ColourPsnr(photograph);
    for (std::size_t i = 0; i < mean.size(); ++i) mean[i] += results[i] / static_cast<double>(files.size());
    PrintRow(photograph.name, results);
  }
  if (!files.empty()) PrintRow("mean of the photographs", mean);
  PrintRow("test chart", ColourPsnr(TestChart()));
}

}  // namespace

int main(int argc, char** argv) {
  std::string folder = kPhotographs;
  CLI::App app("Demosaicing quality: colour PSNR of photographs and the test chart");
  app.add_option("folder", folder, "Folder with the photographs (.jpg, .png)")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  try {
    PrintTable(PicturesIn(folder));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_quality: %s\n", error.what());
    return 1;
  }
}
