// malformed_test.cpp
// Files that are no profiles.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "berror.h"
#include "biniprofile.h"
#include "ini_file.h"

namespace {

// The error that opening the file ends in.
std::optional<BError> ErrorOf(const WString& file_name) {
  try {
    const BIniProfile profile(file_name);
    return std::nullopt;
  } catch (const BError& error) {
    return error;
  }
}

struct MalformedFile {
  const char* name;
  std::string bytes;
  const wchar_t* line;
  const wchar_t* reason;
};

class MalformedProfile : public testing::TestWithParam<MalformedFile> {};

TEST_P(MalformedProfile, IsRefusedWithFileLineAndReason) {
  const IniFile file(GetParam().bytes);

  const auto error = ErrorOf(file.Name());

  ASSERT_TRUE(error);
  EXPECT_EQ(error->ErrorCode(), BError::eProfileMalformed);
  EXPECT_EQ(error->Text(0).Str(), file.Name().Str());
  EXPECT_EQ(error->Text(1).Str(), GetParam().line);
  EXPECT_EQ(error->Text(2).Str(), GetParam().reason);
}

constexpr wchar_t kNeither[] = L"this is neither a comment, nor a section, nor key=value";
constexpr wchar_t kSection[] = L"the section has no name or no closing ]";

INSTANTIATE_TEST_SUITE_P(
    OfAllKinds, MalformedProfile,
    testing::Values(MalformedFile{"ALineOfPlainText", "A=1\n\nhello\n", L"3", kNeither},
                    MalformedFile{"AKeyWithoutEqualsAtTheEnd", "A=1\r\nB", L"2", kNeither},
                    MalformedFile{"AnOpenSection", "A=1\n[Lamp\nB=2\n", L"2", kSection},
                    MalformedFile{"ASectionWithoutName", "[ ]\n", L"1", kSection},
                    MalformedFile{"AValueWithoutKey", "A=1\n  = 5\n", L"2", L"there is no key before the ="},
                    MalformedFile{"ARepeatedKey", "A=1\nB=2\n a = 3\n", L"3", L"a already stands in line 1"},
                    MalformedFile{"ARepeatedKeyInAReopenedSection", "[S]\nA=1\n[T]\nA=1\n[s]\nA=2\n", L"6",
                                  L"A already stands in line 2"},
                    MalformedFile{"AZeroByte", std::string("A=1\nB=\0\n", 8), L"2", L"there is a zero byte"},
                    MalformedFile{"TextThatIsNotUtf8", "A=1\nB=K\xFChlhaus\n", L"2", L"this is not UTF-8 text"},
                    MalformedFile{"ACommentThatIsNotUtf8", "; K\xFChlhaus\n", L"1", L"this is not UTF-8 text"},
                    MalformedFile{"SixteenBitText",
                                  std::string("\xFF\xFE"
                                              "A\0=\0",
                                              6),
                                  L"1", L"there is a zero byte"}),
    [](const auto& test) { return test.param.name; });

TEST(ProfileOpening, SaysInOneSentenceWhatIsMalformed) {
  const IniFile file("oops\n");

  EXPECT_EQ(ErrorOf(file.Name())->Message().Str(),
            L"the profile " + file.Name().Str() + L" is malformed, line 1: " + kNeither);
}

TEST(ProfileOpening, FailsWithTheReasonForAMissingFile) {
  const IniFile file("A=1\n");
  const WString missing = WideName(file.Folder() / "missing.ini");

  const auto error = ErrorOf(missing);

  ASSERT_TRUE(error);
  EXPECT_EQ(error->ErrorCode(), BError::eProfileNotReadable);
  EXPECT_EQ(error->Text(0).Str(), missing.Str());
  EXPECT_FALSE(error->Text(1).IsEmpty());
}

TEST(ProfileOpening, FailsForAFolder) {
  const IniFile file("A=1\n");

  const auto error = ErrorOf(WideName(file.Folder()));

  ASSERT_TRUE(error);
  EXPECT_EQ(error->ErrorCode(), BError::eProfileNotReadable);
}

#if !defined(_WIN32)
TEST(ProfileOpening, GivesTheSystemsReason) {
  const IniFile file("A=1\n");

  EXPECT_EQ(ErrorOf(file.Name() + L"x")->Text(1).Str(), L"No such file or directory");
  EXPECT_EQ(ErrorOf(WideName(file.Folder()))->Text(1).Str(), L"Is a directory");
}
#endif

}  // namespace
