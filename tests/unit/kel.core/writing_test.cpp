// writing_test.cpp
// What a write does to the bytes of a file.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "biniprofile.h"
#include "ini_file.h"

namespace {

struct OneWrite {
  const char* name;
  std::string before;
  const wchar_t* section;
  const wchar_t* key;
  const wchar_t* value;
  std::string after;
};

class ProfileWrite : public testing::TestWithParam<OneWrite> {};

TEST_P(ProfileWrite, ChangesItsLineAndNothingElse) {
  const OneWrite& write = GetParam();
  const IniFile file(write.before);
  BIniProfile profile(file.Name());
  profile.GoToSection(write.section);

  EXPECT_TRUE(profile.Write(write.key, write.value));

  EXPECT_EQ(file.Bytes(), write.after);
  WString value;
  EXPECT_TRUE(profile.ReadString(write.key, value));
  EXPECT_EQ(value.Str(), write.value);
}

const std::string kMark = "\xEF\xBB\xBF";

INSTANTIATE_TEST_SUITE_P(
    OfAKeyThatIsThere, ProfileWrite,
    testing::Values(OneWrite{"Plainly", "A=1\nB=2\nC=3\n", L"", L"B", L"20", "A=1\nB=20\nC=3\n"},
                    OneWrite{"KeepingBlanks", " B =  2\t \nC=3", L"", L"B", L"long text", " B =  long text\t \nC=3"},
                    OneWrite{"KeepingTheKeysCase", "Wbcolorblue=1\n", L"", L"WBCOLORBLUE", L"2", "Wbcolorblue=2\n"},
                    OneWrite{"KeepingLineEnds", "A=1\r\nB=2\rC=3\n", L"", L"B", L"0", "A=1\r\nB=0\rC=3\n"},
                    OneWrite{"KeepingTheByteOrderMark", kMark + "A=1\n", L"", L"A", L"2", kMark + "A=2\n"},
                    OneWrite{"InAnOpenLastLine", "A=1", L"", L"A", L"22", "A=22"},
                    OneWrite{"OfAnEmptyValue", "A=\nB=1\n", L"", L"A", L"x", "A=x\nB=1\n"},
                    OneWrite{"OfAnEmptyValueBehindBlanks", "A = \nB=1\n", L"", L"A", L"x", "A = x\nB=1\n"},
                    OneWrite{"ToAnEmptyValue", "A=1\n", L"", L"A", L"", "A=\n"},
                    OneWrite{"OfAValueWithEqualsSigns", "A=b=c\n", L"", L"A", L"d=e;f#g[h]", "A=d=e;f#g[h]\n"},
                    OneWrite{"IntoQuotesForABlankAtTheEnd", "A=low\n", L"", L"A", L"low ", "A=\"low \"\n"},
                    OneWrite{"IntoQuotesForABlankAtTheStart", "A=low\n", L"", L"A", L"\tlow", "A=\"\tlow\"\n"},
                    OneWrite{"IntoQuotesForABlankAlone", "A=\n", L"", L"A", L" ", "A=\" \"\n"},
                    OneWrite{"IntoQuotesForAValueInQuotes", "A=1\n", L"", L"A", L"\"1\"", "A=\"\"1\"\"\n"},
                    OneWrite{"WithoutQuotesForQuotesWithin", "A=1\n", L"", L"A", L"a \"b\"", "A=a \"b\"\n"},
                    OneWrite{"WithoutQuotesForASingleQuote", "A=1\n", L"", L"A", L"\"", "A=\"\n"},
                    OneWrite{"KeepingItsQuotes", "A= \"low \" \n", L"", L"A", L"high", "A= \"high\" \n"},
                    OneWrite{"InItsSection", "A=1\n[S]\nA=2\n", L"s", L"A", L"3", "A=1\n[S]\nA=3\n"},
                    OneWrite{"InAnyLanguage", "A=K\xC3\xBChl\n", L"", L"A", L"\u20AC", "A=\xE2\x82\xAC\n"},
                    OneWrite{"AmongComments", "; A=0\n# head\n\nA=1\n; foot", L"", L"A", L"2",
                             "; A=0\n# head\n\nA=2\n; foot"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OfANewKey, ProfileWrite,
    testing::Values(OneWrite{"IntoAnEmptyFile", "", L"", L"A", L"1", "A=1\n"},
                    OneWrite{"BehindAByteOrderMark", kMark, L"", L"A", L"1", kMark + "A=1\n"},
                    OneWrite{"InQuotes", "B=1\n", L"", L"A", L" 1", "B=1\nA=\" 1\"\n"},
                    OneWrite{"AtTheEnd", "B=1\r\n", L"", L"A", L"1", "B=1\r\nA=1\r\n"},
                    OneWrite{"BehindAnOpenLastLine", "C=1\r\nB=1", L"", L"A", L"1", "C=1\r\nB=1\r\nA=1\r\n"},
                    OneWrite{"BeforeTheEmptyLinesAtTheEnd", "B=1\n\n\n", L"", L"A", L"1", "B=1\nA=1\n\n\n"},
                    OneWrite{"AtTheRootsEnd", "B=1\n\n[S]\nC=1\n", L"", L"A", L"1", "B=1\nA=1\n\n[S]\nC=1\n"},
                    OneWrite{"BeforeTheNextSectionsComments", "B=1\n; of B\n\n; of S\n[S]\n", L"", L"A", L"1",
                             "B=1\n; of B\nA=1\n\n; of S\n[S]\n"},
                    OneWrite{"AtTheHeadWithoutRootKeys", "; of S\n[S]\n", L"", L"A", L"1", "A=1\n; of S\n[S]\n"},
                    OneWrite{"BehindAnEmptySection", "[S]\n[T]\n", L"S", L"A", L"1", "[S]\nA=1\n[T]\n"},
                    OneWrite{"InTheLastPartOfItsSection", "[S]\nB=1\n[T]\n[S]\nC=1\n", L"s", L"A", L"1",
                             "[S]\nB=1\n[T]\n[S]\nC=1\nA=1\n"},
                    OneWrite{"InANewSection", "B=1\r\n", L"S", L"A", L"1", "B=1\r\n\r\n[S]\r\nA=1\r\n"},
                    OneWrite{"InANewSectionOfAnEmptyFile", "", L"S", L"A", L"1", "[S]\nA=1\n"}),
    [](const auto& test) { return test.param.name; });

std::wstring OnlyComplaint(const BIniProfile& profile) {
  return profile.Complaints().size() == 1 ? profile.Complaints().front().Str() : L"not one complaint";
}

TEST(ProfileWriting, RefusesAValueWithLineBreaksOrZeros) {
  for (const std::wstring& value : {std::wstring(L"a\nb"), std::wstring(L"a\r"), std::wstring(L"a\0b", 3)}) {
    const IniFile file("A=1\n");
    BIniProfile profile(file.Name());

    EXPECT_FALSE(profile.Write(L"A", WString(value)));

    EXPECT_EQ(file.Bytes(), "A=1\n");
    WString kept;
    EXPECT_TRUE(profile.ReadString(L"A", kept));
    EXPECT_EQ(kept.Str(), L"1");
    EXPECT_EQ(OnlyComplaint(profile),
              file.Name().Str() + L": A = " + value + L" is not saved: a value has no line breaks or zeros");
  }
}

TEST(ProfileWriting, RefusesAKeyThatAFileCannotHold) {
  for (const wchar_t* key : {L"", L"a=b", L";a", L"#a", L"[a", L" a", L"a\t", L"a\nb", L"\uFEFFa"}) {
    const IniFile file("A=1\n");
    BIniProfile profile(file.Name());

    EXPECT_FALSE(profile.Write(key, L"1"));

    EXPECT_EQ(file.Bytes(), "A=1\n");
    EXPECT_EQ(OnlyComplaint(profile),
              file.Name().Str() + L": " + key + L" = 1 is not saved: the key is none that a file can hold");
  }
}

TEST(ProfileWriting, RefusesASectionThatAFileCannotHold) {
  for (const wchar_t* section : {L"a]b", L" a", L"a\n"}) {
    const IniFile file("A=1\n");
    BIniProfile profile(file.Name());
    profile.GoToSection(section);

    EXPECT_FALSE(profile.Write(L"A", L"1"));

    EXPECT_EQ(file.Bytes(), "A=1\n");
    EXPECT_EQ(OnlyComplaint(profile),
              file.Name().Str() + L": A = 1 is not saved: the section's name is none that a file can hold");
  }
}

TEST(ProfileWriting, WhateverItWritesIsReadBack) {
  constexpr unsigned kSeed = 20260607;
  const std::wstring letters = L" \t\"=;#[]a\u00E4";
  std::mt19937 random(kSeed);
  const IniFile file("A=1\n");
  for (int round = 0; round < 200; ++round) {
    std::wstring value;
    for (auto length = random() % 6; length > 0; --length) value += letters[random() % letters.size()];
    BIniProfile profile(file.Name());

    ASSERT_TRUE(profile.Write(L"A", WString(value)));

    WString read;
    ASSERT_TRUE(BIniProfile(file.Name()).ReadString(L"A", read));
    ASSERT_EQ(read.Str(), value) << "round " << round << ", seed " << kSeed;
  }
}

// Lines of all kinds in random order, with keys that differ.
std::vector<std::string> RandomLines(std::mt19937& random) {
  const std::vector<std::string> kinds = {"", "\t", "; comment", "  # K1=0", "[S]", "[ T ] ; comment", "K", " K", "K"};
  std::vector<std::string> lines = {"K0=first"};
  for (int number = 1; number < 15; ++number) {
    std::string line = kinds[std::uniform_int_distribution<std::size_t>(0, kinds.size() - 1)(random)];
    if (!line.empty() && line.back() == 'K') line.append(std::to_string(number)).append(" =  value\t");
    lines.push_back(line.append(random() % 2 ? "\n" : "\r\n"));
  }
  lines.front() += '\n';
  return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

TEST(ProfileWriting, KeepsEveryOtherLineOfAnyFile) {
  constexpr unsigned kSeed = 20240607;
  std::mt19937 random(kSeed);
  for (int round = 0; round < 60; ++round) {
    std::vector<std::string> lines = RandomLines(random);
    const IniFile file(Joined(lines));
    BIniProfile profile(file.Name());
    lines.front() = "K0=written\n";

    ASSERT_TRUE(profile.Write(L"k0", L"written"));

    ASSERT_EQ(file.Bytes(), Joined(lines)) << "round " << round << ", seed " << kSeed;
  }
}

TEST(ProfileWriting, AddsOneLineToAnyFile) {
  constexpr unsigned kSeed = 20240608;
  std::mt19937 random(kSeed);
  for (int round = 0; round < 60; ++round) {
    const std::string before = Joined(RandomLines(random));
    const IniFile file(before);
    BIniProfile profile(file.Name());

    ASSERT_TRUE(profile.Write(L"NEW", L"written"));

    std::string after = file.Bytes();
    const std::size_t added = after.find("NEW=written");
    ASSERT_NE(added, std::string::npos);
    after.erase(added, after.find('\n', added) + 1 - added);
    ASSERT_EQ(after, before) << "round " << round << ", seed " << kSeed;
  }
}

}  // namespace
