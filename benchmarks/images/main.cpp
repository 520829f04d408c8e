// main.cpp
// Measures the image conversions beside those of OpenCV and libyuv, on one core.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "rows/row_kernels.h"
#include "side_by_side.h"
#include "works.h"

namespace {

struct Options {
  std::string json_file;
  std::string kernels;
  std::string only;
  double budget_ms = 400;
  int width = 0;
};

// The row kernels to measure: those asked for, or all that this processor can run, best first.
std::vector<std::string> KernelsToMeasure(const Options& options) {
  if (!options.kernels.empty()) return {options.kernels};
  std::vector<std::string> names;
  for (const char* const* name = Rows::KernelNames(); *name != nullptr; ++name) names.emplace_back(*name);
  return names;
}

std::vector<Measured> MeasureAll(const Options& options, const std::string& kernels) {
  std::vector<Measured> results;
  for (const BSize size : {BSize{640, 480}, BSize{1292, 964}, BSize{2464, 2056}, BSize{4096, 3000}}) {
    if (options.width != 0 && options.width != size.width) continue;
    for (const Work& work : WorksOn(size)) {
      if (work.name.find(options.only) == std::string::npos) continue;
      results.push_back(Measure(work, size, kernels, options.budget_ms));
      if (isatty(STDERR_FILENO)) std::fprintf(stderr, "\r%s: %zu rows ", kernels.c_str(), results.size());
    }
  }
  if (isatty(STDERR_FILENO)) std::fprintf(stderr, "\r");
  return results;
}

bool WriteJson(const std::string& file, const std::vector<Measured>& results) {
  // What cannot be made is reported below.
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(file).parent_path(), ignored);
  std::ofstream out(file);
  out << JsonOf(results);
  if (out.flush()) return true;
  std::fprintf(stderr, "bench_images: cannot write %s\n", file.c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Image conversions beside those of OpenCV and libyuv, one core, medians");
  app.add_option("--json", options.json_file, "Write the results to this file, too");
  app.add_option("--kernels", options.kernels,
                 "Measure only these row kernels rather than all that the processor can run");
  app.add_option("--only", options.only, "Measure only works whose name contains this");
  app.add_option("--width", options.width, "Measure only the size of this width");
  app.add_option("--budget", options.budget_ms, "Milliseconds to spend on each row of the table");
  CLI11_PARSE(app, argc, argv);
  cv::setNumThreads(1);

  std::vector<Measured> results;
  for (const std::string& kernels : KernelsToMeasure(options)) {
    if (!Rows::UseKernels(kernels.c_str())) {
      std::fprintf(stderr, "bench_images: this processor has no row kernels \"%s\"\n", kernels.c_str());
      return 2;
    }
    const std::vector<Measured> of_kernels = MeasureAll(options, kernels);
    std::printf("Row kernels: %s\n\n%s\n", kernels.c_str(), TableOf(of_kernels).c_str());
    std::fflush(stdout);
    results.insert(results.end(), of_kernels.begin(), of_kernels.end());
  }
  return options.json_file.empty() || WriteJson(options.json_file, results) ? 0 : 1;
}
