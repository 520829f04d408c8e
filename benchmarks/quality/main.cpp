// main.cpp
// Prints how near demosaiced photographs and the test chart come to the originals, ours beside others.
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

// The second row of a table, below the names of its columns.
void PrintRule(std::size_t columns) {
  std::printf("|---|");
  for (std::size_t i = 0; i < columns; ++i) std::printf("---:|");
  std::printf("\n");
}

std::vector<double> PsnrOf(const std::vector<Score>& scores) {
  std::vector<double> list;
  for (const Score& score : scores) list.push_back(score.psnr_db);
  return list;
}

void PrintPictures(const std::vector<std::vector<Score>>& photographs, const std::vector<std::string>& names) {
  std::printf("| colour PSNR, dB |");
  for (const std::string& name : WayNames()) std::printf(" %s |", name.c_str());
  std::printf("\n");
  PrintRule(WayNames().size());
  for (std::size_t i = 0; i < photographs.size(); ++i) PrintRow(names[i], PsnrOf(photographs[i]));
  PrintRow("test chart", PsnrOf(Scores(TestChart())));
}

void PrintWays(const std::vector<std::vector<Score>>& photographs) {
  std::printf("\n| way | mean of the photographs, dB | worst photograph, dB | ms for a megapixel |\n");
  PrintRule(3);
  for (std::size_t way = 0; way < WayNames().size(); ++way) {
    double mean = 0;
    double worst = 1000;
    double ms = 0;
    for (const std::vector<Score>& scores : photographs) {
      mean += scores[way].psnr_db / static_cast<double>(photographs.size());
      worst = std::min(worst, scores[way].psnr_db);
      ms += scores[way].ms_per_megapixel / static_cast<double>(photographs.size());
    }
    PrintRow(WayNames()[way], {mean, worst, ms});
  }
}

void PrintTables(const std::vector<std::string>& files) {
  std::vector<std::vector<Score>> photographs;
  std::vector<std::string> names;
  for (const std::string& file : files) {
    const Original photograph = HalvedPhotograph(file);
    photographs.push_back(Scores(photograph));
    names.push_back(photograph.name);
  }
  PrintPictures(photographs, names);
  if (!files.empty()) PrintWays(photographs);
}

}  // namespace

int main(int argc, char** argv) {
  std::string folder = kPhotographs;
  CLI::App app("Demosaicing quality: colour PSNR of photographs and the test chart");
  app.add_option("folder", folder, "Folder with the photographs (.jpg, .png)")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  try {
    PrintTables(PicturesIn(folder));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_quality: %s\n", error.what());
    return 1;
  }
}
