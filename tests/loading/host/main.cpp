// main.cpp
// Loads the module, uses a camera through it and unloads it, again and again.
//   loading-host MODULE PROFILE ROUNDS     prints "handles threads heap_bytes" after each round
#include <atomic>
#include <chrono>
#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bbaseaoi.h"
#include "imagingdevice.h"
#include "loaded_module.h"
#include "process_resources.h"

namespace {

constexpr std::uint32_t kTimeoutMs = 5000;
constexpr std::chrono::seconds kThreadsEndWithin{10};

void Require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

void Snap(BImagingDevice& device) {
  const BSmartRef<BBaseAoi> area(new BBaseAoi(BBaseAoi::eMono8));
  device.StartSnap(true);
  const BError error = device.Snap(area.Get(), kTimeoutMs);
  device.StopSnap();
  if (error.IsError()) throw error;
  Require(area->Mono() && area->Mono()->Size().width > 0, "the picture is empty");
}

void UseModule(const std::string& file, const std::string& profile_file) {
  const LoadedModule module(file);
  DList<WString> identifiers;
  module.list(identifiers);
  Require(identifiers.Count() == 1, "not the one camera is listed");
  BImagingDevice* device = module.create(new BCamProfile(ToWString(profile_file.c_str())));
  Require(device != nullptr, "the camera does not open");
  Snap(*device);
  Require(module.release(&device), "the camera does not close");
}

// A thread that has left the module still has to leave the system.
ProcessResources ResourcesOnceAlone() {
  const auto deadline = std::chrono::steady_clock::now() + kThreadsEndWithin;
  ProcessResources held = ProcessResources::Now();
  while (held.threads > 1 && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::yield();
    held = ProcessResources::Now();
  }
  return held;
}

// The runtime keeps a record, with handles, of as many threads as have ever run at the same time. On a busy machine
// that is more than on another, so all the records that there may be are made first.
void HaveThreadsRunTogether() {
  constexpr int kMost = 32;
  std::atomic<int> there{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < kMost; ++i) {
    threads.emplace_back([&] {
      ++there;
      while (there < kMost) std::this_thread::yield();
    });
  }
  for (std::thread& thread : threads) thread.join();
}

void Run(const std::string& file, const std::string& profile_file, int rounds) {
  HaveThreadsRunTogether();
  for (int round = 0; round < rounds; ++round) {
    UseModule(file, profile_file);
    Require(!LoadedModule::IsLoaded(file), "the module is still loaded");
    const ProcessResources held = ResourcesOnceAlone();
    std::cout << held.handles << " " << held.threads << " " << held.heap_bytes << "\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: loading-host MODULE PROFILE ROUNDS\n";
    return 2;
  }
  try {
    Run(argv[1], argv[2], std::stoi(argv[3]));
    return 0;
  } catch (const BError& error) {
    std::cerr << "error " << error.ErrorCode() << ": " << ToBString(error.Message()).c_str() << "\n";
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << "\n";
  }
  return 1;
}
