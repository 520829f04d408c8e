// frames_test.cpp
// What becomes of a delivered frame: queued copy, refused as too old, or an error that wakes the snap.
#include <chrono>
#include <future>
#include <thread>

#ifdef __linux__
#include <pthread.h>
#endif

#include "VimbaC.h"
#include "bstopwatch.h"
#include "driver/opened_camera.h"

namespace {

using nlohmann::json;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kDeadlineMs = 30'000;

bool IsHandBack(const std::string& call) { return call.starts_with("VmbCaptureFrameQueue("); }

struct Frames : OpenedCamera {
  // A continuous acquisition that waits for software triggers: nothing arrives but what the test delivers.
  void StartWaiting(const SimulatedCamera& camera = SimulatedCamera()) {
    ASSERT_TRUE(Open(camera));
    Device().StartSnap(false);
    Forget();
  }
  std::uint64_t ScanStart() const {
    return std::stoull(cameras->State()["features"]["GevTimestampValue"].get<std::string>());
  }
  int RingFrames() const { return cameras->State()["announced"].get<int>(); }
  void WaitForFullRing() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kDeadlineMs);
    while (cameras->State()["queued"] != RingFrames()) ASSERT_LT(std::chrono::steady_clock::now(), deadline);
  }
  Texts CallbackMessage() {
    EXPECT_TRUE(output.WaitForDiagnostic(L"OnFrameExt()", 1, std::chrono::milliseconds(kDeadlineMs)));
    return Message(L"OnFrameExt()");
  }
};

TEST_F(Frames, AGoodFrameIsCopiedAndHandedBack) {
  StartWaiting();
  cameras->Deliver({{"timestamp", 77'000'000'000'000}, {"frameID", 5}});
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
  EXPECT_THAT(
      CallbackMessage(),
      ElementsAre(L"OnFrameExt()", L"Start",
                  L"Frame context id = 0 FrameStatusComplete FrameDimension = 64x48 FrameOffset = 0x0 FrameID = "
                  L"5 Timestamp = 77000000000000",
                  L"process_frame_lambda started", L"End"));
}

TEST_F(Frames, AFrameAsOldAsTheScanStartIsAccepted) {
  StartWaiting();
  const std::uint64_t start = ScanStart();
  cameras->Deliver({{"timestamp", start}});
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
}

TEST_F(Frames, AnOlderFrameIsHandedBackAndTheSnapGoesOnWaiting) {
  StartWaiting();
  const std::uint64_t start = ScanStart();
  cameras->Deliver({{"timestamp", start - 1}, {"flags", 0}});
  EXPECT_EQ(Device().Snap(nullptr, 50), BError(BError::eTimeout));
  EXPECT_THAT(CallbackMessage(), ElementsAre(L"OnFrameExt()", L"Start", L"Frame context id = 0 FrameStatusComplete",
                                             L"VmbCaptureFrameQueue ok",
                                             L"Invalid timestamp " + std::to_wstring(start - 1) + L" < " +
                                                 std::to_wstring(start) + L" (StartScan)",
                                             L"End"));
}

struct ReceiveFailure {
  int status;
  int code;
  const wchar_t* described;
};

struct ReceiveFailures : Frames, testing::WithParamInterface<ReceiveFailure> {};

TEST_P(ReceiveFailures, WakeTheSnapWithTheirCode) {
  StartWaiting();
  cameras->Deliver({{"status", GetParam().status}, {"flags", 0}});
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(GetParam().code));
  EXPECT_THAT(
      CallbackMessage(),
      ElementsAre(L"OnFrameExt()", L"Start", std::wstring(L"Frame context id = 0") + GetParam().described,
                  L"VmbCaptureFrameQueue ok", L"ReceiveStatus failure " + std::to_wstring(GetParam().status), L"End"));
}

INSTANTIATE_TEST_SUITE_P(
    EveryStatus, ReceiveFailures,
    testing::Values(ReceiveFailure{VmbFrameStatusIncomplete, BError::eAcquisitionFailed, L" FrameStatusInComplete"},
                    ReceiveFailure{VmbFrameStatusTooSmall, BError::eFrameTooSmall, L" FrameStatusTooSmall"},
                    ReceiveFailure{VmbFrameStatusInvalid, BError::eFrameInvalid, L" FrameStatusInvalid"},
                    ReceiveFailure{-9, BError::eFrameInvalid, L"unknown FrameStatus"},
                    ReceiveFailure{3, BError::eFrameInvalid, L"unknown FrameStatus"}));

TEST_F(Frames, ABadFrameThatCannotBeHandedBackFailsTwice) {
  StartWaiting();
  cameras->FailCall("VmbCaptureFrameQueue", "", VmbErrorOther, 1);
  cameras->Deliver({{"status", VmbFrameStatusInvalid}, {"flags", 0}});
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eFrameInvalid));
  EXPECT_THAT(CallbackMessage(), Contains(L"VmbCaptureFrameQueue failed"));
}

TEST_F(Frames, AGoodFrameThatCannotBeHandedBackIsFollowedByAFailure) {
  StartWaiting();
  cameras->FailCall("VmbCaptureFrameQueue", "", VmbErrorOther, 1);
  cameras->Deliver();
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));
  EXPECT_EQ(cameras->State()["queued"], RingFrames() - 1);
}

#ifdef __linux__
// Threads that are started in this scope need more memory for their stack than there is.
class NoThreads {
 public:
  NoThreads() {
    pthread_getattr_default_np(&m_before);
    pthread_attr_t too_large = m_before;
    constexpr std::size_t kStackBytes = std::size_t{1} << 50;
    pthread_attr_setstacksize(&too_large, kStackBytes);
    EXPECT_EQ(pthread_setattr_default_np(&too_large), 0);
  }
  ~NoThreads() { EXPECT_EQ(pthread_setattr_default_np(&m_before), 0); }
  NoThreads(const NoThreads&) = delete;
  NoThreads& operator=(const NoThreads&) = delete;

 private:
  pthread_attr_t m_before;
};

TEST_F(Frames, AWorkerThatCannotBeStartedFailsOneAcquisitionAndNoMore) {
  StartWaiting();
  {
    const NoThreads no_threads;
    cameras->Deliver();
    EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eAcquisitionFailed, L"no thread"));
  }
  EXPECT_EQ(cameras->State()["queued"], RingFrames());

  cameras->Deliver();
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
}

TEST_F(Frames, AFrameWithoutWorkerThatCannotBeHandedBackFailsTwice) {
  StartWaiting();
  const NoThreads no_threads;
  cameras->FailCall("VmbCaptureFrameQueue", "", VmbErrorOther, 1);
  cameras->Deliver();
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eAcquisitionFailed, L"no thread"));
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));
}
#endif

TEST_F(Frames, HandedBackFramesGetTheNextIds) {
  StartWaiting();
  for (int i = 0; i < 25; ++i) {
    cameras->Deliver();
    ASSERT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
    // Otherwise two workers might hand their frames back in either order.
    WaitForFullRing();
  }
  Device().StopSnap();
  const Texts lines = LinesOf(output.Diagnostics(L"StopSnap").at(0));
  EXPECT_THAT(lines,
              Contains(L"Received 25 Frames [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, "
                       L"20, 21, 22, 23, 24]"));
}

TEST_F(Frames, ACameraWithoutALatchRefusesEveryFrame) {
  for (const char* feature : {"GevTimestampControlLatch", "GevTimestampValue"}) {
    StartWaiting(SimulatedCamera().Missing(feature));
    cameras->Deliver({{"timestamp", 9}, {"flags", 0}});
    EXPECT_EQ(Device().Snap(nullptr, 30), BError(BError::eTimeout));
    EXPECT_THAT(CallbackMessage(), Contains(L"Invalid timestamp 9 < 18446744073709551615 (StartScan)"));
    device.reset();
  }
}

TEST_F(Frames, ARunThatGoesOnAfterARefusedStartGoesOnDelivering) {
  StartWaiting();
  cameras->FailCall("VmbFeatureEnumSet", "AcquisitionMode", VmbErrorInvalidAccess, 1);
  EXPECT_THROW(Device().StartSnap(false), BError);
  cameras->Deliver();
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
}

TEST_F(Frames, AFrameOfAnEarlierAcquisitionIsNotPopped) {
  StartWaiting();
  cameras->Deliver();
  ASSERT_TRUE(output.WaitForDiagnostic(L"OnFrameExt()", 1, std::chrono::milliseconds(kDeadlineMs)));
  Device().StopSnap();
  Device().StartSnap(false);
  EXPECT_EQ(Device().Snap(nullptr, 30), BError(BError::eTimeout));
}

// The first device lists the second as its partner.
struct PartnersFrames : Frames {
  ProfileFile other_profile;
  std::optional<OpenDevice> other;

  ~PartnersFrames() override { other.reset(); }
  bool OpenPartners() {
    cameras.emplace(std::vector{SimulatedCamera(1), SimulatedCamera(2)});
    other_profile.Key("Camera_Identifier", "DEV_000F31000002");
    other.emplace(other_profile.Open());
    return Reopen() && *other && Device().AddBandwidthPartner(other->Get());
  }
};

TEST_F(PartnersFrames, AFailedFrameAbortsTheSnapsOfPartners) {
  ASSERT_TRUE(OpenPartners());
  Device().StartSnap(false);
  (*other)->StartSnap(false);
  cameras->Deliver({{"status", VmbFrameStatusTooSmall}});
  EXPECT_EQ((*other)->Snap(nullptr, kDeadlineMs), BError(BError::eAborted));
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eFrameTooSmall));
  cameras->Deliver({{"status", VmbFrameStatusTooSmall}}, 2);
  EXPECT_EQ((*other)->Snap(nullptr, kDeadlineMs), BError(BError::eFrameTooSmall));
  EXPECT_EQ(Device().Snap(nullptr, 0), BError(BError::eTimeout)) << "partnership is one-way";
}

TEST_F(PartnersFrames, AFailedFrameDoesNotWaitForADeviceThatComparesRates) {
  ASSERT_TRUE(OpenPartners());
  (*other)->StartSnap(false);
  cameras->ClearCalls();
  cameras->Fault({{"call", "VmbFeatureIntGet"},
                  {"feature", "StreamBytesPerSecond"},
                  {"camera", "DEV_000F31000002"},
                  {"delay_ms", 2000}});
  const std::future<void> comparing = std::async(std::launch::async, [this] { Device().StartSnap(false); });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kDeadlineMs);
  while (cameras->CallsOf("VmbFeatureIntGet").empty()) ASSERT_LT(std::chrono::steady_clock::now(), deadline);

  // The second one comes when the first one's callback has returned.
  for (int frame = 0; frame < 2; ++frame) {
    cameras->Deliver({{"status", VmbFrameStatusIncomplete}}, 2);
    EXPECT_EQ((*other)->Snap(nullptr, kDeadlineMs), BError(BError::eAcquisitionFailed));
  }
  EXPECT_NE(comparing.wait_for(std::chrono::seconds(0)), std::future_status::ready);
}

// The first device reads its partner's rate and then its own; its list must stay as it is until then.
TEST_F(PartnersFrames, APartnerIsNotRemovedWhileItsRateIsCompared) {
  ASSERT_TRUE(OpenPartners());
  cameras->ClearCalls();
  cameras->Fault({{"call", "VmbFeatureIntGet"}, {"camera", "DEV_000F31000002"}, {"delay_ms", 300}});
  const std::future<void> comparing = std::async(std::launch::async, [this] { Device().StartSnap(false); });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kDeadlineMs);
  while (cameras->CallsOf("VmbFeatureIntGet").empty()) ASSERT_LT(std::chrono::steady_clock::now(), deadline);

  EXPECT_TRUE(Device().RemoveBandwidthPartner(other->Get()));

  EXPECT_THAT(cameras->CallsOf("VmbFeatureIntGet"), Contains("VmbFeatureIntGet(\"StreamBytesPerSecond\")"));
  comparing.wait();
}

TEST_F(PartnersFrames, AFrameThatIsLostDuringItsDevicesReleaseAbortsNobody) {
  ASSERT_TRUE(OpenPartners());
  (*other)->StartSnap(false);
  Forget();
  cameras->Fault({{"call", "VmbCaptureEnd"}, {"camera", SimulatedCamera::kId}, {"delay_ms", 300}});
  const std::future<void> releasing = std::async(std::launch::async, [this] { device->Release(); });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kDeadlineMs);
  while (cameras->CallsOf("VmbFeatureCommandRun").size() < 2) ASSERT_LT(std::chrono::steady_clock::now(), deadline);

  cameras->Deliver({{"status", VmbFrameStatusIncomplete}});

  ASSERT_TRUE(output.WaitForDiagnostic(L"OnFrameExt()", 1, std::chrono::milliseconds(kDeadlineMs)));
  EXPECT_EQ((*other)->Snap(nullptr, 0), BError(BError::eTimeout));
  releasing.wait();
}

TEST_F(PartnersFrames, ADestroyedPartnerIsReachedByNobody) {
  ASSERT_TRUE(OpenPartners());
  other.reset();
  Device().StartSnap(false);
  cameras->Deliver({{"status", VmbFrameStatusIncomplete}});
  EXPECT_EQ(Device().Snap(nullptr, kDeadlineMs), BError(BError::eAcquisitionFailed));
  Device().StopSnap();
}

// Each worker hands its frame back as its last act on the device.
TEST_F(Frames, WorkersThatStillCopyAreLetFinishBeforeTheirDeviceGoes) {
  constexpr std::size_t kWorkers = 8;
  for (int round = 0; round < 20; ++round) {
    ASSERT_TRUE(Open(SimulatedCamera().Sensor(1280, 1024).With("scene", "none")));
    Device().StartSnap(false);
    Forget();
    for (std::size_t frame = 0; frame < kWorkers; ++frame) cameras->Deliver();
    device.reset();
    std::vector<std::string> calls = cameras->Calls();
    calls.erase(std::find(calls.begin(), calls.end(), "VmbCaptureQueueFlush()"), calls.end());
    EXPECT_EQ(std::count_if(calls.begin(), calls.end(), IsHandBack), kWorkers);
  }
}

TEST_F(Frames, AHostThatTakesNoneHoldsTheRingBackUntilItTakesThemOrLetsGo) {
  constexpr std::size_t kTaken = 60;
  ASSERT_TRUE(OpenHeldBack());
  EXPECT_EQ(cameras->State()["queued"], 0);
  for (std::size_t i = 0; i < kTaken; ++i) ASSERT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
  ASSERT_TRUE(WaitForFrames(held_frames + kTaken));
  EXPECT_EQ(cameras->State()["queued"], 0);
  device.reset();
}

// The time of a message's first line, in milliseconds.
double FirstTime(const std::wstring& message) {
  const std::wstring line = message.substr(message.find(L'\n') + 1);
  return std::stod(line.substr(line.find(L" : ") + 3));
}

// What the first callback's message counts from, once this time has passed since the call.
constexpr double kRunsForMs = 5.0;

struct Clock : Frames {
  double TimeOfACallbackLater() {
    const BStopWatch since;
    while (since.PeriodD() < kRunsForMs) std::this_thread::yield();
    cameras->Deliver();
    if (!output.WaitForDiagnostic(L"OnFrameExt()", 1, std::chrono::milliseconds(kDeadlineMs))) return 0.0;
    const Texts messages = output.WithCaption(L"");
    const auto of_callback = [](const std::wstring& text) { return text.find(L"OnFrameExt()") != text.npos; };
    return FirstTime(*std::find_if(messages.begin(), messages.end(), of_callback));
  }
};

TEST_F(Clock, OfCallbacksIsThatOfTheSnap) {
  StartWaiting();
  EXPECT_GE(TimeOfACallbackLater(), kRunsForMs);
}

TEST_F(Clock, OfCallbacksRunsBeforeTheFirstStart) {
  ASSERT_TRUE(Open());
  Forget();
  EXPECT_GE(TimeOfACallbackLater(), kRunsForMs);
}

}  // namespace
