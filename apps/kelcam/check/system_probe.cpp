// system_probe.cpp
// Measures what a check says of the computer, the library and its cameras.
#include "check/system_probe.h"

#include <thread>

#include "base/report.h"
#include "base/utf8.h"
#include "device/attached_cameras.h"
#include "device/opening_explained.h"
#include "picture/image_time.h"

namespace Kelcam {

SystemFacts SystemFactsNow() {
  SystemFacts facts;
  facts.program = std::string("kelcam ") + KEL_VERSION;
  facts.system = SystemName();
  facts.processors = std::thread::hardware_concurrency();
  facts.time = LocalTimeOf(std::chrono::system_clock::now()).Extended();
  facts.receive_buffer_bytes = ReceiveBufferLimitBytes();
  return facts;
}

std::optional<LibraryFacts> LibraryFactsOf(const Module& module) {
  const std::optional<VimbaLibrary>& vimba = module.Vimba();
  if (!vimba) return std::nullopt;
  return LibraryFacts{vimba->Version(), Utf8(vimba->File()), vimba->IsSimulated()};
}

void ListCameras(const Module& module, MessageLog& log, KnownFacts& known) {
  const MessageMemory& messages = log.Messages();
  const std::uint64_t first_message = messages.Count();
  known.Begin(Operation::kListing, first_message);
  CallWatch watch(messages);
  const std::optional<std::vector<std::string>> identifiers = AttachedCameras(module, watch);
  const Lines lines = LinesOf(messages.MessagesSince(first_message));
  known.Update([&](CheckFacts& facts) {
    facts.system.was_asked = true;
    facts.system.start_lines = lines;
    if (identifiers) facts.system.identifiers = *identifiers;
  });
  if (!identifiers) {
    const Fault fault = OpeningFault("the camera system cannot be started", {.lines = lines, .profile = {}}, messages);
    known.Update([&](CheckFacts& facts) { facts.system.start_fault = fault; });
    return;
  }
  if (!module.Vimba()) return;
  const std::vector<CameraRow> cameras = CameraTable(module);
  known.Update([&](CheckFacts& facts) { facts.system.cameras = cameras; });
}

}  // namespace Kelcam
