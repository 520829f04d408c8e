// kelcam_test.h
// Runs kelcam as a process, in a folder of the test's own.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "nlohmann/json.hpp"
#include "support/process.h"

// The program's exit codes.
constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int kInterrupted = 130;

using Lines = std::vector<std::string>;

// The first and the last of the lines; all where there are not that many.
Lines First(const Lines& lines, std::size_t count);
Lines Last(const Lines& lines, std::size_t count);

class KelcamTest : public testing::Test {
 protected:
  using Arguments = std::vector<std::string>;

  KelcamTest();
  ~KelcamTest() override;

  // File names within the folder, in UTF-8, for command lines. The folder's own name is not plain ASCII.
  std::string In(const std::string& name) const;
  std::filesystem::path PathOf(const std::string& name) const;
  std::string Text(const std::string& name) const;
  std::string Write(const std::string& name, const std::string& text) const;  // returns In(name)
  Lines Files() const;                                                        // sorted

  // Environment of every later run.
  void Setting(const std::string& variable, const std::string& value) { m_environment[variable] = value; }

  Process Start(const Arguments& arguments) const;
  Process StartProgram(const std::filesystem::path& program, const Arguments& arguments) const;
  ProcessResult Kelcam(const Arguments& arguments) const { return Start(arguments).Wait(); }
  // The same, with Ctrl-C as soon as standard error has this text. The test fails when it does not come.
  ProcessResult InterruptedAt(const std::string& text, const Arguments& arguments) const;
  nlohmann::json Document(const Arguments& arguments) const;  // what kelcam --json prints
  // The same of a command that prints a document on each line.
  std::vector<nlohmann::json> DocumentLines(const Arguments& arguments) const;

 private:
  std::filesystem::path m_folder;
  std::map<std::string, std::string> m_environment;
};

// Over the scripted module.
class ScriptedKelcamTest : public KelcamTest {
 protected:
  ScriptedKelcamTest();

  void Script(const std::string& script) { Setting("KELCAM_TEST_SCRIPT", script); }
  // A word of a script: the codes with which a step ends, one time after the other.
  static std::string Codes(const std::string& step, const std::vector<int>& codes);

  // COMMAND --profile PROFILE and these arguments.
  Arguments With(const std::string& command, const Arguments& more = {}) const;
  ProcessResult Snap(const Arguments& more) const { return Kelcam(With("snap", more)); }

  // What the module was asked for in the last run, between opening and release.
  Lines Operations() const;
  // Whether the camera of the last run was released.
  bool IsReleased() const;
  // The command line as a POSIX shell takes it, with this text after it.
  static std::string ShellLine(const Arguments& arguments, const std::string& after = {});
  Process StartInShell(const std::string& line) const { return StartProgram("/bin/sh", {"-c", line}); }
  ProcessResult InShell(const Arguments& arguments, const std::string& after) const {
    return StartInShell(ShellLine(arguments, after)).Wait();
  }

  std::string m_profile;
  std::string m_log;
};
