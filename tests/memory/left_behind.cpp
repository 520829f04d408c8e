// left_behind.cpp
// What the library, the file system and this process have of a life that is over.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <thread>

#include "berror.h"
#include "memory/device_life.h"
#include "support/simulator_text.h"
#include "vimba_simulator.h"

namespace Memory {
namespace {

// Workers that have done their work still have to end.
constexpr std::chrono::seconds kEndOfThreads{2};

std::size_t CountEntries(const char* folder) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    static_cast<void>(entry);
    ++count;
  }
  return count;
}

void LookAtState(Findings& findings) {
  const auto state = nlohmann::json::parse(SimulatorText(VimbaSimState));
  if (state["started"] != false) findings.push_back("Vimba is not shut down");
  for (const auto& [id, camera] : state["cameras"].items()) {
    if (camera["openHandles"] != 0) findings.push_back(id + " is open");
    if (camera["announced"] != 0) findings.push_back(id + " has frames");
    if (camera["capturing"] != false || camera["acquiring"] != false) findings.push_back(id + " is running");
  }
}

// The first argument.
std::string CameraOf(const std::string& call) {
  const std::size_t begin = call.find('(') + 1;
  return call.substr(begin, call.find_first_of(",)", begin) - begin);
}

// Each call that takes something has its counterpart.
void LookAtCalls(Findings& findings) {
  std::map<std::string, int> counts;
  std::map<std::string, int> announced;
  std::istringstream calls(SimulatorText(VimbaSimCalls));
  for (std::string line; std::getline(calls, line);) {
    const std::string function = line.substr(0, line.find('('));
    const std::string camera = CameraOf(line);
    if (camera == "unknown") findings.push_back("a call on a closed camera: " + line);
    if (function != "VmbShutdown" && !line.ends_with(" = 0")) continue;
    ++counts[function];
    if (function == "VmbFrameAnnounce") ++announced[camera];
    if (function == "VmbFrameRevokeAll") announced[camera] = 0;
    if (function == "VmbCameraClose" && announced[camera] != 0) findings.push_back(camera + " has frames when closed");
  }
  if (counts["VmbStartup"] != counts["VmbShutdown"]) findings.push_back("VmbStartup and VmbShutdown do not match");
  if (counts["VmbCameraOpen"] != counts["VmbCameraClose"]) findings.push_back("a camera is not closed");
}

void LookAtProfile(const ProfileFile& file, Findings& findings) {
  const std::filesystem::path folder = file.Path().parent_path();
  if (CountEntries(folder.c_str()) != 1) findings.push_back("there is a file beside the profile");
  try {
    WString api;
    if (!file.Open()->ReadString(L"API", api) || api != L"Vimba") findings.push_back("the profile has lost its keys");
  } catch (const BError& error) {
    findings.push_back("the profile cannot be read: " + ToBString(error.Message()).Str());
  }
}

}  // namespace

bool IsAnyCameraRunning() {
  const auto state = nlohmann::json::parse(SimulatorText(VimbaSimState));
  const auto& cameras = state["cameras"];
  return std::any_of(cameras.begin(), cameras.end(), [](const auto& camera) { return camera["acquiring"] == true; });
}

std::size_t CountThreads() { return CountEntries("/proc/self/task"); }
std::size_t CountDescriptors() { return CountEntries("/proc/self/fd"); }

Findings WhatIsLeft(const World& world, std::size_t threads, std::size_t descriptors) {
  Findings findings;
  LookAtState(findings);
  LookAtCalls(findings);
  LookAtProfile(world.ColourProfile(), findings);
  LookAtProfile(world.MonoProfile(), findings);
  const auto deadline = std::chrono::steady_clock::now() + kEndOfThreads;
  while (CountThreads() > threads && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  if (CountThreads() > threads) findings.push_back("a thread is left");
  if (CountDescriptors() > descriptors) findings.push_back("a descriptor is left");
  return findings;
}

}  // namespace Memory
