// run_corpus.cpp
// Gives a target every file of the folders that the arguments name. An input that breaks a promise ends the program.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "fuzz/fuzz_input.h"

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void Run(const std::filesystem::path& file) {
  // Printed first: it is the last line when the target ends the program.
  std::cout << file.filename().string() << std::endl;
  std::ifstream stream(file, std::ios::binary);
  const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
  // A copy of exactly these bytes, as libFuzzer passes them.
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const std::filesystem::path& file : FilesOf(argv[i])) {
      Run(file);
      ++count;
    }
  }
  std::cout << count << " inputs\n";
  return count != 0 ? 0 : 1;
}
