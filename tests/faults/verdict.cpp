// verdict.cpp
// Whether what a life left behind, and what its host saw, is as it may be.
#include "verdict.h"

#include <algorithm>
#include <map>

#include "allowed_results.h"
#include "frame_results.h"

namespace {

// A camera's frames from their announcement to their return.
void CheckFrames(const std::vector<CallLine>& calls, Findings& findings) {
  std::map<std::string, int> announced;
  for (const CallLine& call : calls) {
    if (call.Is("VmbFrameAnnounce")) ++announced[call.camera];
    if (call.Is("VmbFrameRevokeAll")) announced.erase(call.camera);
    if (call.Is("VmbCameraClose") && announced.erase(call.camera) != 0) {
      findings.push_back(call.camera + " is closed with frames that were not revoked");
    }
  }
  for (const auto& [camera, frames] : announced) {
    findings.push_back(std::to_string(frames) + " frames of " + camera + " are not revoked");
  }
}

void CheckHandles(const std::vector<CallLine>& calls, Findings& findings) {
  for (const CallLine& call : calls) {
    if (call.camera == "unknown") findings.push_back(call.call + " on a closed handle");
    if (call.camera == "null" && call.feature != "AcquisitionStop") findings.push_back(call.call + " on no handle");
    if (!call.returned) findings.push_back(call.call + " has not returned");
  }
}

// Neither what is no number nor what has no end is a value for a camera.
void CheckValues(const std::vector<CallLine>& calls, Findings& findings) {
  for (const CallLine& call : calls) {
    if (!call.Is("VmbFeatureFloatSet")) continue;
    if (call.value.find("nan") == std::string::npos && call.value.find("inf") == std::string::npos) continue;
    findings.push_back(call.feature + " is set to " + call.value);
  }
}

void CheckBalance(const std::vector<CallLine>& calls, const char* begin, const char* end, Findings& findings) {
  const auto begun =
      std::ranges::count_if(calls, [&](const CallLine& call) { return call.Is(begin) && call.Succeeded(); });
  const auto ended = std::ranges::count_if(calls, [&](const CallLine& call) { return call.Is(end); });
  if (begun == ended) return;
  findings.push_back(std::to_string(begun) + " good " + begin + ", " + std::to_string(ended) + " " + end);
}

// The operation during which the call was made.
std::size_t OperationOf(std::size_t call, const Observations& seen) {
  const auto later = std::ranges::find_if(seen, [&](const Observation& one) { return one.calls_before > call; });
  return later == seen.begin() ? 0 : static_cast<std::size_t>(later - seen.begin()) - 1;
}

const Observation* Find(const Observations& all, const std::string& name) {
  const auto found = std::ranges::find(all, name, &Observation::name);
  return found == all.end() ? nullptr : &*found;
}

}  // namespace

void CheckCalls(const Case& test, const std::vector<CallLine>& calls, Findings& findings) {
  CheckValues(calls, findings);
  CheckBalance(calls, "VmbStartup", "VmbShutdown", findings);
  // A camera without a handle can neither be used nor closed.
  const auto keeps_handle = [](const Fault& fault) {
    return !fault.answer.empty() && fault.key.call == "VmbCameraOpen";
  };
  if (std::ranges::any_of(test.faults, keeps_handle)) return;
  CheckHandles(calls, findings);
  CheckFrames(calls, findings);
  CheckBalance(calls, "VmbCameraOpen", "VmbCameraClose", findings);
}

void CheckObservations(const Observations& without_faults, const Observations& seen, const Case& test,
                       const std::vector<CallLine>& calls, Findings& findings) {
  std::size_t first_hit = calls.size();
  for (const Fault& fault : test.faults) first_hit = std::min(first_hit, fault.FirstHit(calls));
  const std::size_t first_hit_operation = first_hit < calls.size() ? OperationOf(first_hit, seen) : seen.size();
  for (std::size_t i = 0; i < seen.size(); ++i) {
    const Observation& one = seen[i];
    const Observation* expected = Find(without_faults, one.name);
    if (expected && expected->value == one.value) continue;
    const std::string what = one.name + " = " + one.value + (expected ? ", not " + expected->value : "");
    if (i < first_hit_operation) {
      findings.push_back("before any fault: " + what);
    } else if (!IsAllowed(one, test.faults)) {
      findings.push_back(what);
    }
  }
  if (const bool is_failure = test.faults.size() == 1 && test.faults.front().error != 0;
      is_failure && first_hit_operation < seen.size()) {
    const Observation& hit = seen[first_hit_operation];
    if (!IsDemandMet(hit, test.faults.front().key))
      findings.push_back(hit.name + " does not fail, but is " + hit.value);
  }
  CheckSnapOfFrame(seen, test, findings);
  const bool ended_early = Find(seen, "create") && Find(seen, "create")->value == "null";
  for (const Observation& expected : without_faults) {
    if (Find(seen, expected.name) || ended_early || IsAllowed({expected.name, "left out"}, test.faults)) continue;
    findings.push_back(expected.name + " is left out");
  }
}
