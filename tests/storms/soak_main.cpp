// soak_main.cpp
// Endurance: many thousand snaps with faults on two partner cameras, and a continuous run whose host pauses.
//   soak [--snaps N] [--seed S]     the last line is `soak: S snaps, F findings`
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>

#include "storms/findings.h"
#include "storms/pause.h"
#include "storms/soak.h"
#include "storms/watchdog.h"
#include "support/call_pairs.h"
#include "vimba_simulator.h"

namespace {

constexpr std::chrono::seconds kPatience{120};

}  // namespace

int main(int argc, char** argv) {
  SoakOptions options;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string name = argv[i];
    if (name == "--snaps") options.snaps = std::strtoull(argv[i + 1], nullptr, 10);
    if (name == "--seed") options.seed = std::strtoull(argv[i + 1], nullptr, 10);
  }
  Findings findings("soak");
  Watchdog watchdog(kPatience, [&] {
    findings.Report("it hangs");
    findings.PrintEnd();
  });
  const std::string again = "soak --snaps " + std::to_string(options.snaps) + " --seed " + std::to_string(options.seed);
  // A record of every call would be the growth that is looked for.
  VimbaSimRecordCalls(0);
  findings.BeginRun("partners, seed " + std::to_string(options.seed), again);
  std::uint64_t snaps = SoakPartners(options, findings, watchdog);
  watchdog.Feed();
  findings.BeginRun("pause", again);
  snaps += PauseAContinuousRun(findings);
  return findings.PrintEnd(snaps, "snaps");
}
