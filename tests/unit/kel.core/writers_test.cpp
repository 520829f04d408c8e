// writers_test.cpp
// Several writers of one profile.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "biniprofile.h"
#include "ini_file.h"
#include "support/process.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

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

// Another writer that has locked the profile.
class HeldLock {
 public:
  explicit HeldLock(const std::filesystem::path& profile) {
#ifdef _WIN32
    const std::wstring name = profile.wstring() + L".lock";
    m_handle = ::CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    EXPECT_NE(m_handle, INVALID_HANDLE_VALUE);
#else
    m_descriptor = ::open(profile.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(::flock(m_descriptor, LOCK_EX), 0);
#endif
  }
  ~HeldLock() {
#ifdef _WIN32
    ::CloseHandle(m_handle);
#else
    ::close(m_descriptor);
#endif
  }
  HeldLock(const HeldLock&) = delete;
  HeldLock& operator=(const HeldLock&) = delete;

 private:
#ifdef _WIN32
  HANDLE m_handle;
#else
  int m_descriptor;
#endif
};

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
  writers.reserve(kWriters);
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
  writers.reserve(kWriters);
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

TEST(ProfileWriters, WaitInVainForOneThatDoesNotEnd) {
  const IniFile file("A=1\n");
  BIniProfile profile(file.Name());
  {
    const HeldLock lock(file.Path());

    EXPECT_FALSE(profile.Write(L"A", L"2"));
    EXPECT_TRUE(profile.Write(L"A", L"1")) << "the file holds that already";
  }
  EXPECT_EQ(profile.Complaints().front().Str(), file.Name().Str() + L": A = 2 is not saved: Device or resource busy");
  EXPECT_EQ(file.Bytes(), "A=1\n");
  EXPECT_TRUE(profile.Write(L"A", L"3"));

  EXPECT_EQ(file.Bytes(), "A=3\n");
}

}  // namespace
