// stream_rate_properties_test.cpp
// The rate of one camera through random profiles and random snaps, against the same rule in integers.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "berror.h"
#include "diagnostics/log_collector.h"
#include "stream/stream_rate.h"
#include "support/host_output.h"
#include "support/profile_file.h"
#include "support/random_cases.h"
#include "unit/stream/rate_book.h"
#include "unit/stream/scripted_rates.h"

namespace {

using testing::Contains;
using Texts = std::vector<std::wstring>;
using Calls = std::vector<std::string>;

constexpr int kFloor = 45'000'000;
constexpr int kRaise = 2;
constexpr int kLower = -10;

const std::string kGet = "VmbFeatureIntGet(StreamBytesPerSecond)";
std::string Set(std::int64_t rate) { return "VmbFeatureIntSet(StreamBytesPerSecond, " + std::to_string(rate) + ")"; }
std::wstring Limits(std::int64_t min, std::int64_t max) { return std::to_wstring(min) + L" , " + std::to_wstring(max); }

// What limits one camera.
struct Rig {
  std::int64_t camera_min = 0;
  std::int64_t camera_max = 0;
  std::optional<int> profile_min;
  std::optional<int> profile_max;

  bool HasFloor() const { return camera_min < kFloor && kFloor < camera_max; }
  std::int64_t FlooredMin() const { return HasFloor() ? kFloor : camera_min; }
  RateBook Book() const {
    RateBook book;
    book.min = profile_min ? std::max<std::int64_t>(*profile_min, FlooredMin()) : FlooredMin();
    book.max = profile_max ? std::min<std::int64_t>(*profile_max, camera_max) : camera_max;
    return book;
  }
};

struct RandomRates : RandomCases {
  // The library is empty before the camera is in it.
  struct EmptyLibrary {
    EmptyLibrary() { Library().Reset(); }
  } empty_library;
  HostOutput output;
  std::optional<ScriptedRate> scripted;

  Rig DrawRig() {
    constexpr std::int64_t kFastLink = 5'000'000'000;
    constexpr int kHighestKey = 2'000'000'000;
    Rig rig;
    rig.camera_min = random.Between(1'000, 2 * kFloor);
    rig.camera_max = random.BetweenWide(rig.camera_min, random.OneIn(2) ? std::int64_t{3} * kFloor : kFastLink);
    if (rig.camera_min <= kFloor && random.OneIn(8)) rig.camera_max = kFloor + random.Below(2);
    if (random.OneIn(3)) rig.profile_min = random.Between(-1'000, random.OneIn(2) ? 2 * kFloor : kHighestKey);
    if (random.OneIn(3)) rig.profile_max = random.Between(-1'000, random.OneIn(2) ? 3 * kFloor : kHighestKey);
    return rig;
  }
  // The lines between title and end.
  template <typename Act>
  Texts LinesDuring(Act act) {
    output.Clear();
    Library().ClearCalls();
    {
      BLogCollector log(L"title");
      act(log);
    }
    Texts lines = LinesOf(output.Diagnostics(L"title").at(0));
    return {lines.begin() + 1, lines.end() - 1};
  }
  Texts Initialize(const Rig& rig) {
    ProfileFile profile;
    if (rig.profile_min) profile.Key("MIN_BYTEPERSECOND", std::to_string(*rig.profile_min));
    if (rig.profile_max) profile.Key("BYTEPERSECOND", std::to_string(*rig.profile_max));
    scripted.emplace(1, kFloor);
    Library().SetRange(kRateFeature, rig.camera_min, rig.camera_max);
    return LinesDuring([&](BLogCollector& log) { scripted->rate.InitializeBandwidthRange(*profile.Open(), log); });
  }
};

TEST_F(RandomRates, RangeAndStartComeFromCameraAndProfile) {
  constexpr int kRigs = 200;
  for (int i = 0; i < kRigs; ++i) {
    const Rig rig = DrawRig();
    const RateBook book = rig.Book();
    const std::int64_t start = MovedInto(NearestStep((book.min + 2 * book.max) / 3), book.min, book.max);

    ASSERT_EQ(Initialize(rig), (Texts{L"InitializeBandwidthRange Vimba_Scripted_1",
                                      L"StreamBytesPerSecond range = " + Limits(rig.FlooredMin(), rig.camera_max),
                                      L"StreamBytesPerSecond by profile = " + Limits(book.min, book.max),
                                      L"Set StreamBytesPerSecond = " + std::to_wstring(start)}));

    ASSERT_EQ(scripted->OnCamera(), start);
  }
}

// A camera from its opening on, snap after snap, with the book that is kept of it.
struct RandomSnaps : RandomRates {
  RateBook book;
  // The camera does not let its rate be read, or written, after this snap.
  bool unreadable = false;
  bool fixed = false;

  void Begin() {
    Rig rig = DrawRig();
    Initialize(rig);
    book = rig.Book();
  }
  // As a host sets it, and partners do: whatever the limits.
  void SetByOthers() {
    if (random.OneIn(10)) scripted->SetOnCamera(random.BetweenWide(1, book.max > 0 ? 2 * book.max : kFloor));
  }
  void DrawTrouble() {
    Library().Mend();
    unreadable = random.OneIn(20);
    fixed = random.OneIn(20);
    if (unreadable) Library().Fail("VmbFeatureIntGet", VmbErrorIO);
    if (fixed) Library().Fail("VmbFeatureIntSet", VmbErrorInvalidAccess);
  }
  Texts AfterSnap(std::int32_t error) {
    return LinesDuring([&](BLogCollector& log) { scripted->rate.AfterSnap(error, log); });
  }
  // What the rate does after a snap, and which calls that takes.
  void ExpectChange(std::int64_t before, int percent) {
    const std::int64_t after = scripted->OnCamera();
    Calls expected(percent == kRaise ? 2 : 1, kGet);
    if (unreadable) {
      ASSERT_EQ(after, before);
    } else {
      const Rates allowed = book.After(before, percent);
      expected.push_back(kGet);
      if (!allowed.contains(before)) expected.push_back(Set(fixed ? *allowed.begin() : after));
      if (!fixed) {
        ASSERT_THAT(allowed, Contains(after)) << "from " << before << " in " << Limits(book.min, book.max);
      }
      if (fixed) {
        ASSERT_EQ(after, before);
      }
      // An edge of rounding leaves open what was refused.
      if (allowed.size() > 1) return;
    }
    ASSERT_EQ(Library().Calls(), expected);
  }
  void SnapWell() {
    const std::int64_t before = scripted->OnCamera();
    const Texts lines = AfterSnap(BError::eSuccess);
    book.Good(unreadable ? 0 : before);
    Texts allowed;
    for (const std::int64_t average : book.Average()) {
      allowed.push_back(L"Successful snap, failure counter = 0, bandwidth.av = " + std::to_wstring(average) +
                        L" #snaps = " + std::to_wstring(book.snaps));
    }
    ASSERT_EQ(lines.size(), 1U);
    ASSERT_THAT(allowed, Contains(lines.front()));
    ExpectChange(before, kRaise);
  }
  void SnapBadly() {
    constexpr BError::Code kErrors[] = {BError::eAcquisitionFailed, BError::eTimeout, BError::eFrameTooSmall,
                                        BError::eAborted, BError::eFrameInvalid};
    const BError::Code error = kErrors[random.Below(static_cast<int>(std::size(kErrors)))];
    const std::int64_t before = scripted->OnCamera();
    const Texts lines = AfterSnap(error);
    Texts expected{L"Snap failure " + std::to_wstring(error) + L" #failure = " + std::to_wstring(book.failures + 1)};
    if (book.Failed()) expected.emplace_back(L"#failure > 3 --> reset bandwidth control parameters");
    ASSERT_EQ(lines, expected);
    ExpectChange(before, kLower);
  }
};

TEST_F(RandomSnaps, MoveTheRateByTheRule) {
  constexpr int kCameras = 60;
  constexpr int kSnaps = 120;
  for (int camera = 0; camera < kCameras; ++camera) {
    Begin();
    const int good_among = random.Between(1, 6);
    for (int snap = 0; snap < kSnaps; ++snap) {
      SetByOthers();
      DrawTrouble();
      random.OneIn(good_among) ? SnapBadly() : SnapWell();
      ASSERT_FALSE(HasFailure()) << "camera " << camera << ", snap " << snap;
    }
    Library().Mend();
  }
}

// Only a failure to write leaves the rate outside, or somebody else who sets it.
TEST_F(RandomSnaps, KeepTheRateInsideTheLimits) {
  constexpr int kCameras = 40;
  constexpr int kSnaps = 100;
  for (int camera = 0; camera < kCameras; ++camera) {
    Begin();
    for (int snap = 0; snap < kSnaps; ++snap) {
      SetByOthers();
      AfterSnap(random.OneIn(3) ? BError::eTimeout : BError::eSuccess);
      ASSERT_EQ(scripted->OnCamera(), MovedInto(scripted->OnCamera(), book.min, book.max)) << "camera " << camera;
    }
  }
}

// However much was learned, four failures in a row give the room back that it took.
TEST_F(RandomSnaps, FourFailuresInARowOpenTheRangeAgain) {
  constexpr int kCameras = 40;
  for (int camera = 0; camera < kCameras; ++camera) {
    Begin();
    for (int snaps = random.Below(200); snaps > 0; --snaps) AfterSnap(BError::eSuccess);
    for (int failure = 0; failure < 4; ++failure) AfterSnap(BError::eTimeout);
    const Texts change = LinesOf(output.Diagnostics(L"ChangeBandwidth( -0.1 )").at(0));
    EXPECT_THAT(change.at(1), testing::EndsWith(L"(Min=" + std::to_wstring(NearestStep(book.min)) + L"; Max=" +
                                                std::to_wstring(NearestStep(book.max)) + L")"));
  }
}

}  // namespace
