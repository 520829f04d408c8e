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

double Median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

}  // namespace

Measured Measure(const Work& work, const BSize& size, double budget_ms) {
  std::vector<std::vector<double>> times(1 + work.peers.size());
  double spent_ms = 0;
  for (int turn = -1; turn < kFewestTurns || spent_ms < budget_ms; ++turn) {
    for (std::size_t i = 0; i < times.size(); ++i) {
      const double ms = TimeMs(i == 0 ? work.ours : work.peers[i - 1].run);
      // The first turn touches memory.
      if (turn < 0) continue;
      times[i].push_back(ms);
      spent_ms += ms;
    }
  }
  Measured result{work.name, size, Median(times[0]), "", 0, work.wanted_ratio};
  for (std::size_t i = 0; i < work.peers.size(); ++i) {
    const double ms = Median(times[i + 1]);
    if (i > 0 && ms >= result.peer_ms) continue;
    result.peer = work.peers[i].name;
    result.peer_ms = ms;
  }
  return result;
}

std::string TableOf(const std::vector<Measured>& results) {
  std::string table =
      "| work | size | ours, ms | peer | peer, ms | ratio | wanted |\n|---|---|---:|---|---:|---:|---:|\n";
  for (const Measured& r : results) {
    char line[256];
    char wanted[16] = "";
    if (r.wanted_ratio > 0) std::snprintf(wanted, sizeof wanted, "%.1f", r.wanted_ratio);
    std::snprintf(line, sizeof line, "| %s | %d x %d | %.3f | %s | %.3f | %.2f | %s |\n", r.work.c_str(), r.size.width,
                  r.size.height, r.ms, r.peer.c_str(), r.peer_ms, r.Ratio(), wanted);
    table += line;
  }
  return table;
}

std::string JsonOf(const std::vector<Measured>& results) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Measured& r : results) {
    list.push_back({{"work", r.work},
                    {"width", r.size.width},
                    {"height", r.size.height},
                    {"ms", r.ms},
                    {"peer", r.peer},
                    {"peer_ms", r.peer_ms},
                    {"ratio", r.Ratio()}});
  }
  return list.dump(2) + "\n";
}
