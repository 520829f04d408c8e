// camera_prefix_test.cpp
// How the title of a device-bound message begins, and what of the system it needs.
#include "diagnostics/camera_prefix.h"

#include <gtest/gtest.h>

#include <future>
#include <string>

#include "bstopwatch.h"
#include "diagnostics/platform.h"

namespace {

std::wstring ThreadId() { return std::to_wstring(CurrentThreadId()); }

TEST(CameraPrefix, NamesTheCameraAndTheThread) {
  EXPECT_EQ(CameraPrefix(L"Vimba_Manta-G-504B_50-0503345").Str(),
            L"Camera 5 (Vimba_Manta-G-504B_50-0503345) : Thread ID = " + ThreadId() + L" : ");
}

TEST(CameraPrefix, WithoutAnIdentifierTheCamerasCharacterIsABlank) {
  EXPECT_EQ(CameraPrefix(L"").Str(), L"Camera   () : Thread ID = " + ThreadId() + L" : ");
}

TEST(CameraPrefix, APercentSignOfACameraIsText) {
  EXPECT_EQ(CameraPrefix(L"Vimba_100%s%n_%").Str(), L"Camera % (Vimba_100%s%n_%) : Thread ID = " + ThreadId() + L" : ");
}

TEST(CameraPrefix, AnIdentifierOfOneCharacterIsItsOwnLast) {
  EXPECT_EQ(CameraPrefix(L"7").Str(), L"Camera 7 (7) : Thread ID = " + ThreadId() + L" : ");
}

TEST(Platform, AThreadsNumberIsItsOwnAndStaysTheSame) {
  const unsigned long here = CurrentThreadId();
  const unsigned long elsewhere = std::async(std::launch::async, CurrentThreadId).get();

  EXPECT_NE(here, 0U);
  EXPECT_EQ(CurrentThreadId(), here);
  EXPECT_NE(here, elsewhere);
}

TEST(Platform, APauseLastsAtLeastAsLongAsAsked) {
  for (const std::uint32_t milliseconds : {0U, 1U, 20U}) {
    const BStopWatch watch;
    SleepFor(std::chrono::milliseconds(milliseconds));
    EXPECT_GE(watch.PeriodD(), milliseconds);
  }
}

}  // namespace
