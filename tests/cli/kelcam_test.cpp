// kelcam_test.cpp
// Runs kelcam as a process, in a folder of the test's own.
#include "kelcam_test.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>

namespace {

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace

Lines First(const Lines& lines, std::size_t count) {
  return Lines(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(std::min(count, lines.size())));
}

Lines Last(const Lines& lines, std::size_t count) {
  return Lines(lines.end() - static_cast<std::ptrdiff_t>(std::min(count, lines.size())), lines.end());
}

KelcamTest::KelcamTest() {
  // Several test processes run at once, each with a folder of its own.
  std::random_device random;
  const std::u8string name = u8"kelcam t\u00e4st \u65e5\u672c ";
  do {
    m_folder =
        std::filesystem::temp_directory_path() / (name + std::filesystem::path(std::to_string(random())).u8string());
  } while (!std::filesystem::create_directory(m_folder));
}

KelcamTest::~KelcamTest() {
  std::error_code ignored;
  std::filesystem::remove_all(m_folder, ignored);
}

std::filesystem::path KelcamTest::PathOf(const std::string& name) const {
  return m_folder / std::u8string(name.begin(), name.end());
}

std::string KelcamTest::In(const std::string& name) const { return Utf8(PathOf(name)); }

std::string KelcamTest::Text(const std::string& name) const {
  std::ifstream file(PathOf(name), std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::string KelcamTest::Write(const std::string& name, const std::string& text) const {
  std::ofstream(PathOf(name), std::ios::binary) << text;
  return In(name);
}

Lines KelcamTest::Files() const {
  Lines names;
  for (const auto& entry : std::filesystem::directory_iterator(m_folder))
    names.push_back(Utf8(entry.path().filename()));
  std::sort(names.begin(), names.end());
  return names;
}

Process KelcamTest::Start(const Arguments& arguments) const { return StartProgram(ProgramFile("kelcam"), arguments); }

Process KelcamTest::StartProgram(const std::filesystem::path& program, const Arguments& arguments) const {
  return Process(program, arguments, m_environment);
}

ProcessResult KelcamTest::InterruptedAt(const std::string& text, const Arguments& arguments) const {
  Process kelcam = Start(arguments);
  EXPECT_TRUE(kelcam.WaitForError(text)) << text;
  EXPECT_TRUE(kelcam.Interrupt());
  return kelcam.Wait();
}

nlohmann::json KelcamTest::Document(const Arguments& arguments) const {
  Arguments with_json{"--json"};
  with_json.insert(with_json.end(), arguments.begin(), arguments.end());
  return nlohmann::json::parse(Kelcam(with_json).out);
}

std::vector<nlohmann::json> KelcamTest::DocumentLines(const Arguments& arguments) const {
  Arguments with_json{"--json"};
  with_json.insert(with_json.end(), arguments.begin(), arguments.end());
  std::vector<nlohmann::json> documents;
  std::istringstream out(Kelcam(with_json).out);
  for (std::string line; std::getline(out, line);) documents.push_back(nlohmann::json::parse(line));
  return documents;
}

ScriptedKelcamTest::ScriptedKelcamTest() : m_profile(Write("camera.ini", "API = Vimba\n")), m_log(In("log.txt")) {}

KelcamTest::Arguments ScriptedKelcamTest::With(const std::string& command, const Arguments& more) const {
  Arguments arguments{"--module", Utf8(ProgramFile("kelcam").parent_path() / "kelcam-scripted-module.module"), "--log",
                      m_log, command};
  if (command != "list") arguments.insert(arguments.end(), {"--profile", m_profile});
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

std::string ScriptedKelcamTest::Codes(const std::string& step, const std::vector<int>& codes) {
  std::string word = step;
  for (const int code : codes) word.append(word == step ? "=" : ",").append(std::to_string(code));
  return word;
}

bool ScriptedKelcamTest::IsReleased() const {
  return Text("log.txt").find("=== LogMessage\nRelease\n") != std::string::npos;
}

Lines ScriptedKelcamTest::Operations() const {
  Lines operations;
  std::istringstream log(Text("log.txt"));
  for (std::string line; std::getline(log, line);) {
    if (line != "=== LogMessage" || !std::getline(log, line)) continue;
    if (line.rfind("Create ", 0) != 0 && line != "Release") operations.push_back(line);
  }
  return operations;
}

std::string ScriptedKelcamTest::ShellLine(const Arguments& arguments, const std::string& after) {
  std::string line = "'" + Utf8(ProgramFile("kelcam")) + "'";
  for (const std::string& word : arguments) line.append(" '").append(word).append("'");
  return line + " " + after;
}
