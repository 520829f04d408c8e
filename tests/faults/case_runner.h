// case_runner.h
// Runs one case and says what is wrong with it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "call_keys.h"
#include "cameras_under_test.h"
#include "fault.h"
#include "observations.h"
#include "process_state.h"
#include "silent_sink.h"
#include "verdict.h"

// One for a process: the module and the simulated library are.
class CaseRunner {
 public:
  // Lives without faults come first: they fill what is filled once, and are what others are compared with. Throws
  // std::runtime_error where one of them is not as it should be.
  CaseRunner();
  CaseRunner(const CaseRunner&) = delete;
  CaseRunner& operator=(const CaseRunner&) = delete;

  // Memory that the first such life takes, and no later one, is no leak: where some is missing, it is lived again.
  Findings Run(const Case& test);
  const LivesCalls& Calls() const { return m_calls; }

 private:
  Findings RunOnce(const Case& test);
  void Live(const Case& test, Findings& findings);
  void CheckEnd(Findings& findings);
  void CheckState(const ProcessState& before, Findings& findings);

  // Before the first life.
  const std::size_t m_threads_alone;
  CamerasUnderTest m_cameras;
  SilentSink m_sink;
  // The lives without faults.
  bool m_learns = true;
  std::map<LifeKind, Observations> m_without_faults;
  LivesCalls m_calls;
  bool m_only_memory_grew = false;
  // Lists that a search by serial number has left unreleased, as it is meant to, in the life that was run last.
  std::int64_t m_left_unreleased = 0;
};
