// snap_exclusion_test.cpp
// Start, snap and stop from several threads: one at a time, and whoever fails lets the others go on.
#include <chrono>
#include <future>
#include <thread>

#include "VimbaC.h"
#include "driver/opened_camera.h"

namespace {

using testing::Contains;

struct SnapExclusion : OpenedCamera {
  // Runs on another thread; false when it does not come back in time.
  template <class Act>
  static bool EndsElsewhere(Act act) {
    std::future<void> elsewhere = std::async(std::launch::async, act);
    return elsewhere.wait_for(std::chrono::seconds(30)) == std::future_status::ready;
  }
  void WaitForTheTrigger() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (cameras->CallsOf("VmbFeatureCommandRun").empty() && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::yield();
    }
  }
  // The labels of the snap cycle's messages, in the order in which they were shown.
  Texts Order() const {
    Texts order;
    for (const std::wstring& message : output.WithCaption(L"")) {
      const std::wstring title = message.substr(0, message.find(L'\n'));
      const std::wstring label = title.substr(title.rfind(L" : ") + 3);
      if (label.find(L"Snap") != std::wstring::npos) order.push_back(label);
    }
    return order;
  }
};

TEST_F(SnapExclusion, AStopWaitsForTheSnapThatRuns) {
  ASSERT_TRUE(Open());
  Device().StartSnap(true);
  Forget();
  cameras->FailCall("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorOther);
  std::future<BError> snap = std::async(std::launch::async, [this] { return Device().Snap(nullptr, 300); });
  WaitForTheTrigger();
  Device().StopSnap();
  EXPECT_EQ(snap.get(), BError(BError::eTimeout));
  EXPECT_EQ(Order(), (Texts{L"Snap", L"StopSnap!"}));
}

TEST_F(SnapExclusion, AStartWaitsForTheSnapThatRuns) {
  ASSERT_TRUE(Open());
  Device().StartSnap(true);
  Forget();
  cameras->FailCall("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorOther);
  std::future<BError> snap = std::async(std::launch::async, [this] { return Device().Snap(nullptr, 300); });
  WaitForTheTrigger();
  Device().StartSnap(true);
  EXPECT_EQ(snap.get(), BError(BError::eTimeout));
  EXPECT_EQ(Order(), (Texts{L"Snap", L"StartSnap( one_shot = True )"}));
  Device().StopSnap();
}

TEST_F(SnapExclusion, AFailedStartLetsOtherThreadsGoOn) {
  ASSERT_TRUE(Open());
  cameras->FailCall("VmbFeatureCommandRun", "AcquisitionStart", VmbErrorOther, 1);
  EXPECT_THROW(Device().StartSnap(true), BError);
  EXPECT_TRUE(EndsElsewhere([this] { Device().StopSnap(); }));
}

TEST_F(SnapExclusion, AFailedSnapAndAFailedStopLetOtherThreadsGoOn) {
  ASSERT_TRUE(Open());
  Device().StartSnap(true);
  cameras->FailCall("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorOther, 1);
  EXPECT_EQ(Device().Snap(nullptr, 0), BError(BError::eTimeout));
  EXPECT_TRUE(EndsElsewhere([this] { EXPECT_EQ(Device().Snap(nullptr, 5000), BError()); }));
  cameras->FailCall("VmbFeatureCommandRun", "AcquisitionStop", VmbErrorOther, 1);
  EXPECT_THROW(Device().StopSnap(), BError);
  EXPECT_TRUE(EndsElsewhere([this] { Device().StopSnap(); }));
}

}  // namespace
