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

// One thing that is done to a frame, and who else can do it.
struct Work {
  std::string name;
  double wanted_ratio;  // peer's time / our time that we aim at; 0 where there is no aim
  std::function<void()> ours;
  std::vector<Contender> peers;  // the fastest counts
};

struct Measured {
  std::string work;
  BSize size;
  double ms = 0;
  std::string peer;
  double peer_ms = 0;
  double wanted_ratio = 0;

  double Ratio() const { return peer_ms / ms; }
};

// Medians over at least `budget_ms` of turns.
Measured Measure(const Work& work, const BSize& size, double budget_ms);

std::string TableOf(const std::vector<Measured>& results);
std::string JsonOf(const std::vector<Measured>& results);
