// log_collector_test.cpp
// The diagnostic message of one operation, byte for byte but for its times.
#include "diagnostics/log_collector.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/host_output.h"

namespace {

// What one collector shows; fails the test unless that is one message with an empty caption.
std::wstring ShownBy(const std::function<void()>& operation) {
  const HostOutput output;
  operation();
  const std::vector<std::wstring> messages = output.WithCaption(L"");
  EXPECT_EQ(1U, messages.size());
  EXPECT_EQ(1U, output.Messages().size());
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
  static const std::wregex line(L"\n  ([ 0-9][0-9]) : ( *[0-9]+\\.[0-9]{4}) \\(( *-?[0-9]+\\.[0-9]{4})\\) : ");
  std::vector<Stamp> stamps;
  for (std::wsregex_iterator match(message.begin(), message.end(), line), end; match != end; ++match) {
    EXPECT_EQ(12, (*match)[2].length());
    EXPECT_EQ(8, (*match)[3].length());
    stamps.push_back({std::stoi((*match)[1]), std::stod((*match)[2]), std::stod((*match)[3])});
  }
  return stamps;
}

TEST(LogCollector, AMessageIsATitleStampedLinesAndAnEnd) {
  const std::wstring message = Shown([](BLogCollector& log) {
    log << L"one" << L'\n';
    log << L"two" << L'\n';
  });

  EXPECT_EQ(L"Title\n   1 : # (#) : one\n   2 : # (#) : two\n   3 : # (#) : End\n", WithoutTimes(message));
  EXPECT_EQ(3U, StampsOf(message).size());
}

TEST(LogCollector, TheFirstLineIsLaidOutInFixedWidths) {
  const std::wstring message = Shown([](BLogCollector&) {});

  EXPECT_TRUE(
      std::regex_match(message, std::wregex(L"Title\n   1 :  {1,7}[0-9]{1,6}\\.[0-9]{4} \\(  0\\.0000\\) : End\n")))
      << testing::PrintToString(message);
  EXPECT_EQ(std::wstring(L"Title\n   1 : ").size() + 12, message.find(L" (  0.0000) : End\n"));
}

TEST(LogCollector, TheTenthLineTakesBothPlacesOfTheNumber) {
  const std::wstring message = Shown([](BLogCollector& log) {
    for (int line = 1; line < 12; ++line) log << L"line" << L'\n';
  });

  EXPECT_NE(std::wstring::npos, WithoutTimes(message).find(L"\n   9 : # (#) : line\n  10 : # (#) : line\n"));
  EXPECT_EQ(12, StampsOf(message).back().number);
}

TEST(LogCollector, TheHundredthLineGrowsWider) {
  const std::wstring message = Shown([](BLogCollector& log) {
    for (int line = 1; line < 100; ++line) log << L"line" << L'\n';
  });

  EXPECT_NE(std::wstring::npos, WithoutTimes(message).find(L"\n  99 : # (#) : line\n  100 : # (#) : End\n"));
}

TEST(LogCollector, AStepIsTheTimeSinceTheLineBefore) {
  const std::vector<Stamp> stamps = StampsOf(Shown([](BLogCollector& log) {
    for (int line = 0; line < 20; ++line) log << L"line" << L'\n';
  }));

  ASSERT_EQ(21U, stamps.size());
  EXPECT_EQ(0.0, stamps.front().step);
  for (std::size_t i = 1; i < stamps.size(); ++i) {
    EXPECT_NEAR(stamps[i].time - stamps[i - 1].time, stamps[i].step, 0.00011);  // each is rounded
    EXPECT_EQ(static_cast<int>(i) + 1, stamps[i].number);
  }
}

TEST(LogCollector, OnlyWhatStartsALineIsStamped) {
  const std::wstring message = Shown([](BLogCollector& log) { log << L"a = " << 1 << L", b = " << 2 << L'\n'; });

  EXPECT_EQ(L"Title\n   1 : # (#) : a = 1, b = 2\n   2 : # (#) : End\n", WithoutTimes(message));
}

TEST(LogCollector, ALineBreakInsideATextEndsTheLineToo) {
  const std::wstring message = Shown([](BLogCollector& log) { log << L"Fire SW trigger\n" << L"next" << L"\n"; });

  EXPECT_EQ(L"Title\n   1 : # (#) : Fire SW trigger\n   2 : # (#) : next\n   3 : # (#) : End\n", WithoutTimes(message));
}

TEST(LogCollector, ALineThatIsOnlyALineBreakIsNumbered) {
  const std::wstring message = Shown([](BLogCollector& log) { log << L'\n' << L'\n'; });

  EXPECT_EQ(L"Title\n   1 : # (#) : \n   2 : # (#) : \n   3 : # (#) : End\n", WithoutTimes(message));
}

TEST(LogCollector, ALineThatIsNotEndedIsContinuedByTheEnd) {
  EXPECT_EQ(L"Title\n   1 : # (#) : openEnd\n", WithoutTimes(Shown([](BLogCollector& log) { log << L"open"; })));
}

TEST(LogCollector, WithoutInsertionsThereAreOnlyTitleAndEnd) {
  EXPECT_EQ(L"Title\n   1 : # (#) : End\n", WithoutTimes(Shown([](BLogCollector&) {})));
}

TEST(LogCollector, AnEmptyTitleIsStillALine) {
  EXPECT_EQ(L"\n   1 : # (#) : End\n", WithoutTimes(ShownBy([] { const BLogCollector log{WString()}; })));
}

TEST(LogCollector, OnAnotherWatchAMessageBeginsWithStart) {
  const BStopWatch watch;
  const std::wstring message = ShownBy([&] { const BLogCollector log(L"Title", watch); });

  EXPECT_EQ(L"Title\n   1 : # (#) : Start\n   2 : # (#) : End\n", WithoutTimes(message));
  EXPECT_EQ(0.0, StampsOf(message).front().step);
}

TEST(LogCollector, OnAnotherWatchTimesCountFromThatWatchesStart) {
  const BStopWatch watch;
  while (watch.PeriodD() < 5.0) {
  }
  const double before = watch.PeriodD();
  const std::wstring message = ShownBy([&] { const BLogCollector log(L"Title", watch); });
  const double after = watch.PeriodD();

  for (const Stamp& stamp : StampsOf(message)) {
    EXPECT_LE(before - 0.0001, stamp.time);
    EXPECT_GE(after + 0.0001, stamp.time);
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
  ASSERT_EQ(2U, stamps.size());
  EXPECT_LE(4.9999, stamps.back().time);
}

TEST(LogCollector, OnAWatchOfItsOwnTimesCountFromItsConstruction) {
  const BStopWatch outer;
  const std::wstring message = Shown([](BLogCollector&) {});

  EXPECT_GE(outer.PeriodD() + 0.0001, StampsOf(message).back().time);
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
      L"Title\n   1 : # (#) : -2147483648 -9223372036854775808 18446744073709551615 1.2346 wide standard narrow " +
          pointer.str() + L"\n   2 : # (#) : End\n",
      WithoutTimes(message));
}

TEST(LogCollector, DoublesKeepFourDecimalsOnceALineIsStamped) {
  const std::wstring message =
      Shown([](BLogCollector& log) { log << 98.3 << L' ' << 1e10 << L' ' << -0.1 << L' ' << 1.0 / 3.0 << L'\n'; });

  EXPECT_EQ(L"Title\n   1 : # (#) : 98.3000 10000000000.0000 -0.1000 0.3333\n   2 : # (#) : End\n",
            WithoutTimes(message));
}

TEST(LogCollector, BooleansAreNumbersUntilWordsAreAskedFor) {
  const std::wstring message = Shown([](BLogCollector& log) {
    log << true << L' ' << false << L' ' << std::boolalpha << true << L' ' << false << L'\n';
    log << true << L'\n';
  });

  EXPECT_EQ(L"Title\n   1 : # (#) : 1 0 true false\n   2 : # (#) : true\n   3 : # (#) : End\n", WithoutTimes(message));
}

// The stamp comes before the manipulator, which would turn its fields around.
TEST(LogCollector, AManipulatorStartsALineLikeAnyInsertion) {
  const std::wstring message = Shown([](BLogCollector& log) { log << std::left << L"text" << std::right << L'\n'; });

  EXPECT_EQ(L"Title\n   1 : # (#) : text\n   2 : # (#) : End\n", WithoutTimes(message));
}

TEST(LogCollector, NullTextsCountAsEmpty) {
  const std::wstring message = Shown([](BLogCollector& log) {
    log << static_cast<const wchar_t*>(nullptr) << static_cast<const char*>(nullptr) << L"after" << L'\n';
  });

  EXPECT_EQ(L"Title\n   1 : # (#) : after\n   2 : # (#) : End\n", WithoutTimes(message));
}

TEST(LogCollector, TitleAndTextsAreNeverFormats) {
  const std::wstring message = ShownBy([] {
    BLogCollector log(L"100 %s %n");
    log << L"%d" << "%x" << std::wstring(L"%%") << L'\n';
  });

  EXPECT_EQ(L"100 %s %n\n   1 : # (#) : %d%x%%\n   2 : # (#) : End\n", WithoutTimes(message));
}

TEST(LogCollector, AMessageIsShownOnceItsOperationEndsAndNotBefore) {
  const HostOutput output;
  {
    BLogCollector log(L"Title");
    log << L"text" << L'\n';
    EXPECT_EQ(0U, output.Messages().size());
  }
  EXPECT_EQ(1U, output.Messages().size());
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

  EXPECT_EQ(L"Title\n   1 : # (#) : before\n   2 : # (#) : End\n", WithoutTimes(message));
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

  ASSERT_EQ(2U, shown.size());
  EXPECT_EQ(L"Inner\n   1 : # (#) : End\n", WithoutTimes(shown[0]));
  EXPECT_EQ(L"Outer\n   1 : # (#) : before\n   2 : # (#) : after\n   3 : # (#) : End\n", WithoutTimes(shown[1]));
}

// Looking at the text by copying it would move 100 GB here.
TEST(LogCollector, ALongMessageCostsNoMoreForEachLine) {
  constexpr int kLines = 100'000;
  const BStopWatch watch;
  const std::wstring message = Shown([](BLogCollector& log) {
    for (int line = 0; line < kLines; ++line) log << L"a line of a long message" << L'\n';
  });

  EXPECT_EQ(kLines + 2, std::count(message.begin(), message.end(), L'\n'));
  EXPECT_GT(20'000.0, watch.PeriodD());
}

}  // namespace
