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
  read.there = profile.ReadInt(L"KEY", read.value, -7, min, max);
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

TEST(ProfileReading, GivesTextsWithoutTheBlanksAroundThem) {
  const IniFile file("  A = Vimba \t\nB=\nC=a=b ; c # d\r\n\tD\t=\"quoted\"\n");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(L"Vimba", ReadString(profile, L"A"));
  EXPECT_EQ(L"", ReadString(profile, L"B"));
  EXPECT_EQ(L"a=b ; c # d", ReadString(profile, L"C"));
  EXPECT_EQ(L"\"quoted\"", ReadString(profile, L"D"));
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
  EXPECT_EQ(L"", text.Str());
  EXPECT_EQ(3, number);
  EXPECT_EQ(-1.0, real);
  EXPECT_TRUE(boolean);
  EXPECT_EQ((std::vector<std::wstring>{}), Texts(profile.Complaints()));
}

TEST(ProfileReading, FindsKeysWithoutRegardToCase) {
  const IniFile file("Serial.Number=0503\n[Lamp]\nLevel=3\n");
  BIniProfile profile(file.Name());
  EXPECT_EQ(L"0503", ReadString(profile, L"SERIAL.number"));

  profile.GoToSection(L"lAMP");

  EXPECT_EQ(L"3", ReadString(profile, L"LEVEL"));
}

TEST(ProfileReading, KeepsSectionsApart) {
  const IniFile file("A=root\n[One]\nA=one\n[Two]\nB=two\n[One]\nC=one again\n");
  BIniProfile profile(file.Name());
  EXPECT_EQ(L"no <none>", ReadString(profile, L"C"));

  profile.GoToSection(L"One");
  EXPECT_EQ(L"one", ReadString(profile, L"A"));
  EXPECT_EQ(L"no <none>", ReadString(profile, L"B"));
  EXPECT_EQ(L"one again", ReadString(profile, L"C"));

  profile.GoToSection(L"Nowhere");
  EXPECT_EQ(L"no <none>", ReadString(profile, L"A"));

  profile.GoToRoot();
  EXPECT_EQ(L"root", ReadString(profile, L"A"));
}

TEST(ProfileReading, TakesAnEmptySectionNameForTheRoot) {
  const IniFile file("A=root\n[One]\nA=one\n");
  BIniProfile profile(file.Name());
  profile.GoToSection(L"One");

  profile.GoToSection(L"");

  EXPECT_EQ(L"root", ReadString(profile, L"A"));
}

TEST(ProfileReading, SkipsCommentsAndEmptyLines) {
  const IniFile file("; A=1\n\n  # A=2\n \t \nA=3\n;");

  EXPECT_EQ(L"3", ReadString(BIniProfile(file.Name()), L"A"));
}

TEST(ProfileReading, TakesAnyLineEndsAndAByteOrderMark) {
  const IniFile file(
      "\xEF\xBB\xBF"
      "A=1\r\nB=2\rC=3\nD=4");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(L"1", ReadString(profile, L"A"));
  EXPECT_EQ(L"2", ReadString(profile, L"B"));
  EXPECT_EQ(L"3", ReadString(profile, L"C"));
  EXPECT_EQ(L"4", ReadString(profile, L"D"));
}

TEST(ProfileReading, TakesAnEmptyFile) {
  const IniFile empty("");
  const IniFile mark("\xEF\xBB\xBF");

  EXPECT_EQ(L"no <none>", ReadString(BIniProfile(empty.Name()), L"A"));
  EXPECT_EQ(L"no <none>", ReadString(BIniProfile(mark.Name()), L"A"));
}

TEST(ProfileReading, GivesTextsOfAnyLanguage) {
  const IniFile file(
      "Name=K\xC3\xBC"
      "hlhaus \xF0\x9F\x93\xB7\nK\xC3\xBC"
      "hl=1\n");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(L"K\u00FChlhaus \U0001F4F7", ReadString(profile, L"Name"));
  EXPECT_EQ(L"1", ReadString(profile, L"K\u00FChl"));
}

TEST(ProfileReading, TakesWholeDecimalNumbers) {
  EXPECT_EQ((IntRead{true, 0, 0}), ReadInt("0"));
  EXPECT_EQ((IntRead{true, -42, 0}), ReadInt("-42"));
  EXPECT_EQ((IntRead{true, 42, 0}), ReadInt("+42"));
  EXPECT_EQ((IntRead{true, 42, 0}), ReadInt(" 0042 "));
}

TEST(ProfileReading, TakesNumbersUpToBothEndsOfTheRange) {
  EXPECT_EQ((IntRead{true, kMin, 0}), ReadInt("-2147483645"));
  EXPECT_EQ((IntRead{true, kMax, 0}), ReadInt("2147483645"));
  EXPECT_EQ((IntRead{false, -7, 1}), ReadInt("-2147483646"));
  EXPECT_EQ((IntRead{false, -7, 1}), ReadInt("2147483646"));
  EXPECT_EQ((IntRead{true, 3, 0}), ReadInt("3", 3, 4));
  EXPECT_EQ((IntRead{false, -7, 1}), ReadInt("5", 3, 4));
}

TEST(ProfileReading, TakesNothingElseForAWholeNumber) {
  for (const char* text : {"", "12x", "1 2", "0x10", "1.0", "--1", "+-1", "+", "-", "1e3", "99999999999999999999"}) {
    EXPECT_EQ((IntRead{false, -7, 1}), ReadInt(text)) << text;
  }
}

TEST(ProfileReading, TakesNumbersWithADecimalPoint) {
  const IniFile file("A=30\nB=-0.5\nC=+1.5e3\nD=.25\n");
  const BIniProfile profile(file.Name());
  double a = 0, b = 0, c = 0, d = 0;

  EXPECT_TRUE(profile.ReadDouble(L"A", a, -1) && profile.ReadDouble(L"B", b, -1) && profile.ReadDouble(L"C", c, -1) &&
              profile.ReadDouble(L"D", d, -1));
  EXPECT_EQ((std::vector<double>{30, -0.5, 1500, 0.25}), (std::vector<double>{a, b, c, d}));
}

TEST(ProfileReading, TakesNothingElseForANumber) {
  for (const char* text : {"", "1,5", "inf", "nan", "1e999", "1.5 Hz", "0x1p3"}) {
    const IniFile file("A=" + std::string(text) + "\n");
    const BIniProfile profile(file.Name());
    double value = 5;

    EXPECT_FALSE(profile.ReadDouble(L"A", value, -1.0)) << text;
    EXPECT_EQ(-1.0, value) << text;
    EXPECT_EQ(1u, profile.Complaints().size()) << text;
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
      (std::vector<std::wstring>{
          name + L", line 2: MINGAIN = 12x is not used, it is not a whole number from -2147483645 to 2147483645",
          name + L", line 4: YUVSTRETCH = maybe is not used, it is not one of 1, true, yes, on, 0, false, no, off",
          name + L", line 5: CAMFREQ = 1,5 is not used, it is not a number with a decimal point"}),
      Texts(profile.Complaints()));
}

TEST(ProfileReading, TellsItsFileAndItsName) {
  const IniFile file("", u8"K\u00FChlhaus 3.left.ini");
  const BIniProfile profile(file.Name());

  EXPECT_EQ(file.Name().Str(), profile.FileName().Str());
  EXPECT_EQ(L"K\u00FChlhaus 3.left", profile.Name().Str());
}

TEST(ProfileReading, DescribesItself) {
  const IniFile file("");
  const BIniProfile profile(file.Name());
  std::wostringstream archive;
  profile.WriteData(archive);

  EXPECT_EQ(L"profile " + file.Name().Str(), profile.Properties().Str());
  EXPECT_EQ(L"BIniProfile 1\nprofile " + file.Name().Str() + L"\n", archive.str());
}

TEST(ProfileReading, IsDoneThroughTheInterfaceToo) {
  const IniFile file("A=1\n");
  const BSmartRef<BIniProfile> profile(new BIniProfile(file.Name()));
  const IProfile& settings = *profile;
  int value = 0;

  EXPECT_TRUE(settings.ReadInt(L"A", value, 0, kMin, kMax));
  EXPECT_EQ(1, value);
}

TEST(ProfileReading, AFileThatIsTooLargeForAProfileIsNotRead) {
  const IniFile file(";" + std::string(std::size_t{16} << 20, 'x'));
  const std::wstring reason = ToWString(std::make_error_code(std::errc::file_too_large).message().c_str()).Str();

  EXPECT_THROW(BIniProfile profile(file.Name()), BError);
  try {
    const BIniProfile profile(file.Name());
  } catch (const BError& error) {
    EXPECT_EQ(L"the profile " + file.Name().Str() + L" cannot be read: " + reason, error.Message().Str());
  }
}

}  // namespace
