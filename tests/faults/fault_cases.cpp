// fault_cases.cpp
// The cases of the fault sweep.
#include "fault_cases.h"

#include <array>
#include <map>
#include <random>

#include "call_keys.h"
#include "support/simulated_cameras.h"

namespace {

constexpr int kLastError = -20;
constexpr int kUnknownError = 1;
constexpr int kErrorOfEffects = -13;
constexpr std::uint32_t kSeedOfPairs = 20240607;
void AddSingles(LifeKind kind, const std::vector<CallKey>& keys, std::vector<Case>& cases) {
  for (const CallKey& key : keys) {
    // A life that runs free begins like the others.
    const int last = kind == LifeKind::kFree ? -1 : kLastError;
    for (int error = -1; error >= last; --error) cases.push_back({kind, {{.key = key, .error = error}}});
    cases.push_back({kind, {{.key = key, .error = kUnknownError}}});
    cases.push_back({kind, {{.key = key, .error = kErrorOfEffects, .effective = true}}});
  }
}

void AddLasting(LifeKind kind, std::size_t calls, std::vector<Case>& cases) {
  for (std::size_t first = 1; first <= calls; ++first) {
    const int error = -1 - static_cast<int>(first % static_cast<std::size_t>(-kLastError));
    const CallKey any{.call = "any", .occurrence = static_cast<std::int64_t>(first)};
    cases.push_back({kind, {{.key = any, .error = error, .lasting = true}}});
  }
}

// The library refuses one call from then on.
void AddRefusals(LifeKind kind, const std::vector<CallKey>& keys, std::vector<Case>& cases) {
  for (const CallKey& key : keys) {
    const int error = -1 - static_cast<int>(cases.size() % static_cast<std::size_t>(-kLastError));
    cases.push_back({kind, {{.key = key, .error = error, .lasting = true}}});
  }
}

// The calls that take a camera back, each of them refused or not, while it runs or not.
void AddRefusedEnds(LifeKind kind, std::vector<Case>& cases) {
  const std::array ends{
      CallKey{"VmbFeatureCommandRun", SimulatedCamera::kId, "AcquisitionStop"},
      CallKey{"VmbCaptureEnd", SimulatedCamera::kId}, CallKey{"VmbCaptureQueueFlush", SimulatedCamera::kId},
      CallKey{"VmbFrameRevokeAll", SimulatedCamera::kId}, CallKey{"VmbCameraClose", SimulatedCamera::kId}};
  constexpr int kRounds = 3;
  for (unsigned refused = 0; refused < (1U << ends.size()); ++refused) {
    std::vector<Fault> faults;
    for (std::size_t i = 0; i < ends.size(); ++i) {
      if ((refused >> i) % 2 == 1) faults.push_back({.key = ends[i], .error = kErrorOfEffects, .lasting = true});
    }
    for (int round = 0; round < kRounds; ++round) cases.push_back({kind, faults});
  }
}

void AddPairs(const std::map<LifeKind, std::vector<CallKey>>& keys, std::size_t pairs, std::vector<Case>& cases) {
  std::mt19937 random(kSeedOfPairs);
  const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random()) % end; };
  const auto fault = [&](const std::vector<CallKey>& from) {
    const CallKey& key = from[below(from.size())];
    const int error = -1 - static_cast<int>(below(static_cast<std::size_t>(-kLastError)));
    constexpr std::size_t kOneInSoManyHasItsEffect = 8;
    return Fault{.key = key, .error = error, .effective = below(kOneInSoManyHasItsEffect) == 0};
  };
  for (std::size_t i = 0; i < pairs; ++i) {
    const LifeKind kind = kLifeKinds[i % kLifeKinds.size()];
    const Fault first = fault(keys.at(kind));
    cases.push_back({kind, {first, fault(keys.at(kind))}});
  }
}

}  // namespace

std::vector<Case> FaultCases(const LivesCalls& lives, std::size_t pairs) {
  std::map<LifeKind, std::vector<CallKey>> keys;
  for (const auto& [kind, calls] : lives) keys[kind] = KeysOf(calls);
  std::vector<Case> cases;
  for (const auto& [kind, of_kind] : keys) {
    AddSingles(kind, of_kind, cases);
    AddLasting(kind, of_kind.size(), cases);
    AddRefusals(kind, of_kind, cases);
    AddRefusedEnds(kind, cases);
  }
  AddPairs(keys, pairs, cases);
  return cases;
}
