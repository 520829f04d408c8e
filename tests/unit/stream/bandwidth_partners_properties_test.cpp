// bandwidth_partners_properties_test.cpp
// Random partnerships, compared with plain sets; and the partner mutex, pressed from many threads.
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <future>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "berror.h"
#include "bmutex.h"
#include "diagnostics/log_collector.h"
#include "stream/bandwidth_partners.h"
#include "support/host_output.h"
#include "support/random_cases.h"
#include "unit/stream/scripted_rates.h"

namespace {

using Texts = std::vector<std::wstring>;
using CallTexts = std::vector<std::string>;
using Handles = std::vector<VmbHandle_t>;

constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

struct Fleet : RandomCases {
  // The library is empty before the cameras are in it, and calls nobody once they are gone.
  struct EmptyLibrary {
    EmptyLibrary() { Library().Reset(); }
    ~EmptyLibrary() { Library().Reset(); }
  } empty_library;
  HostOutput output;
  std::vector<std::unique_ptr<ScriptedRate>> cameras;

  void Fill(int count) {
    cameras.clear();
    for (int number = 1; number <= count; ++number) {
      cameras.push_back(std::make_unique<ScriptedRate>(number, AnyRate(random)));
    }
  }
  // One in eight is none.
  static std::int64_t AnyRate(Random& chance) {
    constexpr std::int64_t kFast = 5'000'000'000;
    return chance.OneIn(8) ? -chance.Below(2) : chance.BetweenWide(1, kFast);
  }
  std::size_t Any(Random& chance) const {
    return static_cast<std::size_t>(chance.Below(static_cast<int>(cameras.size())));
  }
  BandwidthPartners& Partners(std::size_t camera) { return cameras[camera]->partners; }
};

// The same partnerships as sets of numbers.
struct RandomPartners : Fleet {
  std::map<std::size_t, std::set<std::size_t>> lists;

  void List(std::size_t one, std::size_t other) {
    ASSERT_EQ(Partners(one).AddBandwidthPartner(&Partners(other)), lists[one].insert(other).second);
  }
  void Unlist(std::size_t one, std::size_t other) {
    ASSERT_EQ(Partners(one).RemoveBandwidthPartner(&Partners(other)), lists[one].erase(other) == 1);
  }
  void Replace(std::size_t camera) {
    cameras[camera].reset();
    cameras[camera] = std::make_unique<ScriptedRate>(static_cast<int>(camera) + 1, AnyRate(random));
    lists.erase(camera);
    for (auto& [one, partners] : lists) partners.erase(camera);
  }
  // What each camera's rate ought to be, what is logged, and who is read.
  void Synch(std::size_t camera) {
    std::vector<std::int64_t> rates;
    for (const auto& each : cameras) rates.push_back(each->OnCamera());
    std::int64_t lowest = kHighest;
    for (const std::size_t partner : lists[camera]) {
      if (rates[partner] > 0) lowest = std::min(lowest, rates[partner]);
    }
    const bool lowered = lowest < rates[camera];
    const Texts expected = {L"SynchBandwidth : " + std::to_wstring(rates[camera]) + L"bps -->" +
                            std::to_wstring(lowest) + L"bps"};
    EXPECT_EQ(LinesOfSynch(camera), lowered ? expected : Texts{});
    if (lowered) rates[camera] = lowest;
    for (std::size_t i = 0; i < cameras.size(); ++i) ASSERT_EQ(cameras[i]->OnCamera(), rates[i]) << "camera " << i;
    ExpectCalls(camera, lowered ? std::optional(lowest) : std::nullopt);
  }
  // The lines between title and end.
  Texts LinesOfSynch(std::size_t camera) {
    output.Clear();
    Library().ClearCalls();
    {
      BLogCollector log(L"title");
      Partners(camera).SynchBandwidth(log);
    }
    Texts lines = LinesOf(output.Diagnostics(L"title").at(0));
    return {lines.begin() + 1, lines.end() - 1};
  }
  // Each partner is read once, then the camera itself; to set its rate it is read once more.
  void ExpectCalls(std::size_t camera, std::optional<std::int64_t> set) {
    CallTexts expected(lists[camera].size() + (set ? 2 : 1), "VmbFeatureIntGet(StreamBytesPerSecond)");
    if (set) expected.push_back("VmbFeatureIntSet(StreamBytesPerSecond, " + std::to_string(*set) + ")");
    ASSERT_EQ(Library().Calls(), expected);
  }
  void LoseFrame(std::size_t camera) {
    for (const auto& each : cameras) each->lost_frames_of_partners = 0;
    Partners(camera).AbortPartners();
    for (std::size_t i = 0; i < cameras.size(); ++i) {
      ASSERT_EQ(cameras[i]->lost_frames_of_partners, lists[camera].contains(i) ? 1 : 0) << "camera " << i;
    }
  }
  void Act() {
    const std::size_t camera = Any(random);
    switch (random.Below(8)) {
      case 0:
        return Replace(camera);
      case 1:
        return Unlist(camera, Any(random));
      case 2:
        return LoseFrame(camera);
      case 3:
        cameras[camera]->SetOnCamera(AnyRate(random));
        return;
      case 4:
      case 5:
        return Synch(camera);
      default:
        return List(camera, Any(random));
    }
  }
};

TEST_F(RandomPartners, AreReadSlowedAndAbortedAsTheirListsSay) {
  constexpr int kFleets = 60;
  constexpr int kActions = 100;
  for (int fleet = 0; fleet < kFleets; ++fleet) {
    Fill(random.Between(1, 6));
    lists.clear();
    for (int action = 0; action < kActions; ++action) {
      Act();
      ASSERT_FALSE(HasFailure()) << "fleet " << fleet << ", action " << action;
    }
  }
}

// While one camera compares rates, from its first call to its last, each of these waits for the partner mutex.
struct ComparedPartners : Fleet {
  using Call = std::function<void()>;

  std::vector<Call> Calls() {
    return {[this] { std::ignore = Partners(1).AddBandwidthPartner(&Partners(2)); },
            [this] { std::ignore = Partners(1).RemoveBandwidthPartner(&Partners(0)); },
            [this] { Partners(1).AbortPartners(); },
            [this] {
              BLogCollector log(L"title");
              Partners(2).SynchBandwidth(log);
            }};
  }
  // Makes the call on another thread at the n-th access of the comparison; gives how many accesses there were.
  int CompareAndCall(int at_access, const Call& call) {
    constexpr std::chrono::milliseconds kFarTooLong{20};
    std::future<void> other;
    int accesses = 0;
    const std::thread::id own_thread = std::this_thread::get_id();
    Library().OnInteger([&](VmbHandle_t) {
      if (std::this_thread::get_id() != own_thread || accesses++ != at_access) return;
      other = std::async(std::launch::async, call);
      EXPECT_EQ(other.wait_for(kFarTooLong), std::future_status::timeout) << "at access " << at_access;
    });
    {
      BLogCollector log(L"title");
      Partners(0).SynchBandwidth(log);
    }
    if (other.valid()) other.wait();
    Library().OnInteger(nullptr);
    return accesses;
  }
};

TEST_F(ComparedPartners, KeepEverybodyWaitingFromTheFirstCallToTheLast) {
  // Two partners, the camera itself, and to slow it down its rate once more and the new one.
  constexpr int kAccesses = 5;
  for (int access = 0; access < kAccesses; ++access) {
    for (std::size_t call = 0; call < Calls().size(); ++call) {
      Fill(3);
      for (const auto& camera : cameras) camera->SetOnCamera(50'000'000);
      cameras[0]->SetOnCamera(90'000'000);
      for (const std::size_t one : {0U, 1U}) {
        for (std::size_t other = 0; other < cameras.size(); ++other) {
          if (one != other) std::ignore = Partners(one).AddBandwidthPartner(&Partners(other));
        }
      }
      EXPECT_EQ(CompareAndCall(access, Calls()[call]), kAccesses) << "call " << call;
    }
  }
}

// Which comparison of rates the thread is in; 0: in none.
thread_local int synch_of_thread = 0;

// Threads that do what a device does, to any camera.
struct PressedPartners : Fleet {
  struct Access {
    int synch;
    VmbHandle_t camera;
  };
  BMutex mutex;
  std::vector<Access> accesses KEL_GUARDED_BY(mutex);
  int synchs KEL_GUARDED_BY(mutex) = 0;

  void Watch() {
    Library().OnInteger([this](VmbHandle_t camera) {
      if (synch_of_thread == 0) return;
      {
        const BMutexLock lock(mutex);
        accesses.push_back({synch_of_thread, camera});
      }
      // The others' chance to come in between.
      std::this_thread::yield();
    });
  }
  int NextSynch() {
    const BMutexLock lock(mutex);
    return ++synchs;
  }
  // StartSnap and StopSnap hold the snap mutex.
  void Start(ScriptedRate& camera) {
    const BRecursiveMutexLock lock(camera.snap_mutex);
    BLogCollector log(L"start");
    synch_of_thread = NextSynch();
    camera.partners.SynchBandwidth(log);
    synch_of_thread = 0;
  }
  static void Stop(ScriptedRate& camera, bool failed) {
    const BRecursiveMutexLock lock(camera.snap_mutex);
    BLogCollector log(L"stop");
    camera.rate.AfterSnap(failed ? BError::eTimeout : BError::eSuccess, log);
  }
  void Act(Random& chance) {
    ScriptedRate& camera = *cameras[Any(chance)];
    ScriptedRate& other = *cameras[Any(chance)];
    switch (chance.Below(8)) {
      case 0:
        std::ignore = camera.partners.RemoveBandwidthPartner(&other.partners);
        return;
      case 1:
      case 2:
        if (&camera != &other) std::ignore = camera.partners.AddBandwidthPartner(&other.partners);
        return;
      case 3:
        return camera.partners.AbortPartners();
      case 4:
        camera.SetOnCamera(AnyRate(chance));
        return;
      case 5:
        return Stop(camera, chance.OneIn(3));
      default:
        return Start(camera);
    }
  }
  // Threads that wait for each other cannot be joined either: past the deadline the program ends.
  void Press(int threads, int actions) {
    constexpr std::chrono::minutes kPatience{2};
    std::vector<std::future<void>> hosts;
    hosts.reserve(static_cast<std::size_t>(threads));
    for (int i = 0; i < threads; ++i) {
      hosts.push_back(std::async(std::launch::async, [this, actions, own = random.Seed()] {
        Random chance(own);
        for (int action = 0; action < actions; ++action) Act(chance);
      }));
    }
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    for (std::future<void>& host : hosts) {
      if (host.wait_until(deadline) == std::future_status::ready) continue;
      std::cerr << "partners wait for each other, again with KEL_SEED=" << seed << std::endl;
      std::abort();
    }
  }
  // The cameras of each comparison, in the order of the calls. One that is not whole fails.
  std::vector<Handles> Comparisons() {
    const BMutexLock lock(mutex);
    std::vector<Handles> comparisons;
    std::set<int> begun;
    int current = 0;
    for (const Access& access : accesses) {
      if (access.synch != current) {
        EXPECT_TRUE(begun.insert(access.synch).second) << "another comparison came in between";
        comparisons.emplace_back();
        current = access.synch;
      }
      comparisons.back().push_back(access.camera);
    }
    EXPECT_EQ(begun.size(), static_cast<std::size_t>(synchs)) << "each comparison reads at least its own camera";
    return comparisons;
  }
};

TEST_F(PressedPartners, CompareTheirRatesOneAfterTheOtherWithoutADeadlock) {
  constexpr int kRounds = 5;
  constexpr int kThreads = 4;
  constexpr int kActions = 200;
  Fill(4);
  Watch();
  for (int round = 0; round < kRounds; ++round) Press(kThreads, kActions);

  std::size_t with_partners = 0;
  for (const Handles& read : Comparisons()) {
    // Each partner once; then the camera itself, and where it is slowed down, twice more.
    const VmbHandle_t own = read.back();
    const auto first_own = std::find(read.begin(), read.end(), own);
    EXPECT_EQ(std::set(read.begin(), first_own).size(), static_cast<std::size_t>(first_own - read.begin()));
    EXPECT_EQ(std::count(first_own, read.end(), own), read.end() - first_own) << "a partner is read after the camera";
    EXPECT_LE(read.end() - first_own, 3);
    with_partners += first_own != read.begin() ? 1U : 0U;
  }
  EXPECT_GT(with_partners, 0U);
}

}  // namespace
