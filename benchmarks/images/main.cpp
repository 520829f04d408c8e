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

int main(int argc, char** argv) {
  std::string json_file;
  std::string kernels;
  std::string only;
  double budget_ms = 400;
  int width = 0;
  CLI::App app("Image conversions beside those of OpenCV and libyuv, one core, medians");
  app.add_option("--json", json_file, "Write the results to this file, too");
  app.add_option("--kernels", kernels, "Take these row kernels rather than the processor's best");
  app.add_option("--only", only, "Measure only works whose name contains this");
  app.add_option("--width", width, "Measure only the size of this width");
  app.add_option("--budget", budget_ms, "Milliseconds to spend on each row of the table");
  CLI11_PARSE(app, argc, argv);
  if (!kernels.empty() && !Rows::UseKernels(kernels.c_str())) {
    std::fprintf(stderr, "bench_images: this processor has no row kernels \"%s\"\n", kernels.c_str());
    return 2;
  }
  cv::setNumThreads(1);

  std::printf("Row kernels: %s\n\n", kernels.empty() ? Rows::KernelNames()[0] : kernels.c_str());
  std::vector<Measured> results;
  for (const BSize size : {BSize{640, 480}, BSize{1292, 964}, BSize{2464, 2056}, BSize{4096, 3000}}) {
    if (width != 0 && width != size.width) continue;
    for (const Work& work : WorksOn(size)) {
      if (work.name.find(only) == std::string::npos) continue;
      results.push_back(Measure(work, size, budget_ms));
      if (isatty(STDERR_FILENO)) std::fprintf(stderr, "\r%zu rows", results.size());
    }
  }
  if (isatty(STDERR_FILENO)) std::fprintf(stderr, "\r");
  std::printf("%s", TableOf(results).c_str());
  if (json_file.empty()) return 0;
  // What cannot be made is reported below.
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(json_file).parent_path(), ignored);
  std::ofstream out(json_file);
  out << JsonOf(results);
  if (!out.flush()) {
    std::fprintf(stderr, "bench_images: cannot write %s\n", json_file.c_str());
    return 1;
  }
  return 0;
}
