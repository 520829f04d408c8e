// command_profile.cpp
// kelcam profile new, kelcam profile check.
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "base/report.h"
#include "base/utf8.h"
#include "commands/commands.h"
#include "profile_text/new_profile.h"
#include "profile_text/profile_check.h"

namespace Kelcam {
namespace {

void CheckIsNew(const std::string& file) {
  if (std::filesystem::exists(Path(file))) throw Failure("the profile " + file + " is there already");
}

void WriteNew(const std::string& file, const std::string& text) {
  errno = 0;
  std::ofstream out(Path(file), std::ios::binary);
  out << text;
  out.close();
  if (out) return;
  const std::string reason = std::strerror(errno);
  std::error_code ignored;
  std::filesystem::remove(Path(file), ignored);
  throw Failure("the profile " + file + " cannot be written: " + reason);
}

Json ToJson(const ProfileFinding& finding) {
  Json line, nearest;
  if (finding.line > 0) line = finding.line;
  if (!finding.nearest.empty()) nearest = finding.nearest;
  return {{"line", line}, {"key", finding.key}, {"text", finding.text}, {"nearest", nearest}};
}

}  // namespace

ExitCode RunProfileNew(const Options& options, const Module& module, MessageLog& log) {
  CheckIsNew(options.new_file);
  const NewProfile profile = ProfileOfCamera(options.camera, module, log);
  WriteNew(options.new_file, profile.text);
  if (options.json) {
    PrintDocument({{"file", options.new_file}, {"camera", profile.camera}});
  } else {
    std::cout << options.new_file << ": the profile of " << profile.camera << "\n";
  }
  return kDone;
}

ExitCode RunProfileCheck(const Options& options) {
  const std::vector<ProfileFinding> findings = FindingsIn(options.profile_file);
  if (options.json) {
    Json all = Json::array();
    for (const ProfileFinding& finding : findings) all.push_back(ToJson(finding));
    PrintDocument({{"file", options.profile_file}, {"findings", all}});
  } else {
    for (const ProfileFinding& finding : findings) std::cout << finding.Sentence(options.profile_file) << "\n";
    if (findings.empty()) std::cout << options.profile_file << ": nothing is wrong\n";
  }
  return findings.empty() ? kDone : kFailed;
}

}  // namespace Kelcam
