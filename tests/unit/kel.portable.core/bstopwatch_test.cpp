// bstopwatch_test.cpp
// The stop watch.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "bstopwatch.h"

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration duration) { return std::chrono::duration<double, std::milli>(duration).count(); }

void SpinUntil(Clock::time_point moment) {
  while (Clock::now() < moment) std::this_thread::yield();
}

TEST(StopWatch, ReadsZeroAtRest) {
  const BStopWatch watch(false);

  SpinUntil(Clock::now() + std::chrono::milliseconds(1));

  EXPECT_EQ(watch.PeriodD(), 0.0);
  EXPECT_EQ(watch.Period(), 0u);
}

TEST(StopWatch, MeasuresMillisecondsFromItsStart) {
  const auto before = Clock::now();
  const BStopWatch watch;
  const auto started = Clock::now();
  SpinUntil(started + std::chrono::milliseconds(5));

  const auto at_least = Milliseconds(Clock::now() - started);
  const double period = watch.PeriodD();
  const auto at_most = Milliseconds(Clock::now() - before);

  EXPECT_GE(period, at_least);
  EXPECT_LE(period, at_most);
}

TEST(StopWatch, GivesWholeMillisecondsToo) {
  const BStopWatch watch;
  SpinUntil(Clock::now() + std::chrono::milliseconds(3));

  const double before = watch.PeriodD();
  const auto whole = watch.Period();
  const double after = watch.PeriodD();

  EXPECT_GE(whole, static_cast<std::uint32_t>(before));
  EXPECT_LE(whole, static_cast<std::uint32_t>(after));
}

TEST(StopWatch, StartsAgainWhenReset) {
  BStopWatch watch;
  SpinUntil(Clock::now() + std::chrono::milliseconds(5));
  const auto before = Clock::now();

  watch.Reset();

  const double period = watch.PeriodD();
  EXPECT_LE(period, Milliseconds(Clock::now() - before));
  EXPECT_GE(period, 0.0);
}

TEST(StopWatch, RunsFromReset) {
  BStopWatch watch(false);
  watch.Reset();
  SpinUntil(Clock::now() + std::chrono::milliseconds(2));

  EXPECT_GE(watch.PeriodD(), 2.0);
}

TEST(StopWatch, RunsOnInACopy) {
  const BStopWatch watch;
  SpinUntil(Clock::now() + std::chrono::milliseconds(3));
  BStopWatch assigned(false);
  assigned = watch;

  EXPECT_GE(BStopWatch(watch).PeriodD(), 3.0);
  EXPECT_GE(assigned.PeriodD(), 3.0);
  EXPECT_EQ(BStopWatch(BStopWatch(false)).PeriodD(), 0.0);
}

TEST(StopWatch, IsReadWhileAnotherThreadResetsIt) {
  BStopWatch watch;
  std::atomic<bool> done{false};
  std::thread resetting([&] {
    while (!done) watch.Reset();
  });

  bool went_back = false;
  for (int i = 0; i < 10000; ++i) went_back |= BStopWatch(watch).PeriodD() < 0.0;

  done = true;
  resetting.join();
  EXPECT_FALSE(went_back);
}

}  // namespace
