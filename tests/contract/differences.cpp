// differences.cpp
// What is not the same in every VimbaC library.
#include "differences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>

namespace {

constexpr char kSimulated[] = "simulated";
constexpr char kAravis[] = "aravis";

struct Difference {
  std::string_view library;
  // Suite and test, as GoogleTest prints them.
  std::string_view test;
  const char* reason;
};

constexpr Difference kDifferences[] = {
    {kAravis, "Features.CanBeWatched", "nobody tells a library over Aravis what a camera changes by itself"},
};

std::string NameOf(const testing::TestInfo& test) { return std::string(test.test_suite_name()) + '.' + test.name(); }

TEST(Differences, AreOfLibrariesAndTestsThatThereAre) {
  std::set<std::string, std::less<>> tests;
  const testing::UnitTest& program = *testing::UnitTest::GetInstance();
  for (int i = 0; i < program.total_test_suite_count(); ++i) {
    const testing::TestSuite& suite = *program.GetTestSuite(i);
    for (int j = 0; j < suite.total_test_count(); ++j) tests.insert(NameOf(*suite.GetTestInfo(j)));
  }

  for (const Difference& difference : kDifferences) {
    EXPECT_TRUE(tests.contains(difference.test)) << difference.test;
    EXPECT_TRUE(difference.library == kSimulated || difference.library == kAravis) << difference.library;
  }
  EXPECT_TRUE(LibraryUnderTest() == kSimulated || LibraryUnderTest() == kAravis) << LibraryUnderTest();
}

}  // namespace

std::string LibraryUnderTest() {
  const char* const named = std::getenv("KEL_CONTRACT_LIBRARY");
  return named && *named ? named : kSimulated;
}

const char* WhyNotForThisLibrary() {
  const std::string test = NameOf(*testing::UnitTest::GetInstance()->current_test_info());
  const auto found = std::find_if(std::begin(kDifferences), std::end(kDifferences), [&](const Difference& difference) {
    return difference.test == test && difference.library == LibraryUnderTest();
  });
  return found == std::end(kDifferences) ? nullptr : found->reason;
}
