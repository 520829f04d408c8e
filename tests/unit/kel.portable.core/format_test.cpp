// format_test.cpp
// Formatting into the host's texts.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <limits>
#include <locale>
#include <string>

#include "bstring.h"
#include "wstring.h"

namespace {

template <class... Arguments>
std::wstring Wide(const wchar_t* format, const Arguments&... arguments) {
  return WString::Format(format, arguments...).Str();
}

TEST(Format, PutsTextsIn) {
  EXPECT_EQ(Wide(L"Vimba_%s_%s", WString(L"Manta"), L"0503"), L"Vimba_Manta_0503");
  EXPECT_EQ(Wide(L"%s", std::wstring(L"std")), L"std");
}

TEST(Format, PrintsANullTextAsEmpty) { EXPECT_EQ(Wide(L"[%s]", static_cast<const wchar_t*>(nullptr)), L"[]"); }

TEST(Format, GivesAnEmptyTextForNoFormat) { EXPECT_EQ(Wide(nullptr), L""); }

TEST(Format, LeavesPercentSignsInArgumentsAlone) { EXPECT_EQ(Wide(L"%s %s", L"100%s", L"%n%"), L"100%s %n%"); }

TEST(Format, PrintsWholeNumbersByTheirOwnType) {
  EXPECT_EQ(Wide(L"%d %u", -3, 4294967295u), L"-3 4294967295");
  EXPECT_EQ(Wide(L"%d", std::numeric_limits<std::uint64_t>::max()), L"18446744073709551615");
  EXPECT_EQ(Wide(L"%i", std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
  EXPECT_EQ(Wide(L"%u", -1), L"-1");
  EXPECT_EQ(Wide(L"%d", true), L"1");
}

TEST(Format, ReadsOverLengthLetters) {
  EXPECT_EQ(Wide(L"%lu %lld %hd %zu %jd", 1ul, 2ll, 3, sizeof(char[4]), std::int64_t{5}), L"1 2 3 4 5");
  EXPECT_EQ(Wide(L"%ls %lf", L"text", 1.5), L"text 1.500000");
}

TEST(Format, PrintsHexadecimalNumbers) {
  EXPECT_EQ(Wide(L"%x %x %06x", 255u, 0x01080001, 0xff), L"ff 1080001 0000ff");
  EXPECT_EQ(Wide(L"%x", -1), L"ffffffffffffffff");
}

TEST(Format, PrintsCharacters) {
  EXPECT_EQ(Wide(L"[%c] [%c] [%3c]", L'x', 65, L'y'), L"[x] [A] [  y]");
  EXPECT_EQ(BString::Format("[%c]", 'x').Str(), "[x]");
}

TEST(Format, PrintsFloatingNumbers) {
  EXPECT_EQ(Wide(L"%f %.2f %.0f %.1f", 1.5, 2.345678, -3.0, 0.1f), L"1.500000 2.35 -3 0.1");
  EXPECT_EQ(Wide(L"%f %f %f", std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                 std::numeric_limits<double>::quiet_NaN()),
            L"inf -inf nan");
}

TEST(Format, PrintsTheLargestNumberInFull) {
  EXPECT_EQ(Wide(L"%.0f", std::numeric_limits<double>::max()).size(), 309u);
  EXPECT_EQ(Wide(L"%.1000f", std::numeric_limits<double>::lowest()).size(), 1u + 309u + 1u + 1000u);
}

TEST(Format, PadsToTheWidth) {
  EXPECT_EQ(Wide(L"[%5d] [%-5d] [%05d] [%05d]", 42, 42, 42, -42), L"[   42] [42   ] [00042] [-0042]");
  EXPECT_EQ(Wide(L"[%5s] [%-5s] [%5s]", L"ab", L"ab", L"abcdef"), L"[   ab] [ab   ] [abcdef]");
  EXPECT_EQ(Wide(L"[%6.2f] [%06.2f]", 1.5, -1.5), L"[  1.50] [-01.50]");
}

TEST(Format, CutsTextsAndFillsNumbersToThePrecision) {
  EXPECT_EQ(Wide(L"[%.2s] [%5.2s] [%.0s]", L"abcdef", L"abcdef", L"abc"), L"[ab] [   ab] []");
  EXPECT_EQ(Wide(L"[%.3d] [%.3d] [%05.3d]", 7, -7, 7), L"[007] [-007] [  007]");
}

TEST(Format, LetsLeftAlignmentWinOverZeros) { EXPECT_EQ(Wide(L"[%-05d]", 42), L"[42   ]"); }

TEST(Format, LimitsTheWidthOfAField) { EXPECT_EQ(Wide(L"%99999999999999999999d", 1).size(), 1000u); }

TEST(Format, PrintsPercentSigns) { EXPECT_EQ(Wide(L"%d%%", 100), L"100%"); }

TEST(Format, MarksMissingArguments) { EXPECT_EQ(Wide(L"%d %d %s", 1), L"1 %? %?"); }

TEST(Format, MarksArgumentsThatDoNotFit) {
  EXPECT_EQ(Wide(L"%d %s %f %c %x %s", L"text", 1, 2, L"c", 1.5, L"ok"), L"%? %? %? %? %? ok");
  EXPECT_EQ(BString::Format("%c", 300).Str(), "%?");
}

TEST(Format, MarksUnknownConversions) {
  EXPECT_EQ(Wide(L"%y %d", 1, 2), L"%? 2");
  EXPECT_EQ(Wide(L"end %", 1), L"end %?");
  EXPECT_EQ(Wide(L"end %08l", 1), L"end %?");
}

TEST(Format, SkipsArgumentsThatAreLeftOver) { EXPECT_EQ(Wide(L"%d", 1, 2, L"three"), L"1"); }

// The locale of the process groups digits and has a comma where numbers have their point.
class Grouping : public std::numpunct<wchar_t> {
  wchar_t do_decimal_point() const override { return L','; }
  wchar_t do_thousands_sep() const override { return L'.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Format, DoesNotCareForLocales) {
  const std::locale before = std::locale::global(std::locale(std::locale(), new Grouping));

  const std::wstring text = Wide(L"%d %.1f", 1234567, 1234.5);

  std::locale::global(before);
  EXPECT_EQ(text, L"1234567 1234.5");
}

}  // namespace
