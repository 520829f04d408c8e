// writers_test.cpp
// Several writers of one profile.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "biniprofile.h"
#include "ini_file.h"
#include "support/process.h"

namespace {

constexpr int kWriters = 4;
constexpr int kKeys = 20;

std::string PrefixOf(int writer) { return "W" + std::to_string(writer) + "_"; }

// What the writers' keys come to, sorted.
std::vector<std::string> AllLines() {
  std::vector<std::string> lines = {"A=1"};
  for (int writer = 0; writer < kWriters; ++writer) {
    for (int key = 0; key < kKeys; ++key) {
      lines.push_back(PrefixOf(writer) + std::to_string(key) + "=" + std::to_string(key));
    }
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::vector<std::string> SortedLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  std::sort(lines.begin(), lines.end());
  return lines;
}

TEST(ProfileWriters, OfSeveralProcessesLoseNothing) {
  const IniFile file("A=1\n");
  std::vector<std::unique_ptr<Process>> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.push_back(std::make_unique<Process>(
        ProgramFile("profile-writer"),
        std::vector<std::string>{file.Path().string(), PrefixOf(writer), std::to_string(kKeys)}));
  }
  for (const auto& writer : writers) {
    const ProcessResult result = writer->Wait();
    EXPECT_EQ(result.exit_code, 0) << result.err;
  }

  EXPECT_EQ(SortedLines(file.Bytes()), AllLines());
  EXPECT_EQ(file.Neighbours(), (std::vector<std::string>{"camera.ini"}));
}

TEST(ProfileWriters, OfSeveralThreadsLoseNothing) {
  const IniFile file("A=1\n");
  std::vector<std::thread> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.emplace_back([&file, writer] {
      BIniProfile profile(file.Name());
      for (int key = 0; key < kKeys; ++key) {
        const std::string name = PrefixOf(writer) + std::to_string(key);
        EXPECT_TRUE(profile.Write(ToWString(name.c_str()), WString::Format(L"%d", key)));
      }
    });
  }
  for (std::thread& writer : writers) writer.join();

  EXPECT_EQ(SortedLines(file.Bytes()), AllLines());
}

}  // namespace
