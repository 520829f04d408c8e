// storm.h
// The storms by name, and what one run of them is given.
#pragma once

#include <functional>
#include <span>

#include "storms/findings.h"
#include "support/random.h"

// One way to press the module. A run is one world of cameras: set up, pressed, and checked when everything is released.
// No run does what docs/threads.md forbids a host: exports are called one at a time, and no operation of a device runs
// or begins once its release has begun.
struct Storm {
  const char* name;
  const char* what;
  // Runs of `script/check storms` and of the ordinary suites.
  int runs;
  int few_runs;
  void (*run)(Findings& findings, Random& random);
};

void ReleaseWhileStreaming(Findings& findings, Random& random);
void ReleaseTwoPartners(Findings& findings, Random& random);
void ReleaseFourPartners(Findings& findings, Random& random);
void SnapPartnersFromAnyThread(Findings& findings, Random& random);
void CreateAndReleaseInterleaved(Findings& findings, Random& random);
void RaceTriggers(Findings& findings, Random& random);
void SnapFromManyThreads(Findings& findings, Random& random);
void UnloadAtOnce(Findings& findings, Random& random);

std::span<const Storm> Storms();
