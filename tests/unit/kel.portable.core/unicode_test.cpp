// unicode_test.cpp
// Wide texts from and to UTF-8.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "wstring.h"

namespace {

constexpr wchar_t kReplacement = 0xFFFD;

std::wstring Wide(const std::string& utf8) { return ToWString(BString(utf8)).Str(); }
std::string Narrow(const std::wstring& text) { return ToBString(WString(text)).Str(); }

// One sample for each length of UTF-8, and the ends of each range.
constexpr char kSamples[] =
    "A\x7F\xC2\x80\xC3\xBC\xDF\xBF\xE0\xA0\x80\xE2\x82\xAC\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"
    "\xF0\x90\x80\x80\xF0\x9F\x93\xB7\xF4\x8F\xBF\xBF";

TEST(Unicode, TurnsUtf8IntoWideText) {
  EXPECT_EQ(Wide(kSamples), L"A\u007F\u0080\u00FC\u07FF\u0800\u20AC\uD7FF\uE000\uFFFF\U00010000\U0001F4F7\U0010FFFF");
}

TEST(Unicode, TurnsWideTextIntoUtf8) {
  EXPECT_EQ(Narrow(L"A\u007F\u0080\u00FC\u07FF\u0800\u20AC\uD7FF\uE000\uFFFF\U00010000\U0001F4F7\U0010FFFF"), kSamples);
}

TEST(Unicode, KeepsZeros) {
  const std::string zeros("a\0b", 3);

  EXPECT_EQ(Wide(zeros), std::wstring(L"a\0b", 3));
  EXPECT_EQ(Narrow(std::wstring(L"a\0b", 3)), zeros);
}

TEST(Unicode, TakesNullForAnEmptyText) { EXPECT_TRUE(ToWString(static_cast<const char*>(nullptr)).IsEmpty()); }

struct MalformedText {
  const char* name;
  const char* utf8;
  std::size_t replacements;
};

class MalformedUtf8 : public testing::TestWithParam<MalformedText> {};

TEST_P(MalformedUtf8, BecomesReplacementsAndNothingElseIsLost) {
  const std::string text = std::string("<") + GetParam().utf8 + ">";

  EXPECT_EQ(Wide(text), L"<" + std::wstring(GetParam().replacements, kReplacement) + L">");
}

INSTANTIATE_TEST_SUITE_P(Unicode, MalformedUtf8,
                         testing::Values(MalformedText{"StrayContinuation", "\x80\xBF", 2},
                                         MalformedText{"BytesThatAreNone", "\xFE\xFF", 2},
                                         MalformedText{"BrokenOffAfterTwo", "\xE2\x82", 1},
                                         MalformedText{"BrokenOffAfterThree", "\xF0\x9F\x93", 1},
                                         MalformedText{"LongFormOfSlash", "\xC0\xAF", 2},
                                         MalformedText{"LongFormOfThreeBytes", "\xE0\x9F\xBF", 3},
                                         MalformedText{"LongFormOfFourBytes", "\xF0\x8F\xBF\xBF", 4},
                                         MalformedText{"Surrogate", "\xED\xA0\x80", 3},
                                         MalformedText{"BeyondUnicode", "\xF4\x90\x80\x80", 4}),
                         [](const auto& test) { return test.param.name; });

TEST(Unicode, ReplacesASequenceThatTheTextEndsIn) {
  EXPECT_EQ(Wide("a\xE2\x82"), L"a\uFFFD");
  EXPECT_EQ(Wide("\xC3"), L"\uFFFD");
}

TEST(Unicode, ReplacesLoneSurrogates) {
  EXPECT_EQ(Narrow(std::wstring{L'<', wchar_t(0xD800), L'>'}), "<\xEF\xBF\xBD>");
  EXPECT_EQ(Narrow(std::wstring{L'<', wchar_t(0xDFFF), L'>'}), "<\xEF\xBF\xBD>");
  EXPECT_EQ(Narrow(std::wstring{L'<', wchar_t(0xDBFF)}), "<\xEF\xBF\xBD");
}

#if WCHAR_MAX > 0xFFFF
TEST(Unicode, ReplacesValuesOutsideUnicode) {
  EXPECT_EQ(Narrow(std::wstring{wchar_t(0x110000), wchar_t(-1)}), "\xEF\xBF\xBD\xEF\xBF\xBD");
}
#endif

TEST(Unicode, BringsAnyBytesToATextThatComesBackAsItself) {
  std::mt19937 random(20240607);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(static_cast<std::size_t>(round % 40), '\0');
    for (char& each : bytes) each = static_cast<char>(byte(random));
    const std::wstring once = Wide(bytes);
    ASSERT_EQ(Wide(Narrow(once)), once) << "round " << round;
  }
}

}  // namespace
