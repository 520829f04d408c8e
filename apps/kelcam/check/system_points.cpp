// system_points.cpp
// The points of a check that are about the computer, the library and its cameras.
#include "check/system_points.h"

#include <algorithm>

#include "base/report.h"
#include "base/text_table.h"

namespace Kelcam {
namespace {

constexpr const char* kTransportLayer = "GeVTLIsPresent = ";
constexpr double kBytesPerKibibyte = 1024.0;
constexpr double kMillisecondsPerSecond = 1000.0;
// A thread that is ready to run may wait so long for a busy processor.
constexpr double kShortestBufferMilliseconds = 10.0;
// What a gigabit link carries.
constexpr double kGigabitBytesPerSecond = 125e6;

std::string KibibytesOf(std::int64_t bytes) {
  return Fixed(static_cast<double>(bytes) / kBytesPerKibibyte, 0) + " KiB";
}

bool IsSimulated(const CheckFacts& facts) { return facts.system.library && facts.system.library->is_simulated; }

Judgement JudgeLibrary(const CheckFacts& facts) {
  const SystemFacts& system = facts.system;
  if (system.module_fault) {
    return Of(Verdict::kBroken, *system.module_fault, "name the right one: --vimbac FOLDER, --module FILE");
  }
  if (!system.library) return NotLookedAt("the module reaches its cameras without a VimbaC library");
  const LibraryFacts& library = *system.library;
  return Fine("VimbaC " + library.version + ", " + library.file +
              (library.is_simulated ? ", with simulated cameras: what follows is not about real ones" : ""));
}

Judgement JudgeTransportLayer(const CheckFacts& facts) {
  const SystemFacts& system = facts.system;
  if (system.module_fault) return NotLookedAt("the library is not loaded");
  if (!system.stuck.empty()) {
    return Broken("a call does not return: it waits for " + system.stuck, "repair Vimba's installation");
  }
  if (system.start_fault) return Of(Verdict::kBroken, *system.start_fault, "see the driver's messages: kelcam -v list");
  if (!system.was_asked) return NotLookedAt(facts.was_interrupted ? "stopped before" : "the library was not started");
  const auto line = std::find_if(system.start_lines.begin(), system.start_lines.end(),
                                 [](const std::string& text) { return Contains(text, kTransportLayer); });
  if (line == system.start_lines.end()) return NotLookedAt("the driver does not report it");
  return Fine("the library starts and has a transport layer for GigE cameras");
}

std::string CameraLine(const CameraRow& camera) {
  std::string text = CellOf(camera.model) + ", " + CellOf(camera.serial);
  if (camera.address) text += ", " + *camera.address;
  return text + ", access " + camera.access;
}

Judgement JudgeCameras(const CheckFacts& facts) {
  const SystemFacts& system = facts.system;
  if (!system.was_asked || system.start_fault) return NotLookedAt("the camera system was not started");
  if (system.identifiers.empty()) {
    return Broken("no camera is attached",
                  "check power, cable and firewall, and that camera and network adapter are in one subnet");
  }
  std::string found = Counted(system.identifiers.size(), "camera") + " attached";
  bool is_in_use = false;
  for (const CameraRow& camera : system.cameras.value_or(std::vector<CameraRow>())) {
    found += "; " + std::to_string(camera.number) + ": " + CameraLine(camera);
    is_in_use = is_in_use || camera.access != "full";
  }
  if (!is_in_use) return Fine(found);
  return Look(found, "end the program that has the camera open, if you want to use it here");
}

Judgement JudgeReceiveBuffer(const CheckFacts& facts) {
  const std::optional<std::int64_t>& limit = facts.system.receive_buffer_bytes;
  if (!limit) return NotLookedAt("this system has no limit for all programs");
  const double holds_ms = static_cast<double>(*limit) / kGigabitBytesPerSecond * kMillisecondsPerSecond;
  const std::string found = "net.core.rmem_max = " + std::to_string(*limit) + " (" + KibibytesOf(*limit) +
                            "): a receiving socket holds " + Fixed(holds_ms, 1) + " ms of a full gigabit link at most";
  if (IsSimulated(facts)) return NotLookedAt("simulated cameras use no network; " + found);
  if (holds_ms >= kShortestBufferMilliseconds) return Fine(found);
  return Look(found + "; a busy computer may be late by more, and then packets are lost",
              "sudo sysctl -w net.core.rmem_max=16777216 (if frames are incomplete; no effect on a library that takes "
              "its packets from a filter driver)");
}

constexpr SystemPoint kPoints[] = {
    {"library", "which VimbaC library was loaded, and from where", JudgeLibrary},
    {"transport layer", "whether the library starts, and can reach GigE cameras", JudgeTransportLayer},
    {"cameras", "which cameras are attached, and whether they can be opened", JudgeCameras},
    {"receive buffer", "how much of a camera's stream the system keeps for a late program", JudgeReceiveBuffer},
};

}  // namespace

std::span<const SystemPoint> SystemPoints() { return kPoints; }

}  // namespace Kelcam
