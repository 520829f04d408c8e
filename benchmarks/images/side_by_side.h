// side_by_side.h
// Times work of ours and of peers in turns, so that both see the same machine.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bsize.h"

struct Contender {
  std::string name;
  std::function<void()> run;
};

// What we aim at, as times of others divided by ours; 0 where there is no aim.
struct Aims {
  double peer_avx512;
  double peer_avx2;
  double peer_ssse3;
  double limit;
};

// One thing that is done to a frame, and who else can do it.
struct Work {
  std::string name;
  Aims aims;
  std::function<void()> ours;
  // Reads the frame and fills the image once, by the C library's own means.
  std::function<void()> limit;
  std::vector<Contender> peers;  // the fastest counts
};

struct Measured {
  std::string kernels;
  std::string work;
  BSize size;
  double ms = 0;
  std::string peer;
  double peer_ms = 0;
  double ratio = 0;
  double limit_ratio = 0;
  // For images that fit the caches the peer's time is the aim, for larger ones the limit. Else 0.
  double wanted_ratio = 0;
  double wanted_limit_ratio = 0;
};

// Medians over at least `budget_ms` of turns, with the row kernels of this name. A ratio is the median of each turn's.
Measured Measure(const Work& work, const BSize& size, const std::string& kernels, double budget_ms);

std::string TableOf(const std::vector<Measured>& results);
std::string JsonOf(const std::vector<Measured>& results);
