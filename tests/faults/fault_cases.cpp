// fault_cases.cpp
// The cases of the fault sweep.
#include "fault_cases.h"

#include <map>
#include <random>

#include "call_keys.h"

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
  }
  AddPairs(keys, pairs, cases);
  return cases;
}
