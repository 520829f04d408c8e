// side_by_side.cpp
// Times work of ours and of peers in turns, so that both see the same machine.
#include "side_by_side.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>

namespace {

constexpr int kFewestTurns = 7;

// What the calling thread has had of the processor: everything measured runs on it alone, and other programs' turns do
// not count.
double ThreadTimeMs() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

// The second of two runs: the first brings back to the caches what the others' memory has driven out, so that each is
// timed as it works frame after frame.
double TimeMs(const std::function<void()>& run) {
  run();
  const double start = ThreadTimeMs();
  run();
  return ThreadTimeMs() - start;
}

using Times = std::vector<double>;  // one for each turn

double Median(Times times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

double MedianRatio(const Times& theirs, const Times& ours) {
  Times ratios;
  for (std::size_t turn = 0; turn < ours.size(); ++turn) ratios.push_back(theirs[turn] / ours[turn]);
  return Median(ratios);
}

// The times of all contenders, in turns.
std::vector<Times> TimesInTurns(const std::vector<std::function<void()>>& contenders, double budget_ms) {
  std::vector<Times> times(contenders.size());
  double spent_ms = 0;
  for (int turn = -1; turn < kFewestTurns || spent_ms < budget_ms; ++turn) {
    for (std::size_t i = 0; i < contenders.size(); ++i) {
      const double ms = TimeMs(contenders[i]);
      // The first turn touches memory.
      if (turn < 0) continue;
      times[i].push_back(ms);
      spent_ms += ms;
    }
  }
  return times;
}

// Frame and RGB image of smaller ones fit the caches of most processors.
constexpr int kLeastMemoryBoundWidth = 2000;

double AimAtPeer(const Aims& aims, const std::string& kernels) {
  if (kernels.rfind("avx512", 0) == 0) return aims.peer_avx512;
  return kernels == "avx2" ? aims.peer_avx2 : kernels == "ssse3" ? aims.peer_ssse3 : 0;
}

double AimAtLimit(const Aims& aims, const std::string& kernels) {
  return kernels.rfind("avx", 0) == 0 ? aims.limit : 0;
}

std::string Aim(double ratio) {
  char text[16] = "";
  if (ratio > 0) std::snprintf(text, sizeof text, "%.1f", ratio);
  return text;
}

}  // namespace

Measured Measure(const Work& work, const BSize& size, const std::string& kernels, double budget_ms) {
  std::vector<std::function<void()>> contenders = {work.ours, work.limit};
  for (const Contender& peer : work.peers) contenders.push_back(peer.run);
  const std::vector<Times> times = TimesInTurns(contenders, budget_ms);
  const Times& ours = times[0];

  Measured result;
  result.kernels = kernels;
  result.work = work.name;
  result.size = size;
  result.ms = Median(ours);
  result.limit_ratio = MedianRatio(times[1], ours);
  for (std::size_t i = 0; i < work.peers.size(); ++i) {
    const Times& theirs = times[2 + i];
    const double ms = Median(theirs);
    if (i > 0 && ms >= result.peer_ms) continue;
    result.peer = work.peers[i].name;
    result.peer_ms = ms;
    result.ratio = MedianRatio(theirs, ours);
  }
  if (size.width < kLeastMemoryBoundWidth) {
    result.wanted_ratio = AimAtPeer(work.aims, kernels);
  } else {
    result.wanted_limit_ratio = AimAtLimit(work.aims, kernels);
  }
  return result;
}

std::string TableOf(const std::vector<Measured>& results) {
  std::string table =
      "| work | size | ours, ms | peer | peer, ms | ratio | wanted | of the limit | wanted |\n"
      "|---|---|---:|---|---:|---:|---:|---:|---:|\n";
  for (const Measured& r : results) {
    char line[256];
    std::snprintf(line, sizeof line, "| %s | %d x %d | %.3f | %s | %.3f | %.2f | %s | %.2f | %s |\n", r.work.c_str(),
                  r.size.width, r.size.height, r.ms, r.peer.c_str(), r.peer_ms, r.ratio, Aim(r.wanted_ratio).c_str(),
                  r.limit_ratio, Aim(r.wanted_limit_ratio).c_str());
    table += line;
  }
  return table;
}

std::string JsonOf(const std::vector<Measured>& results) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Measured& r : results) {
    list.push_back({{"kernels", r.kernels},
                    {"work", r.work},
                    {"width", r.size.width},
                    {"height", r.size.height},
                    {"ms", r.ms},
                    {"peer", r.peer},
                    {"peer_ms", r.peer_ms},
                    {"ratio", r.ratio},
                    {"limit_ratio", r.limit_ratio}});
  }
  return list.dump(2) + "\n";
}
