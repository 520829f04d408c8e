// memory_sweep.cpp
// memory-sweep [STEP]: refuses memory to the module and the SDK at every STEPth allocation of a life (default: at
// each). memory-sweep KIND N: runs one such life here (host, onwards, others), for a debugger.
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "memory/children.h"
#include "memory/device_life.h"
#include "memory/refusal.h"
#include "support/driver_module.h"
#include "support/simulated_cameras.h"
#include "vimba_simulator.h"

namespace {

using Memory::Ending;
using Memory::Findings;
using Memory::LiveBlock;
using Memory::Plan;
using Memory::Threads;
using nlohmann::json;

struct Kind {
  const char* name;
  Plan plan;
};

const std::vector<Kind> kKinds = {
    {"host", {Threads::kHost, 0, false}},     // one allocation of the host's thread
    {"onwards", {Threads::kHost, 0, true}},   // from one on, until the release
    {"others", {Threads::kOthers, 0, false}}  // one of a callback's or a worker's thread
};

// Two cameras that need no time; one frame of a run fails.
void ConfigureCameras() {
  json configuration{{"cameras", json::array()}};
  configuration["cameras"].push_back(
      SimulatedCamera(1).Colour("RGGB").WidestPayload().With("noise", false).Configuration());
  configuration["cameras"].push_back(SimulatedCamera(2).With("noise", false).Configuration());
  configuration["faults"] = {{{"frame", 4}, {"camera", SimulatedCamera::kId}, {"status", -1}}};
  if (VimbaSimConfigure(configuration.dump().c_str()) != 0) throw std::runtime_error(VimbaSimLastError());
}

// Blocks that were not there before the life. What a life without refusals leaves, too, is not of its refusal.
std::vector<LiveBlock> NewBlocks(const std::vector<LiveBlock>& before) {
  std::vector<LiveBlock> blocks = Memory::LiveBlocks();
  std::vector<LiveBlock> old = before;
  std::sort(blocks.begin(), blocks.end());
  std::sort(old.begin(), old.end());
  std::vector<LiveBlock> fresh;
  std::set_difference(blocks.begin(), blocks.end(), old.begin(), old.end(), std::back_inserter(fresh));
  return fresh;
}

// One life in the process of its own; what it found and what it left, as JSON.
std::string LiveWith(const Plan& plan) {
  const Memory::World world;
  const std::size_t threads = Memory::CountThreads();
  const std::size_t descriptors = Memory::CountDescriptors();
  const std::vector<LiveBlock> before = Memory::LiveBlocks();
  const std::int64_t pixel_blocks = Memory::LivePixelBlocks();
  Memory::Begin(plan);
  Findings findings = Memory::Live(world, Memory::EndIfRefused);
  Memory::End();
  const std::uint64_t host = Memory::Counted(Threads::kHost);
  const std::uint64_t others = Memory::Counted(Threads::kOthers);
  const bool has_refused = Memory::HasRefused();
  const std::string refusal = Memory::FirstRefusal();
  for (const Findings& more : {Memory::WhatIsLeft(world, threads, descriptors), Memory::LiveInPlenty(world),
                               Memory::WhatIsLeft(world, threads, descriptors)}) {
    findings.insert(findings.end(), more.begin(), more.end());
  }
  if (Memory::LivePixelBlocks() != pixel_blocks) findings.push_back("pixels are left");
  json report{{"findings", findings}, {"host", host}, {"others", others}, {"refused", has_refused}, {"at", refusal}};
  report["blocks"] = json::array();
  for (const LiveBlock& block : NewBlocks(before)) report["blocks"].push_back({block.size_bytes, block.place});
  return report.dump();
}

class Sweep {
 public:
  explicit Sweep(std::uint64_t step) : m_step(step) {}

  int Run() {
    Measure();
    for (const Kind& kind : kKinds) {
      const std::uint64_t last = kind.plan.threads == Threads::kHost ? m_host : m_others;
      for (std::uint64_t number = 1; number <= last; number += m_step) StartOne(kind, number);
    }
    m_children.Finish();
    std::cout << "allocations of one life: " << m_host << " on the host's thread, " << m_others << " on others; "
              << m_refused << " lives were refused memory\n";
    std::cout << "memory: " << m_runs << " runs, " << m_findings << " findings" << std::endl;
    return m_findings == 0 && m_refused > 0 ? 0 : 1;
  }

 private:
  // A life that gets all its memory, to know how much that is, and what stays of it: the SDK's statics.
  void Measure() {
    constexpr int kLives = 3;
    for (int i = 0; i < kLives; ++i) {
      m_children.Start([] { return LiveWith({}); },
                       [&](const Ending& ending) {
                         Judge("undisturbed", 0, ending, false);
                         const json report = json::parse(ending.report, nullptr, false);
                         if (!report.is_object()) return;
                         m_host = std::max(m_host, report["host"].get<std::uint64_t>());
                         m_others = std::max(m_others, report["others"].get<std::uint64_t>());
                         CountStatics(report["blocks"]);
                       });
      m_children.Finish();
    }
  }

  void CountStatics(const json& blocks) {
    std::map<std::string, int> counts;
    for (const json& block : blocks) ++counts[block[1].get<std::string>()];
    for (const auto& [place, count] : counts) m_statics[place] = std::max(m_statics[place], count);
  }

  void StartOne(const Kind& kind, std::uint64_t number) {
    Plan plan = kind.plan;
    plan.number = number;
    const char* name = kind.name;
    m_children.Start([plan] { return LiveWith(plan); },
                     [this, name, number](const Ending& ending) { Judge(name, number, ending, true); });
  }

  void Judge(const char* kind, std::uint64_t number, const Ending& ending, bool look_for_leaks) {
    ++m_runs;
    Findings findings;
    std::string at;
    const json report = json::parse(ending.report, nullptr, false);
    if (ending.hung) {
      findings.push_back("hangs");
    } else if (WIFSIGNALED(ending.status)) {
      findings.push_back("ends with signal " + std::to_string(WTERMSIG(ending.status)));
    } else if (!report.is_object()) {
      findings.push_back("ends without a report");
    } else {
      findings = report["findings"].get<Findings>();
      if (report["refused"].get<bool>()) ++m_refused;
      at = report["at"].get<std::string>();
      if (look_for_leaks) LookForLeaks(report["blocks"], findings);
    }
    if (findings.empty()) return;
    ++m_findings;
    std::cout << "finding: memory-sweep " << kind << " " << number << " (refused at " << at << ")\n";
    for (const std::string& finding : findings) std::cout << "  " << finding << "\n";
    std::cout << std::flush;
  }

  // By their places: what is static may have another size.
  void LookForLeaks(const json& blocks, Findings& findings) const {
    std::map<std::string, int> counts;
    for (const json& block : blocks) {
      const auto place = block[1].get<std::string>();
      const auto allowed = m_statics.find(place);
      if (++counts[place] <= (allowed == m_statics.end() ? 0 : allowed->second)) continue;
      findings.push_back("leaves " + block[0].dump() + " bytes of " + place);
    }
  }

  std::uint64_t m_step;
  Memory::Children m_children{std::max(2U, std::thread::hardware_concurrency())};
  std::uint64_t m_host = 0;
  std::uint64_t m_others = 0;
  // Where blocks are allocated that every life leaves, and how many.
  std::map<std::string, int> m_statics;
  int m_runs = 0;
  int m_findings = 0;
  int m_refused = 0;
};

int RunOne(const std::string& name, std::uint64_t number) {
  for (const Kind& kind : kKinds) {
    if (name != kind.name) continue;
    Plan plan = kind.plan;
    plan.number = number;
    std::cout << json::parse(LiveWith(plan)).dump(2) << "\n";
    return 0;
  }
  std::cerr << "there is no kind " << name << "\n";
  return 2;
}

// The profiles of all lives; those that a crash leaves go with it.
class Folder {
 public:
  Folder() : m_path((std::filesystem::temp_directory_path() / "kel_memory_XXXXXX").string()) {
    if (!::mkdtemp(m_path.data()) || ::setenv("TMPDIR", m_path.c_str(), 1) != 0) throw std::runtime_error("no folder");
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

 private:
  std::string m_path;
};

}  // namespace

int main(int argc, char** argv) {
  const Folder folder;
  ConfigureCameras();
  std::ignore = TheModule();
  Memory::KnowTheLibraries();
  if (argc == 3) return RunOne(argv[1], std::strtoull(argv[2], nullptr, 10));
  return Sweep(argc == 2 ? std::max<std::uint64_t>(1, std::strtoull(argv[1], nullptr, 10)) : 1).Run();
}
