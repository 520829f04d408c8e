// saving_test.cpp
// When and how a profile reaches its file.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "biniprofile.h"
#include "ini_file.h"
#include "refusing_disk.h"

namespace {

namespace fs = std::filesystem;

std::wstring ReadString(const BIniProfile& profile, const wchar_t* key) {
  WString value;
  return profile.ReadString(key, value, L"<none>") ? value.Str() : L"no " + value.Str();
}

std::vector<std::wstring> Complaints(const BIniProfile& profile) {
  std::vector<std::wstring> texts;
  texts.reserve(profile.Complaints().size());
  for (const WString& complaint : profile.Complaints()) texts.push_back(complaint.Str());
  return texts;
}

using Names = std::vector<std::string>;

TEST(ProfileSaving, LeavesNothingButTheFile) {
  const IniFile file("A=1\n");
  BIniProfile profile(file.Name());

  EXPECT_TRUE(profile.Write(L"A", L"2"));
  EXPECT_TRUE(profile.Write(L"B", L"3"));

  EXPECT_EQ(file.Bytes(), "A=2\nB=3\n");
  EXPECT_EQ(file.Neighbours(), (Names{"camera.ini"}));
}

TEST(ProfileSaving, DoesNotTouchTheFileForAnUnchangedValue) {
  const IniFile file("A = 1 \n");
  const auto long_ago = fs::last_write_time(file.Path()) - std::chrono::hours(1000);
  fs::last_write_time(file.Path(), long_ago);
  BIniProfile profile(file.Name());

  EXPECT_TRUE(profile.Write(L"A", L"1"));

  EXPECT_EQ(fs::last_write_time(file.Path()), long_ago);
  EXPECT_EQ(file.Bytes(), "A = 1 \n");
}

TEST(ProfileSaving, KeepsWhatOthersChangedMeanwhile) {
  const IniFile file("A=1\nB=1\n");
  BIniProfile profile(file.Name());
  file.Write("; edited\nB=2\nA=1\nC=3\n");

  EXPECT_TRUE(profile.Write(L"A", L"5"));

  EXPECT_EQ(file.Bytes(), "; edited\nB=2\nA=5\nC=3\n");
  EXPECT_EQ(ReadString(profile, L"B"), L"2");
  EXPECT_EQ(ReadString(profile, L"C"), L"3");
}

TEST(ProfileSaving, LetsTwoProfilesOfOneFileWriteInTurns) {
  const IniFile file("A=1\nB=1\n");
  BIniProfile first(file.Name());
  BIniProfile second(file.Name());

  EXPECT_TRUE(first.Write(L"A", L"2"));
  EXPECT_TRUE(second.Write(L"B", L"3"));
  EXPECT_TRUE(first.Write(L"A", L"4"));

  EXPECT_EQ(file.Bytes(), "A=4\nB=3\n");
}

TEST(ProfileSaving, KeepsTheOldFileAndTheNewValueWhenTheDiskRefuses) {
  const IniFile file("A=1\nB=1\n");
  BIniProfile profile(file.Name());
  const RefusingDisk disk(file.Path());

  EXPECT_FALSE(profile.Write(L"A", L"2"));

  EXPECT_EQ(file.Bytes(), "A=1\nB=1\n");
  EXPECT_EQ(file.Neighbours(), (Names{"camera.ini"}));
  EXPECT_EQ(ReadString(profile, L"A"), L"2");
  EXPECT_EQ(Complaints(profile),
            (std::vector<std::wstring>{file.Name().Str() + L": A = 2 is not saved: " + disk.Reason()}));
}

TEST(ProfileSaving, SavesWithTheNextWriteWhatCouldNotBeSaved) {
  const IniFile file("A=1\nB=1\n");
  BIniProfile profile(file.Name());
  {
    const RefusingDisk disk(file.Path());
    EXPECT_FALSE(profile.Write(L"A", L"2"));
    EXPECT_FALSE(profile.Write(L"A", L"3"));
    EXPECT_FALSE(profile.Write(L"C", L"4"));
  }
  EXPECT_TRUE(profile.Write(L"B", L"5"));

  EXPECT_EQ(file.Bytes(), "A=3\nB=5\nC=4\n");
}

TEST(ProfileSaving, TriesAgainWhenTheSameValueIsWritten) {
  const IniFile file("A=1\n");
  BIniProfile profile(file.Name());
  {
    const RefusingDisk disk(file.Path());
    EXPECT_FALSE(profile.Write(L"A", L"2"));
  }
  EXPECT_TRUE(profile.Write(L"A", L"2"));

  EXPECT_EQ(file.Bytes(), "A=2\n");
}

TEST(ProfileSaving, FailsWhenTheFileHasGone) {
  const IniFile file("A=1\n");
  BIniProfile profile(file.Name());
  fs::remove(file.Path());

  EXPECT_FALSE(profile.Write(L"A", L"2"));

  EXPECT_EQ(file.Neighbours(), (Names{}));
  EXPECT_EQ(ReadString(profile, L"A"), L"2");
  EXPECT_EQ(profile.Complaints().size(), 1u);
}

TEST(ProfileSaving, FailsWhenAFolderHasTakenTheFilesPlace) {
  const IniFile file("A=1\n");
  BIniProfile profile(file.Name());
  fs::remove(file.Path());
  fs::create_directory(file.Path());

  EXPECT_FALSE(profile.Write(L"A", L"2"));

  EXPECT_TRUE(fs::is_directory(file.Path()));
  EXPECT_EQ(file.Neighbours(), (Names{"camera.ini"}));
  EXPECT_EQ(profile.Complaints().size(), 1u);
}

TEST(ProfileSaving, LeavesAFileAloneThatOthersMadeMalformed) {
  const IniFile file("A=1\n");
  BIniProfile profile(file.Name());
  file.Write("A=1\nhalf a li");

  EXPECT_FALSE(profile.Write(L"A", L"2"));

  const std::wstring name = file.Name().Str();
  EXPECT_EQ(file.Bytes(), "A=1\nhalf a li");
  EXPECT_EQ(ReadString(profile, L"A"), L"2");
  EXPECT_EQ(Complaints(profile),
            (std::vector<std::wstring>{name + L": A = 2 is not saved: the profile " + name +
                                       L" is malformed, line 2: this is neither a comment, nor a section, nor "
                                       L"key=value"}));
}

TEST(ProfileSaving, RemovesTheFilesOfKilledWritersAndNoOthers) {
  const IniFile file("A=1\n");
  const Names others = {"camera.ini.1-.new", "camera.ini.1-2.newer", "camera.ini.12.new", "camera.ini.a-2.new",
                        "camera.ini.new",    "camera2.ini.1-2.new",  "other.ini.1-2.new"};
  Names all = others;
  all.insert(all.end(), {"camera.ini.1-0.new", "camera.ini.4711-12.new"});
  for (const std::string& name : all) std::ofstream(file.Folder() / name) << "A=half";
  BIniProfile profile(file.Name());

  EXPECT_TRUE(profile.Write(L"A", L"2"));

  Names left = others;
  left.insert(left.begin(), "camera.ini");
  EXPECT_EQ(file.Neighbours(), left);
}

TEST(ProfileSaving, RefusesWhatWouldMakeTheFileTooLarge) {
  constexpr std::size_t kLargestProfileBytes = 16U << 20U;
  const std::string key = "A=1\n";
  const std::string comment = ";" + std::string(kLargestProfileBytes - key.size() - 2, 'x') + "\n";
  const IniFile file(key + comment);
  BIniProfile profile(file.Name());

  EXPECT_FALSE(profile.Write(L"A", L"22"));

  EXPECT_EQ(Complaints(profile),
            (std::vector<std::wstring>{file.Name().Str() +
                                       L": A = 22 is not saved: a profile has no more than 16777216 bytes"}));
  EXPECT_EQ(ReadString(profile, L"A"), L"1");
  EXPECT_TRUE(profile.Write(L"A", L"2"));
}

TEST(ProfileSaving, RefusesOneLineTooMany) {
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += "K" + std::to_string(i) + "=1\n";
  const IniFile file(bytes);
  BIniProfile profile(file.Name());

  EXPECT_FALSE(profile.Write(L"NEW", L"2"));

  EXPECT_EQ(Complaints(profile),
            (std::vector<std::wstring>{file.Name().Str() +
                                       L": NEW = 2 is not saved: a profile has no more than 100000 lines"}));
  EXPECT_EQ(ReadString(profile, L"NEW"), L"no <none>");
  EXPECT_TRUE(profile.Write(L"K99999", L"2"));
}

}  // namespace
