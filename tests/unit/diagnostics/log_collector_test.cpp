// log_collector_test.cpp
// The diagnostic message of one operation, byte for byte but for its times.
#include "diagnostics/log_collector.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <regex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/host_output.h"

namespace {

// What one collector shows; fails the test unless that is one message with an empty caption.
std::wstring ShownBy(const std::function<void()>& operation) {
  const HostOutput output;
  operation();
  const std::vector<std::wstring> messages = output.WithCaption(L"");
  EXPECT_EQ(messages.size(), 1U);
  EXPECT_EQ(output.Messages().size(), 1U);
  return messages.empty() ? std::wstring() : messages.front();
}

std::wstring Shown(const std::function<void(BLogCollector&)>& insert) {
  return ShownBy([&] {
    BLogCollector log(L"Title");
    insert(log);
  });
}

// The times and steps of a message's stamped lines, in milliseconds; each must be laid out as the line says.
struct Stamp {
  int number;
  double time, step;
};

std::vector<Stamp> StampsOf(const std::wstring& message) {
  static const std::wregex kLine(L"\n  ([ 0-9][0-9]) : ( *[0-9]+\\.[0-9]{4}) \\(( *-?[0-9]+\\.[0-9]{4})\\) : ");
  std::vector<Stamp> stamps;
  for (std::wsregex_iterator match(message.begin(), message.end(), kLine), end; match != end; ++match) {
    EXPECT_EQ((*match)[2].length(), 12);
    EXPECT_EQ((*match)[3].length(), 8);
    stamps.push_back({std::stoi((*match)[1]), std::stod((*match)[2]), std::stod((*match)[3])});
  }
  return stamps;
}

TEST(LogCollector, AMessageIsATitleStampedLinesAndAnEnd) {
  const std::wstring message = Shown([](BLogCollector& log) {
    log << L"one" << L'\n';
    log << L"two" << L'\n';
  });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : one\n   2 : # (#) : two\n   3 : # (#) : End\n");
  EXPECT_EQ(StampsOf(message).size(), 3U);
}

TEST(LogCollector, TheFirstLineIsLaidOutInFixedWidths) {
  const std::wstring message = Shown([](BLogCollector&) {});

  EXPECT_TRUE(
      std::regex_match(message, std::wregex(L"Title\n   1 :  {1,7}[0-9]{1,6}\\.[0-9]{4} \\(  0\\.0000\\) : End\n")))
      << testing::PrintToString(message);
  EXPECT_EQ(message.find(L" (  0.0000) : End\n"), std::wstring(L"Title\n   1 : ").size() + 12);
}

TEST(LogCollector, TheTenthLineTakesBothPlacesOfTheNumber) {
  const std::wstring message = Shown([](BLogCollector& log) {
    for (int line = 1; line < 12; ++line) log << L"line" << L'\n';
  });

  EXPECT_NE(WithoutTimes(message).find(L"\n   9 : # (#) : line\n  10 : # (#) : line\n"), std::wstring::npos);
  EXPECT_EQ(StampsOf(message).back().number, 12);
}

TEST(LogCollector, TheHundredthLineGrowsWider) {
  const std::wstring message = Shown([](BLogCollector& log) {
    for (int line = 1; line < 100; ++line) log << L"line" << L'\n';
  });

  EXPECT_NE(WithoutTimes(message).find(L"\n  99 : # (#) : line\n  100 : # (#) : End\n"), std::wstring::npos);
}

TEST(LogCollector, AStepIsTheTimeSinceTheLineBefore) {
  const std::vector<Stamp> stamps = StampsOf(Shown([](BLogCollector& log) {
    for (int line = 0; line < 20; ++line) log << L"line" << L'\n';
  }));

  ASSERT_EQ(stamps.size(), 21U);
  EXPECT_EQ(stamps.front().step, 0.0);
  for (std::size_t i = 1; i < stamps.size(); ++i) {
    // Each is rounded.
    EXPECT_NEAR(stamps[i].time - stamps[i - 1].time, stamps[i].step, 0.00011);
    EXPECT_EQ(stamps[i].number, static_cast<int>(i) + 1);
  }
}

TEST(LogCollector, OnlyWhatStartsALineIsStamped) {
  const std::wstring message = Shown([](BLogCollector& log) { log << L"a = " << 1 << L", b = " << 2 << L'\n'; });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : a = 1, b = 2\n   2 : # (#) : End\n");
}

TEST(LogCollector, ALineBreakInsideATextEndsTheLineToo) {
  const std::wstring message = Shown([](BLogCollector& log) { log << L"Fire SW trigger\n" << L"next" << L"\n"; });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : Fire SW trigger\n   2 : # (#) : next\n   3 : # (#) : End\n");
}

TEST(LogCollector, ALineThatIsOnlyALineBreakIsNumbered) {
  const std::wstring message = Shown([](BLogCollector& log) { log << L'\n' << L'\n'; });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : \n   2 : # (#) : \n   3 : # (#) : End\n");
}

TEST(LogCollector, ALineThatIsNotEndedIsContinuedByTheEnd) {
  EXPECT_EQ(WithoutTimes(Shown([](BLogCollector& log) { log << L"open"; })), L"Title\n   1 : # (#) : openEnd\n");
}

TEST(LogCollector, WithoutInsertionsThereAreOnlyTitleAndEnd) {
  EXPECT_EQ(WithoutTimes(Shown([](BLogCollector&) {})), L"Title\n   1 : # (#) : End\n");
}

TEST(LogCollector, AnEmptyTitleIsStillALine) {
  EXPECT_EQ(WithoutTimes(ShownBy([] { const BLogCollector log{WString()}; })), L"\n   1 : # (#) : End\n");
}

TEST(LogCollector, OnAnotherWatchAMessageBeginsWithStart) {
  const BStopWatch watch;
  const std::wstring message = ShownBy([&] { const BLogCollector log(L"Title", watch); });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : Start\n   2 : # (#) : End\n");
  EXPECT_EQ(StampsOf(message).front().step, 0.0);
}

TEST(LogCollector, OnAnotherWatchTimesCountFromThatWatchesStart) {
  const BStopWatch watch;
  while (watch.PeriodD() < 5.0) {
  }
  const double before = watch.PeriodD();
  const std::wstring message = ShownBy([&] { const BLogCollector log(L"Title", watch); });
  const double after = watch.PeriodD();

  for (const Stamp& stamp : StampsOf(message)) {
    EXPECT_GE(stamp.time, before - 0.0001);
    EXPECT_LE(stamp.time, after + 0.0001);
  }
}

TEST(LogCollector, AResetOfTheOriginalWatchDoesNotTouchAMessage) {
  BStopWatch watch;
  while (watch.PeriodD() < 5.0) {
  }
  const std::wstring message = ShownBy([&] {
    const BLogCollector log(L"Title", watch);
    watch.Reset();
  });

  const std::vector<Stamp> stamps = StampsOf(message);
  ASSERT_EQ(stamps.size(), 2U);
  EXPECT_GE(stamps.back().time, 4.9999);
}

TEST(LogCollector, OnAWatchOfItsOwnTimesCountFromItsConstruction) {
  const BStopWatch outer;
  const std::wstring message = Shown([](BLogCollector&) {});

  EXPECT_LE(StampsOf(message).back().time, outer.PeriodD() + 0.0001);
}

TEST(LogCollector, AWatchOfItsOwnRunsFromItsConstruction) {
  constexpr double kRunsForMs = 5.0;
  const std::wstring message = Shown([](BLogCollector&) {
    const BStopWatch inner;
    while (inner.PeriodD() < kRunsForMs) std::this_thread::yield();
  });

  EXPECT_GE(StampsOf(message).back().time, kRunsForMs - 0.0001);
}

TEST(LogCollector, EveryKindOfValueIsWrittenInItsOwnWay) {
  const int object = 0;
  std::wostringstream pointer;
  pointer << static_cast<const void*>(&object);
  const std::wstring message = Shown([&object](BLogCollector& log) {
    log << std::int32_t{-2147483647 - 1} << L' ' << std::numeric_limits<std::int64_t>::min() << L' '
        << std::numeric_limits<std::uint64_t>::max() << L' ' << 1.23456 << L' ' << L"wide" << L' '
        << std::wstring(L"standard") << L' ' << "narrow" << L' ' << static_cast<const void*>(&object) << L'\n';
  });

  EXPECT_EQ(
      WithoutTimes(message),
      L"Title\n   1 : # (#) : -2147483648 -9223372036854775808 18446744073709551615 1.2346 wide standard narrow " +
          pointer.str() + L"\n   2 : # (#) : End\n");
}

TEST(LogCollector, EveryKindOfValueBeginsALineWithItsStamp) {
  const int object = 0;
  const std::wstring message = Shown([&object](BLogCollector& log) {
    log << std::int32_t{1} << L'\n' << std::int64_t{2} << L'\n' << std::uint64_t{3} << L'\n' << 4.0 << L'\n';
    log << true << L'\n' << L"wide" << L'\n' << std::wstring(L"standard") << L'\n' << "narrow" << L'\n';
    log << static_cast<const void*>(&object) << L'\n' << L'c' << L'\n' << std::boolalpha << true << L'\n';
  });
  EXPECT_EQ(StampsOf(message).size(), 12U);
  EXPECT_EQ(LinesOf(message).size(), 13U);
}

TEST(LogCollector, DoublesKeepFourDecimalsOnceALineIsStamped) {
  const std::wstring message =
      Shown([](BLogCollector& log) { log << 98.3 << L' ' << 1e10 << L' ' << -0.1 << L' ' << 1.0 / 3.0 << L'\n'; });

  EXPECT_EQ(WithoutTimes(message),
            L"Title\n   1 : # (#) : 98.3000 10000000000.0000 -0.1000 0.3333\n   2 : # (#) : End\n");
}

TEST(LogCollector, BooleansAreNumbersUntilWordsAreAskedFor) {
  const std::wstring message = Shown([](BLogCollector& log) {
    log << true << L' ' << false << L' ' << std::boolalpha << true << L' ' << false << L'\n';
    log << true << L'\n';
  });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : 1 0 true false\n   2 : # (#) : true\n   3 : # (#) : End\n");
}

// The stamp comes before the manipulator, which it would undo.
TEST(LogCollector, AManipulatorStartsALineLikeAnyInsertion) {
  const std::wstring message =
      Shown([](BLogCollector& log) { log << std::scientific << 1.5 << L'\n' << 1.5 << L'\n'; });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : 1.5000e+00\n   2 : # (#) : 1.5000\n   3 : # (#) : End\n");
}

TEST(LogCollector, NoManipulatorChangesAStamp) {
  const std::wstring message = Shown([](BLogCollector& log) {
    log << std::left << std::hex << std::showpos << std::showbase;
    for (int line = 1; line < 12; ++line) log << L"line" << L'\n';
  });

  EXPECT_NE(WithoutTimes(message).find(L"\n   9 : # (#) : line\n  10 : # (#) : line\n"), std::wstring::npos);
  EXPECT_EQ(StampsOf(message).size(), 12U);
}

TEST(LogCollector, NullTextsCountAsEmpty) {
  const std::wstring message = Shown([](BLogCollector& log) {
    log << static_cast<const wchar_t*>(nullptr) << static_cast<const char*>(nullptr) << L"after" << L'\n';
  });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : after\n   2 : # (#) : End\n");
}

TEST(LogCollector, TitleAndTextsAreNeverFormats) {
  const std::wstring message = ShownBy([] {
    BLogCollector log(L"100 %s %n");
    log << L"%d" << "%x" << std::wstring(L"%%") << L'\n';
  });

  EXPECT_EQ(WithoutTimes(message), L"100 %s %n\n   1 : # (#) : %d%x%%\n   2 : # (#) : End\n");
}

TEST(LogCollector, AMessageIsShownOnceItsOperationEndsAndNotBefore) {
  const HostOutput output;
  {
    BLogCollector log(L"Title");
    log << L"text" << L'\n';
    EXPECT_EQ(output.Messages().size(), 0U);
  }
  EXPECT_EQ(output.Messages().size(), 1U);
}

TEST(LogCollector, AMessageIsShownWhenAnExceptionUnwindsItsOperation) {
  const std::wstring message = ShownBy([] {
    try {
      BLogCollector log(L"Title");
      log << L"before" << L'\n';
      throw std::runtime_error("the operation failed");
    } catch (const std::runtime_error&) {
    }
  });

  EXPECT_EQ(WithoutTimes(message), L"Title\n   1 : # (#) : before\n   2 : # (#) : End\n");
}

TEST(LogCollector, AnInnerOperationsMessageIsShownFirst) {
  const HostOutput output;
  {
    BLogCollector outer(L"Outer");
    outer << L"before" << L'\n';
    { const BLogCollector inner(L"Inner"); }
    outer << L"after" << L'\n';
  }
  const std::vector<std::wstring> shown = output.WithCaption(L"");

  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(WithoutTimes(shown[0]), L"Inner\n   1 : # (#) : End\n");
  EXPECT_EQ(WithoutTimes(shown[1]), L"Outer\n   1 : # (#) : before\n   2 : # (#) : after\n   3 : # (#) : End\n");
}

// Looking at the text by copying it would move 100 GB here.
TEST(LogCollector, ALongMessageCostsNoMoreForEachLine) {
  constexpr int kLines = 100'000;
  const BStopWatch watch;
  const std::wstring message = Shown([](BLogCollector& log) {
    for (int line = 0; line < kLines; ++line) log << L"a line of a long message" << L'\n';
  });

  EXPECT_EQ(std::count(message.begin(), message.end(), L'\n'), kLines + 2);
  EXPECT_LT(watch.PeriodD(), 20'000.0);
}

}  // namespace
