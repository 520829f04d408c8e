// reading_test.cpp
// What a profile reads from its file.
#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <sstream>

#include "berror.h"
#include "biniprofile.h"
#include "bsmartref.h"
#include "ini_file.h"

namespace {

constexpr int kMin = IProfile::kMinInt;
constexpr int kMax = IProfile::kMaxInt;
constexpr int kDefault = -7;

// What the one line `KEY=text` reads as.
struct IntRead {
  bool there;
  int value;
  std::size_t complaints;
  friend bool operator==(const IntRead&, const IntRead&) = default;
};

IntRead ReadInt(const std::string& text, int min = kMin, int max = kMax) {
  const IniFile file("KEY=" + text + "\n");
  const BIniProfile profile(file.Name());
  IntRead read{};
  read.there = profile.ReadInt(L"KEY", read.value, kDefault, min, max);
  read.complaints = profile.Complaints().size();
  return read;
}

std::vector<std::wstring> Texts(const std::vector<WString>& list) {
  std::vector<std::wstring> texts;
  texts.reserve(list.size());
  for (const WString& text : list) texts.push_back(text.Str());
  return texts;
}

std::wstring ReadString(const BIniProfile& profile, const wchar_t* key) {
  WString value;
  return profile.ReadString(key, value, L"<none>") ? value.Str() : L"no " + value.Str();
}

// Success when the file is a profile.
BError ErrorOf(const WString& file_name) {
  try {
    const BIniProfile profile(file_name);
    return BError();
  } catch (const BError& error) {
    return error;
  }
}

TEST(ProfileReading, GivesTextsWithoutTheBlanksAroundThem) {
  const IniFile file("  A = Vimba \t\nB=\nC=a=b ; c # d\r\n\tD\t=say \"cheese\"\n");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(ReadString(profile, L"A"), L"Vimba");
  EXPECT_EQ(ReadString(profile, L"B"), L"");
  EXPECT_EQ(ReadString(profile, L"C"), L"a=b ; c # d");
  EXPECT_EQ(ReadString(profile, L"D"), L"say \"cheese\"");
}

TEST(ProfileReading, GivesTextsInQuotesWithTheirBlanks) {
  const IniFile file("A=\"low \" \nB = \"\t low\"\r\nC=\"\"\nD=\"\nE=\"a\" \"b\"\nF=\" \"\nG=\"\"low\"\"\nH=\"a\"b\n");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(ReadString(profile, L"A"), L"low ");
  EXPECT_EQ(ReadString(profile, L"B"), L"\t low");
  EXPECT_EQ(ReadString(profile, L"C"), L"");
  EXPECT_EQ(ReadString(profile, L"D"), L"\"");
  EXPECT_EQ(ReadString(profile, L"E"), L"a\" \"b");
  EXPECT_EQ(ReadString(profile, L"F"), L" ");
  EXPECT_EQ(ReadString(profile, L"G"), L"\"low\"");
  EXPECT_EQ(ReadString(profile, L"H"), L"\"a\"b");
}

TEST(ProfileReading, TakesANumberInQuotesButNoneWithBlanks) {
  EXPECT_EQ(ReadInt("\"42\""), (IntRead{true, 42, 0}));
  EXPECT_EQ(ReadInt("\"42 \""), (IntRead{false, kDefault, 1}));
}

TEST(ProfileReading, GivesTheDefaultForAMissingKey) {
  const IniFile file("A=1\n");
  const BIniProfile profile(file.Name());
  WString text(L"before");
  int number = 5;
  double real = 5;
  bool boolean = false;

  EXPECT_FALSE(profile.ReadString(L"B", text));
  EXPECT_FALSE(profile.ReadInt(L"B", number, 3, kMin, kMax));
  EXPECT_FALSE(profile.ReadDouble(L"B", real, -1.0));
  EXPECT_FALSE(profile.ReadBool(L"B", boolean, true));
  EXPECT_EQ(text.Str(), L"");
  EXPECT_EQ(number, 3);
  EXPECT_EQ(real, -1.0);
  EXPECT_TRUE(boolean);
  EXPECT_EQ(Texts(profile.Complaints()), (std::vector<std::wstring>{}));
}

TEST(ProfileReading, FindsKeysWithoutRegardToCase) {
  const IniFile file("Serial.Number=0503\n[Lamp]\nLevel=3\n");
  BIniProfile profile(file.Name());
  EXPECT_EQ(ReadString(profile, L"SERIAL.number"), L"0503");

  profile.GoToSection(L"lAMP");

  EXPECT_EQ(ReadString(profile, L"LEVEL"), L"3");
}

TEST(ProfileReading, KeepsSectionsApart) {
  const IniFile file("A=root\n[One]\nA=one\n[Two]\nB=two\n[One]\nC=one again\n");
  BIniProfile profile(file.Name());
  EXPECT_EQ(ReadString(profile, L"C"), L"no <none>");

  profile.GoToSection(L"One");
  EXPECT_EQ(ReadString(profile, L"A"), L"one");
  EXPECT_EQ(ReadString(profile, L"B"), L"no <none>");
  EXPECT_EQ(ReadString(profile, L"C"), L"one again");

  profile.GoToSection(L"Nowhere");
  EXPECT_EQ(ReadString(profile, L"A"), L"no <none>");

  profile.GoToRoot();
  EXPECT_EQ(ReadString(profile, L"A"), L"root");
}

TEST(ProfileReading, TakesAnEmptySectionNameForTheRoot) {
  const IniFile file("A=root\n[One]\nA=one\n");
  BIniProfile profile(file.Name());
  profile.GoToSection(L"One");

  profile.GoToSection(L"");

  EXPECT_EQ(ReadString(profile, L"A"), L"root");
}

TEST(ProfileReading, SkipsCommentsAndEmptyLines) {
  const IniFile file("; A=1\n\n  # A=2\n \t \nA=3\n;");

  EXPECT_EQ(ReadString(BIniProfile(file.Name()), L"A"), L"3");
}

TEST(ProfileReading, TakesAnyLineEndsAndAByteOrderMark) {
  const IniFile file(
      "\xEF\xBB\xBF"
      "A=1\r\nB=2\rC=3\nD=4");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(ReadString(profile, L"A"), L"1");
  EXPECT_EQ(ReadString(profile, L"B"), L"2");
  EXPECT_EQ(ReadString(profile, L"C"), L"3");
  EXPECT_EQ(ReadString(profile, L"D"), L"4");
}

TEST(ProfileReading, TakesAnEmptyFile) {
  const IniFile empty("");
  const IniFile mark("\xEF\xBB\xBF");

  EXPECT_EQ(ReadString(BIniProfile(empty.Name()), L"A"), L"no <none>");
  EXPECT_EQ(ReadString(BIniProfile(mark.Name()), L"A"), L"no <none>");
}

TEST(ProfileReading, GivesTextsOfAnyLanguage) {
  const IniFile file(
      "Name=K\xC3\xBC"
      "hlhaus \xF0\x9F\x93\xB7\nK\xC3\xBC"
      "hl=1\n");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(ReadString(profile, L"Name"), L"K\u00FChlhaus \U0001F4F7");
  EXPECT_EQ(ReadString(profile, L"K\u00FChl"), L"1");
}

TEST(ProfileReading, TakesWholeDecimalNumbers) {
  EXPECT_EQ(ReadInt("0"), (IntRead{true, 0, 0}));
  EXPECT_EQ(ReadInt("-42"), (IntRead{true, -42, 0}));
  EXPECT_EQ(ReadInt("+42"), (IntRead{true, 42, 0}));
  EXPECT_EQ(ReadInt(" 0042 "), (IntRead{true, 42, 0}));
}

TEST(ProfileReading, TakesNumbersUpToBothEndsOfTheRange) {
  EXPECT_EQ(ReadInt("-2147483645"), (IntRead{true, kMin, 0}));
  EXPECT_EQ(ReadInt("2147483645"), (IntRead{true, kMax, 0}));
  EXPECT_EQ(ReadInt("-2147483646"), (IntRead{false, kDefault, 1}));
  EXPECT_EQ(ReadInt("2147483646"), (IntRead{false, kDefault, 1}));
  EXPECT_EQ(ReadInt("3", 3, 4), (IntRead{true, 3, 0}));
  EXPECT_EQ(ReadInt("5", 3, 4), (IntRead{false, kDefault, 1}));
}

TEST(ProfileReading, TakesNothingElseForAWholeNumber) {
  for (const char* text : {"", "12x", "1 2", "0x10", "1.0", "--1", "+-1", "+", "-", "1e3", "99999999999999999999"}) {
    EXPECT_EQ(ReadInt(text), (IntRead{false, kDefault, 1})) << text;
  }
}

TEST(ProfileReading, TakesNumbersWithADecimalPoint) {
  const IniFile file("A=30\nB=-0.5\nC=+1.5e3\nD=.25\n");
  const BIniProfile profile(file.Name());
  double a = 0, b = 0, c = 0, d = 0;

  EXPECT_TRUE(profile.ReadDouble(L"A", a, -1) && profile.ReadDouble(L"B", b, -1) && profile.ReadDouble(L"C", c, -1) &&
              profile.ReadDouble(L"D", d, -1));
  EXPECT_EQ((std::vector<double>{a, b, c, d}), (std::vector<double>{30, -0.5, 1500, 0.25}));
}

TEST(ProfileReading, TakesNothingElseForANumber) {
  for (const char* text : {"", "1,5", "inf", "nan", "1e999", "1.5 Hz", "0x1p3"}) {
    const IniFile file("A=" + std::string(text) + "\n");
    const BIniProfile profile(file.Name());
    double value = 5;

    EXPECT_FALSE(profile.ReadDouble(L"A", value, -1.0)) << text;
    EXPECT_EQ(value, -1.0) << text;
    EXPECT_EQ(profile.Complaints().size(), 1u) << text;
  }
}

TEST(ProfileReading, TakesTheWordsForYesAndNo) {
  const IniFile file("T1=1\nT2=true\nT3=YES\nT4=On\nF1=0\nF2=False\nF3=no\nF4=OFF\n");
  const BIniProfile profile(file.Name());
  for (const wchar_t* number : {L"1", L"2", L"3", L"4"}) {
    bool yes = false;
    bool no = true;

    EXPECT_TRUE(profile.ReadBool(WString(L"T") + number, yes, false));
    EXPECT_TRUE(profile.ReadBool(WString(L"F") + number, no, true));
    EXPECT_TRUE(yes && !no);
  }
}

TEST(ProfileReading, ComplainsOfEachValueThatCannotBeUsedOnce) {
  const IniFile file("; limits\nMINGAIN=12x\n[Other]\nYUVSTRETCH=maybe\nCAMFREQ=1,5\n");
  BIniProfile profile(file.Name());
  int number = 0;
  bool boolean = false;
  double real = 0;
  profile.ReadInt(L"mingain", number, 0, kMin, kMax);
  profile.ReadInt(L"mingain", number, 0, kMin, kMax);
  profile.GoToSection(L"Other");
  profile.ReadBool(L"YUVSTRETCH", boolean, false);
  profile.ReadDouble(L"CAMFREQ", real, -1);

  const std::wstring name = file.Name().Str();
  EXPECT_EQ(
      Texts(profile.Complaints()),
      (std::vector<std::wstring>{
          name + L", line 2: MINGAIN = 12x is not used, it is not a whole number from -2147483645 to 2147483645",
          name + L", line 4: YUVSTRETCH = maybe is not used, it is not one of 1, true, yes, on, 0, false, no, off",
          name + L", line 5: CAMFREQ = 1,5 is not used, it is not a number with a decimal point"}));
}

TEST(ProfileReading, ComplainsOfAValueAsItIsWritten) {
  const IniFile file("A=\" 1\"\n");
  const BIniProfile profile(file.Name());
  bool boolean = false;

  profile.ReadBool(L"A", boolean, false);

  EXPECT_EQ(Texts(profile.Complaints()),
            (std::vector<std::wstring>{file.Name().Str() + L", line 1: A = \" 1\" is not used, it is not one of 1, "
                                                           L"true, yes, on, 0, false, no, off"}));
}

TEST(ProfileReading, KnowsItsFileAndItsName) {
  const IniFile file("", u8"K\u00FChlhaus 3.left.ini");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(profile.FileName().Str(), file.Name().Str());
  EXPECT_EQ(profile.Name().Str(), L"K\u00FChlhaus 3.left");
}

TEST(ProfileReading, DescribesItself) {
  const IniFile file("");
  const BIniProfile profile(file.Name());
  std::wostringstream archive;
  profile.WriteData(archive);

  EXPECT_EQ(profile.Properties().Str(), L"profile " + file.Name().Str());
  EXPECT_EQ(archive.str(), L"BIniProfile 1\nprofile " + file.Name().Str() + L"\n");
}

TEST(ProfileReading, IsDoneThroughTheInterfaceToo) {
  const IniFile file("A=1\n");
  const BSmartRef<BIniProfile> profile(new BIniProfile(file.Name()));
  const IProfile& settings = *profile;
  int value = 0;

  EXPECT_TRUE(settings.ReadInt(L"A", value, 0, kMin, kMax));
  EXPECT_EQ(value, 1);
}

TEST(ProfileReading, AFileThatIsTooLargeForAProfileIsNotRead) {
  constexpr std::size_t kLargestProfileBytes = 16U << 20U;
  const IniFile file(";" + std::string(kLargestProfileBytes, 'x'));
  const std::string reason = std::make_error_code(std::errc::file_too_large).message();

  const BError error = ErrorOf(file.Name());

  EXPECT_EQ(error, BError(BError::eProfileNotReadable, file.Name(), ToWString(reason.c_str())));
}

}  // namespace
