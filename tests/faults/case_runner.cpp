// case_runner.cpp
// Runs one case and says what is wrong with it.
#include "case_runner.h"

#include <algorithm>
#include <chrono>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "VimbaC.h"
#include "late_frames.h"
#include "life.h"
#include "vimba_simulator.h"

namespace {

// A thread that has left the module still has to leave the system.
constexpr std::chrono::seconds kThreadsEndWithin{10};

void AddFaults(const std::vector<Fault>& faults) {
  for (const Fault& fault : faults) {
    if (!fault.late.empty()) continue;
    if (VimbaSimAddFaults(fault.Json().c_str()) != 0) throw std::runtime_error(VimbaSimLastError());
  }
}

// Whatever else it answers: it is asked last, when the record has been read.
bool IsStarted() {
  VmbUint32_t cameras = 0;
  return VmbCamerasList(nullptr, 0, &cameras, sizeof(VmbCameraInfo_t)) != VmbErrorApiNotStarted;
}

// A list and its records, of every look but the one that ended the search.
std::int64_t BlocksOfSearches(const std::vector<CallLine>& calls) {
  constexpr std::int64_t kBlocksOfList = 2;
  return kBlocksOfList * std::ranges::count_if(calls, [](const CallLine& call) { return call.Is("VmbCamerasList"); });
}

bool HasStartedInSpite(const Case& test) {
  return std::ranges::any_of(test.faults,
                             [](const Fault& fault) { return fault.effective && fault.key.call == "VmbStartup"; });
}

}  // namespace

CaseRunner::CaseRunner() : m_threads_alone(ProcessState::Now().threads) {
  for (const bool learns : {true, true, false}) {
    m_learns = learns;
    for (const LifeKind kind : kLifeKinds) {
      const Findings findings = Run({kind, {}});
      if (!findings.empty()) throw std::runtime_error("without faults: " + findings.front());
    }
  }
}

Findings CaseRunner::Run(const Case& test) {
  Findings findings = RunOnce(test);
  if (m_only_memory_grew) findings = RunOnce(test);
  return findings;
}

Findings CaseRunner::RunOnce(const Case& test) {
  m_only_memory_grew = false;
  Findings findings;
  m_cameras.SetUp();
  const ProcessState before = ProcessState::Now();
  Live(test, findings);
  const bool started = IsStarted();
  if (started && !HasStartedInSpite(test)) findings.emplace_back("the Vimba system is still started");
  while (IsStarted()) VmbShutdown();
  CheckEnd(findings);
  m_cameras.SetUp();
  if (findings.empty() && !m_learns) CheckState(before, findings);
  return findings;
}

void CaseRunner::Live(const Case& test, Findings& findings) {
  AddFaults(test.faults);
  LateFrames late_frames(test.faults);
  Life life(test.kind, m_cameras, late_frames);
  m_sink.Expect(false);
  life.Run();
  m_sink.Expect(true);
  const std::vector<CallLine> calls = RecordedCalls();
  m_left_unreleased = BlocksOfSearches(calls);
  if (calls.size() != VimbaSimCallCount()) findings.emplace_back("the record of calls is not whole");
  CheckCalls(test, calls, findings);
  if (m_learns) {
    m_without_faults[test.kind] = life.Seen();
    m_calls[test.kind] = calls;
  }
  CheckObservations(m_without_faults[test.kind], life.Seen(), test, calls, findings);
}

void CaseRunner::CheckEnd(Findings& findings) {
  if (m_sink.Disturbances() != 0) findings.emplace_back("a message came after the last release");
}

void CaseRunner::CheckState(const ProcessState& before, Findings& findings) {
  const auto deadline = std::chrono::steady_clock::now() + kThreadsEndWithin;
  ProcessState now = ProcessState::Now();
  while (now.threads != m_threads_alone && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::yield();
    now = ProcessState::Now();
  }
  const auto compare = [&](const char* what, std::int64_t then, std::int64_t since, std::int64_t allowed) {
    if (since >= then && since <= then + allowed) return;
    std::ostringstream text;
    text << what << ": " << then << " before, " << since << " after";
    findings.push_back(text.str());
  };
  compare("threads", static_cast<std::int64_t>(m_threads_alone), static_cast<std::int64_t>(now.threads), 0);
  compare("descriptors", static_cast<std::int64_t>(before.descriptors), static_cast<std::int64_t>(now.descriptors), 0);
  const bool nothing_else = findings.empty();
  compare("blocks of memory", before.blocks, now.blocks, m_left_unreleased);
  m_only_memory_grew = nothing_else && !findings.empty();
}
