// main.cpp
// Presses the module harder than a host does, within what a host may do.
//   storms [--few] [--only NAME] [--runs N] [--seed S]     the last line is `storms: R runs, F findings`
//   storms --list                                          the names of the storms
// A run has the seed of the first run plus its number. What finds something prints how to run just that again.
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>

#include "storms/findings.h"
#include "storms/storm.h"
#include "storms/watchdog.h"
#include "support/call_pairs.h"

namespace {

// Far more than a run takes under a sanitizer on a busy machine.
constexpr std::chrono::seconds kPatience{120};
constexpr std::uint64_t kFirstSeed = 1;

struct Options {
  bool few = false;
  bool list = false;
  std::string only;
  int runs = 0;
  std::uint64_t seed = kFirstSeed;
};

bool Parse(std::span<char*> arguments, Options& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string name = arguments[i];
    const char* const value = i + 1 < arguments.size() ? arguments[i + 1] : nullptr;
    if (name == "--few") {
      options.few = true;
    } else if (name == "--list") {
      options.list = true;
    } else if (!value) {
      return false;
    } else if (name == "--only") {
      options.only = arguments[++i];
    } else if (name == "--runs") {
      options.runs = std::atoi(arguments[++i]);
    } else if (name == "--seed") {
      options.seed = std::strtoull(arguments[++i], nullptr, 10);
    } else {
      return false;
    }
  }
  return true;
}

void ReportHang(Findings& findings) {
  constexpr std::size_t kCallsShown = 10;
  std::string where = "it hangs; the last calls of the library:";
  for (const std::string& call : LastRecordedCalls(kCallsShown)) where += "\n    " + call;
  findings.Report(where);
  findings.PrintEnd();
}

void Rage(const Storm& storm, const Options& options, Findings& findings, Watchdog& watchdog) {
  const int runs = options.runs > 0 ? options.runs : options.few ? storm.few_runs : storm.runs;
  const auto began = std::chrono::steady_clock::now();
  for (int run = 0; run < runs; ++run) {
    const std::uint64_t seed = options.seed + static_cast<std::uint64_t>(run);
    findings.BeginRun(std::string(storm.name) + ", seed " + std::to_string(seed),
                      "storms --only " + std::string(storm.name) + " --runs 1 --seed " + std::to_string(seed));
    watchdog.Feed();
    Random random(seed);
    storm.run(findings, random);
  }
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
  std::cout << storm.name << ": " << storm.what << ": " << runs << " runs from seed " << options.seed << " in "
            << static_cast<int>(took.count()) << " s" << std::endl;
}

}  // namespace

std::span<const Storm> Storms() {
  static constexpr Storm kStorms[] = {
      {"release", "a device is released ten times while its frames stream", 100, 2, ReleaseWhileStreaming},
      {"partners-2", "two partners are released while the other snaps", 60, 2, ReleaseTwoPartners},
      {"partners-4", "four partners are released while the others snap", 40, 2, ReleaseFourPartners},
      {"partners-any", "any thread calls any of four partners", 60, 2, SnapPartnersFromAnyThread},
      {"lives", "four devices come and go with listings between", 60, 2, CreateAndReleaseInterleaved},
      {"triggers", "pulses on the line race with software triggers", 20, 1, RaceTriggers},
      {"snaps", "four threads drive one device", 60, 2, SnapFromManyThreads},
      {"unload", "the module is unloaded right after the last release", 100, 5, UnloadAtOnce},
  };
  return kStorms;
}

int main(int argc, char** argv) {
  Options options;
  if (!Parse(std::span(argv, static_cast<std::size_t>(argc)).subspan(1), options)) {
    std::cerr << "usage: storms [--few] [--only NAME] [--runs N] [--seed S] | storms --list\n";
    return 2;
  }
  Findings findings("storms");
  Watchdog watchdog(kPatience, [&] { ReportHang(findings); });
  for (const Storm& storm : Storms()) {
    if (options.list) {
      std::cout << storm.name << "\n";
    } else if (options.only.empty() || options.only == storm.name) {
      Rage(storm, options, findings, watchdog);
    }
  }
  return options.list ? 0 : findings.PrintEnd();
}
