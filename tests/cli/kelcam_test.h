// kelcam_test.h
// Runs kelcam as a process, in a folder of the test's own.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "nlohmann/json.hpp"
#include "support/process.h"

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
  std::vector<std::string> Files() const;                                     // sorted

  // Environment of every later run.
  void Setting(const std::string& variable, const std::string& value) { m_environment[variable] = value; }

  Process Start(const Arguments& arguments) const;
  ProcessResult Kelcam(const Arguments& arguments) const { return Start(arguments).Wait(); }
  nlohmann::json Document(const Arguments& arguments) const;  // what kelcam --json prints

 private:
  std::filesystem::path m_folder;
  std::map<std::string, std::string> m_environment;
};

// Over the scripted module.
class ScriptedKelcamTest : public KelcamTest {
 protected:
  ScriptedKelcamTest();

  void Script(const std::string& script) { Setting("KELCAM_TEST_SCRIPT", script); }

  // COMMAND --profile PROFILE and these arguments.
  Arguments With(const std::string& command, const Arguments& more = {}) const;
  ProcessResult Snap(const Arguments& more) const { return Kelcam(With("snap", more)); }

  // What the module was asked for in the last run, the opening and the release left out.
  std::vector<std::string> Operations() const;

  std::string profile;
};
