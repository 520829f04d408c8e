// unknown_word_test.cpp
// Words of the command line that the program has no use for: what kelcam says is meant.
#include "kelcam_test.h"

namespace {

struct UnknownWord {
  const char* name;
  std::vector<std::string> arguments;
  std::string reason;
};

void PrintTo(const UnknownWord& word, std::ostream* out) { *out << word.name; }

class UnknownWords : public KelcamTest, public testing::WithParamInterface<UnknownWord> {};

TEST_P(UnknownWords, AreNamedWithTheNearestKnownOne) {
  const ProcessResult result = Kelcam(GetParam().arguments);

  EXPECT_EQ(result.err, "kelcam: " + GetParam().reason + "\n(see kelcam --help)\n");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

const UnknownWord kCommands[] = {
    {"Misspelt", {"snp", "--profile", "c.ini", "-o", "x.png"}, "there is no command snp; did you mean snap?"},
    {"UpperCase", {"LIST"}, "there is no command LIST; did you mean list?"},
    {"NothingNear", {"shoot"}, "there is no command shoot"},
    {"BeforeAnother", {"shoot", "list"}, "there is no command shoot"},
    {"OfProfile", {"profile", "chek", "c.ini"}, "there is no command profile chek; did you mean profile check?"},
    {"OfProfileAlone", {"new", "c.ini"}, "there is no command new; did you mean profile new?"},
    {"ScenarioWithoutSign",
     {"--simulated", "lost-packets", "list"},
     "--simulated takes no word after it; did you mean --simulated=lost-packets?"},
};

const UnknownWord kOptions[] = {
    {"Misspelt",
     {"snap", "--profil", "c.ini", "-o", "x.png"},
     "there is no option --profil of snap; did you mean --profile?"},
    {"WithItsValue", {"snap", "--profile=c.ini", "-o", "x.png", "--exposre=3"}, "there is no option --exposre of snap"},
    {"OneDash", {"info", "-profile", "c.ini"}, "there is no option -profile of info; did you mean --profile?"},
    {"TwoDashes", {"snap", "--camera", "1", "--o", "x.png"}, "there is no option --o of snap; did you mean -o?"},
    {"Global", {"--verson"}, "there is no option --verson; did you mean --version?"},
    {"GlobalAfterACommand", {"list", "--jsn"}, "there is no option --jsn of list; did you mean --json?"},
    {"OneLetter", {"list", "-x"}, "there is no option -x of list"},
    {"OfAnotherCommand",
     {"info", "--camera", "1", "--seconds", "3"},
     "there is no option --seconds of info; live and check have it"},
    {"OfOtherCommands",
     {"profile", "check", "c.ini", "--camera", "1"},
     "there is no option --camera of profile check; info, snap, live, view, check and profile new have it"},
    {"BeforeTheCommand",
     {"--profile", "c.ini", "info"},
     "there is no option --profile before the command; info, snap, live, view and check have it"},
    {"OfProfileNew",
     {"profile", "new", "--camra", "1", "-o", "c.ini"},
     "there is no option --camra of profile new; did you mean --camera?"},
};

const UnknownWord kWords[] = {
    {"Profile", {"snap", "c.ini"}, "snap does not expect the word c.ini; did you mean --profile c.ini?"},
    {"ProfileOfInfo", {"info", "c.ini"}, "info does not expect the word c.ini; did you mean --profile c.ini?"},
    {"ProfileAndPicture",
     {"snap", "-o", "x.png", "c.ini"},
     "snap does not expect the word c.ini; did you mean --profile c.ini?"},
    {"SecondProfile", {"snap", "--profile", "a.ini", "c.ini"}, "snap does not expect the word c.ini"},
    {"Picture", {"snap", "--profile", "c.ini", "x.png"}, "snap does not expect the word x.png; did you mean -o x.png?"},
    {"NewProfile",
     {"profile", "new", "--camera", "1", "c.ini"},
     "profile new does not expect the word c.ini; did you mean -o c.ini?"},
    {"SecondFile", {"profile", "check", "a.ini", "b.ini"}, "profile check does not expect the word b.ini"},
    {"OptionWithoutDashes", {"list", "long"}, "list does not expect the word long; did you mean --long?"},
    {"ProfileOfCheck", {"check", "c.ini"}, "check does not expect the word c.ini; did you mean --profile c.ini?"},
    {"List", {"list", "c.ini"}, "list does not expect the word c.ini"},
};

const auto kNameOf = [](const testing::TestParamInfo<UnknownWord>& info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(Commands, UnknownWords, testing::ValuesIn(kCommands), kNameOf);
INSTANTIATE_TEST_SUITE_P(Options, UnknownWords, testing::ValuesIn(kOptions), kNameOf);
INSTANTIATE_TEST_SUITE_P(Words, UnknownWords, testing::ValuesIn(kWords), kNameOf);

class UnknownFiles : public KelcamTest {};

TEST_F(UnknownFiles, AFileThatIsThereIsTakenForTheProfileWhateverItsName) {
  const std::string file = Write("camera settings", "API = Vimba\n");

  EXPECT_EQ(Kelcam({"live", file}).err, "kelcam: live does not expect the word " + file + "; did you mean --profile " +
                                            file + "?\n(see kelcam --help)\n");
  const std::string absent = In("no such file");
  EXPECT_EQ(Kelcam({"live", absent}).err,
            "kelcam: live does not expect the word " + absent + "\n(see kelcam --help)\n");
}

}  // namespace
