// output_test.cpp
// Where drivers report to.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "imagingdevice.h"

namespace {

using Calls = std::vector<std::wstring>;

// Notes its calls; unguarded on purpose, since it is called once at a time.
class NotingSink : public ImagingDevice::BSink {
 public:
  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override {
    calls.push_back(L"show " + std::wstring(text) + L", " + (caption ? caption : L"<null>"));
  }
  void OnLogMessage(const WString& text, bool important) override {
    calls.push_back((important ? L"log! " : L"log ") + text.Str());
  }

  Calls calls;
};

class Output : public testing::Test {
 protected:
  ~Output() override { ImagingDevice::InstallSink(nullptr); }

  NotingSink m_sink;
};

TEST_F(Output, IsDroppedWithoutASink) {
  ImagingDevice::ShowInfo(L"a", L"!");
  ImagingDevice::LogMessage(L"a", true);

  EXPECT_EQ(ImagingDevice::InstallSink(&m_sink), nullptr);
  EXPECT_EQ(m_sink.calls, (Calls{}));
}

TEST_F(Output, ReachesTheSinkAsItIs) {
  ImagingDevice::InstallSink(&m_sink);

  ImagingDevice::ShowInfo(L"100%s\n", L"!");
  ImagingDevice::ShowInfo(L"notice");
  ImagingDevice::ShowInfo(nullptr, L"");
  ImagingDevice::LogMessage(L"line", false);
  ImagingDevice::LogMessage(L"line", true);

  EXPECT_EQ(m_sink.calls, (Calls{L"show 100%s\n, !", L"show notice, <null>", L"show , ", L"log line", L"log! line"}));
}

TEST_F(Output, GoesToTheSinkThatWasInstalledLast) {
  NotingSink other;
  EXPECT_EQ(ImagingDevice::InstallSink(&m_sink), nullptr);
  EXPECT_EQ(ImagingDevice::InstallSink(&other), &m_sink);

  ImagingDevice::LogMessage(L"a", false);

  EXPECT_EQ(m_sink.calls, (Calls{}));
  EXPECT_EQ(other.calls, (Calls{L"log a"}));
  EXPECT_EQ(ImagingDevice::InstallSink(nullptr), &other);
}

TEST_F(Output, ReachesTheSinkOneCallAtATime) {
  constexpr std::size_t kThreads = 4;
  constexpr std::size_t kCalls = 500;
  ImagingDevice::InstallSink(&m_sink);
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([] {
      for (std::size_t call = 0; call < kCalls; ++call) {
        ImagingDevice::ShowInfo(L"a");
        ImagingDevice::LogMessage(L"b", false);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  EXPECT_EQ(m_sink.calls.size(), kThreads * 2 * kCalls);
}

// Stays in a call until it is let go.
class SlowSink : public ImagingDevice::BSink {
 public:
  void OnShowInfo(const wchar_t*, const wchar_t*) override {
    entered.set_value();
    release.get_future().wait();
  }
  void OnLogMessage(const WString&, bool) override {}

  std::promise<void> entered;
  std::promise<void> release;
};

TEST_F(Output, LeavesTheOldSinkBeforeInstallingReturns) {
  SlowSink slow;
  ImagingDevice::InstallSink(&slow);
  auto report = std::async(std::launch::async, [] { ImagingDevice::ShowInfo(L"a"); });
  slow.entered.get_future().wait();
  auto install = std::async(std::launch::async, [] { ImagingDevice::InstallSink(nullptr); });

  const auto while_at_work = install.wait_for(std::chrono::milliseconds(100));
  slow.release.set_value();

  EXPECT_EQ(while_at_work, std::future_status::timeout) << "installing returned while the old sink was at work";
  EXPECT_EQ(install.wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

// Counts the calls that come in time and those that come after it was taken away.
class LeavingSink : public ImagingDevice::BSink {
 public:
  void OnShowInfo(const wchar_t*, const wchar_t*) override {}
  void OnLogMessage(const WString&, bool) override { ++(is_gone ? late_calls : calls); }

  std::atomic<bool> is_gone{false};
  std::atomic<int> calls{0};
  std::atomic<int> late_calls{0};
};

TEST_F(Output, NeverReachesASinkThatIsGone) {
  std::atomic<bool> done{false};
  std::vector<std::thread> threads;
  threads.reserve(2);
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&] {
      while (!done) ImagingDevice::LogMessage(L"a", false);
    });
  }
  std::array<LeavingSink, 500> sinks;
  for (LeavingSink& sink : sinks) {
    ImagingDevice::InstallSink(&sink);
    while (sink.calls == 0) std::this_thread::yield();
    ImagingDevice::InstallSink(nullptr);
    sink.is_gone = true;
  }
  done = true;
  for (std::thread& thread : threads) thread.join();

  for (const LeavingSink& sink : sinks) EXPECT_EQ(sink.late_calls, 0);
}

class ThrowingSink : public ImagingDevice::BSink {
 public:
  void OnShowInfo(const wchar_t*, const wchar_t*) override { throw std::runtime_error("no window"); }
  void OnLogMessage(const WString&, bool) override { throw 1; }
};

TEST_F(Output, KeepsASinksExceptionsFromDrivers) {
  ThrowingSink throwing;
  ImagingDevice::InstallSink(&throwing);

  EXPECT_NO_THROW(ImagingDevice::ShowInfo(L"a"));
  EXPECT_NO_THROW(ImagingDevice::LogMessage(L"a", false));

  ImagingDevice::InstallSink(&m_sink);
  ImagingDevice::ShowInfo(L"b");
  EXPECT_EQ(m_sink.calls, (Calls{L"show b, <null>"}));
}

}  // namespace
