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
  EXPECT_EQ(L"Vimba_Manta_0503", Wide(L"Vimba_%s_%s", WString(L"Manta"), L"0503"));
  EXPECT_EQ(L"std", Wide(L"%s", std::wstring(L"std")));
}

TEST(Format, PrintsANullTextAsEmpty) { EXPECT_EQ(L"[]", Wide(L"[%s]", static_cast<const wchar_t*>(nullptr))); }

TEST(Format, GivesAnEmptyTextForNoFormat) { EXPECT_EQ(L"", Wide(nullptr)); }

TEST(Format, LeavesPercentSignsInArgumentsAlone) { EXPECT_EQ(L"100%s %n%", Wide(L"%s %s", L"100%s", L"%n%")); }

TEST(Format, PrintsWholeNumbersByTheirOwnType) {
  EXPECT_EQ(L"-3 4294967295", Wide(L"%d %u", -3, 4294967295u));
  EXPECT_EQ(L"18446744073709551615", Wide(L"%d", std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ(L"-9223372036854775808", Wide(L"%i", std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(L"-1", Wide(L"%u", -1));
  EXPECT_EQ(L"1", Wide(L"%d", true));
}

TEST(Format, ReadsOverLengthLetters) {
  EXPECT_EQ(L"1 2 3 4 5", Wide(L"%lu %lld %hd %zu %jd", 1ul, 2ll, 3, sizeof(char[4]), std::int64_t{5}));
  EXPECT_EQ(L"text 1.500000", Wide(L"%ls %lf", L"text", 1.5));
}

TEST(Format, PrintsHexadecimalNumbers) {
  EXPECT_EQ(L"ff 1080001 0000ff", Wide(L"%x %x %06x", 255u, 0x01080001, 0xff));
  EXPECT_EQ(L"ffffffffffffffff", Wide(L"%x", -1));
}

TEST(Format, PrintsCharacters) {
  EXPECT_EQ(L"[x] [A] [  y]", Wide(L"[%c] [%c] [%3c]", L'x', 65, L'y'));
  EXPECT_EQ("[x]", BString::Format("[%c]", 'x').Str());
}

TEST(Format, PrintsFloatingNumbers) {
  EXPECT_EQ(L"1.500000 2.35 -3 0.1", Wide(L"%f %.2f %.0f %.1f", 1.5, 2.345678, -3.0, 0.1f));
  EXPECT_EQ(L"inf -inf nan", Wide(L"%f %f %f", std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()));
}

TEST(Format, PrintsTheLargestNumberInFull) {
  EXPECT_EQ(309u, Wide(L"%.0f", std::numeric_limits<double>::max()).size());
  EXPECT_EQ(1u + 309u + 1u + 1000u, Wide(L"%.1000f", std::numeric_limits<double>::lowest()).size());
}

TEST(Format, PadsToTheWidth) {
  EXPECT_EQ(L"[   42] [42   ] [00042] [-0042]", Wide(L"[%5d] [%-5d] [%05d] [%05d]", 42, 42, 42, -42));
  EXPECT_EQ(L"[   ab] [ab   ] [abcdef]", Wide(L"[%5s] [%-5s] [%5s]", L"ab", L"ab", L"abcdef"));
  EXPECT_EQ(L"[  1.50] [-01.50]", Wide(L"[%6.2f] [%06.2f]", 1.5, -1.5));
}

TEST(Format, CutsTextsAndFillsNumbersToThePrecision) {
  EXPECT_EQ(L"[ab] [   ab] []", Wide(L"[%.2s] [%5.2s] [%.0s]", L"abcdef", L"abcdef", L"abc"));
  EXPECT_EQ(L"[007] [-007] [  007]", Wide(L"[%.3d] [%.3d] [%05.3d]", 7, -7, 7));
}

TEST(Format, LetsLeftAlignmentWinOverZeros) { EXPECT_EQ(L"[42   ]", Wide(L"[%-05d]", 42)); }

TEST(Format, LimitsTheWidthOfAField) { EXPECT_EQ(1000u, Wide(L"%99999999999999999999d", 1).size()); }

TEST(Format, PrintsPercentSigns) { EXPECT_EQ(L"100%", Wide(L"%d%%", 100)); }

TEST(Format, MarksMissingArguments) { EXPECT_EQ(L"1 %? %?", Wide(L"%d %d %s", 1)); }

TEST(Format, MarksArgumentsThatDoNotFit) {
  EXPECT_EQ(L"%? %? %? %? %? ok", Wide(L"%d %s %f %c %x %s", L"text", 1, 2, L"c", 1.5, L"ok"));
  EXPECT_EQ("%?", BString::Format("%c", 300).Str());
}

TEST(Format, MarksUnknownConversions) {
  EXPECT_EQ(L"%? 2", Wide(L"%y %d", 1, 2));
  EXPECT_EQ(L"end %?", Wide(L"end %", 1));
  EXPECT_EQ(L"end %?", Wide(L"end %08l", 1));
}

TEST(Format, SkipsArgumentsThatAreLeftOver) { EXPECT_EQ(L"1", Wide(L"%d", 1, 2, L"three")); }

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
  EXPECT_EQ(L"1234567 1234.5", text);
}

}  // namespace
