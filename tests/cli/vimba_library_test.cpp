// vimba_library_test.cpp
// Which VimbaC library answers: chosen, named, or missing.
#include "simulated_kelcam_test.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

#ifdef _WIN32
constexpr const char* kVimbaFile = "VimbaC.dll";
constexpr const char* kProgramFiles[] = {"kelcam.exe",   "kelCameraVimba.dll", "kel.portable.core.dll",
                                         "kel.core.dll", "kel.tools.dll",      "kel.imagingdevice.dll"};
#else
constexpr const char* kVimbaFile = "libVimbaC.so";
constexpr const char* kProgramFiles[] = {"kelcam",         "libkelCameraVimba.so", "libkel.portable.core.so",
                                         "libkel.core.so", "libkel.tools.so",      "libkel.imagingdevice.so"};
#endif

constexpr const char* kSimulatedNotice = "notice: the cameras are simulated (";

class VimbaLibraries : public SimulatedKelcamTest {
 protected:
  std::filesystem::path BuildFolder() const { return ProgramFile("kelcam").parent_path(); }

  // A folder with the program, and no library that it could reach cameras by.
  std::filesystem::path ProgramWithoutVimba() const {
    for (const char* file : kProgramFiles) std::filesystem::copy_file(BuildFolder() / file, PathOf(file));
    for (const auto& entry : std::filesystem::directory_iterator(BuildFolder())) {
      // The compiler's runtime libraries, where the program needs some of its own.
      const std::string name = entry.path().filename().string();
      const bool is_runtime = name.ends_with(".dll") && name.starts_with("lib");
      if (is_runtime) std::filesystem::copy_file(entry.path(), PathOf(name));
    }
    return PathOf(kProgramFiles[0]);
  }
  // The simulated library in a folder of its own.
  std::string FolderWithVimba() const {
    std::filesystem::create_directory(PathOf("vendor"));
    std::filesystem::copy_file(BuildFolder() / kVimbaFile, PathOf("vendor") / kVimbaFile);
    return In("vendor");
  }
};

TEST_F(VimbaLibraries, OfAFolderIsTheOneThatAnswers) {
  const std::string folder = FolderWithVimba();

  const ProcessResult result = KelcamTest::Kelcam({"--vimbac", folder, "list"});

  EXPECT_THAT(result.err, StartsWith(kSimulatedNotice));
  EXPECT_THAT(result.err, HasSubstr("vendor"));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(VimbaLibraries, NameStandsForOneThatComesWithTheProgram) {
  const ProcessResult result = KelcamTest::Kelcam({"--vimbac", "simulated", "list"});

  EXPECT_THAT(result.err, StartsWith(kSimulatedNotice));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(VimbaLibraries, TheOneForRealCamerasIsMissedByItsFile) {
  const auto program = ProgramWithoutVimba();

  const ProcessResult result = StartProgram(program, {"--vimbac", "aravis", "list"}).Wait();

  EXPECT_THAT(result.err, StartsWith("error: --vimbac aravis: this kelcam was built without it"));
  EXPECT_THAT(result.err, HasSubstr(kVimbaFile + std::string(" is missing")));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(VimbaLibraries, AFolderWithoutOneIsNamed) {
  const ProcessResult result = KelcamTest::Kelcam({"--vimbac", In(""), "list"});

  EXPECT_EQ(result.err, "error: --vimbac " + In("") + ": there is no " + kVimbaFile + " in this folder\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(VimbaLibraries, AFileThatIsNoneIsNamed) {
  Write(kVimbaFile, "this is no library");

  const ProcessResult result = KelcamTest::Kelcam({"--vimbac", In(""), "list"});

  EXPECT_THAT(result.err, StartsWith("error: the VimbaC library " + In(kVimbaFile) + " cannot be loaded: "));
}

TEST_F(VimbaLibraries, AFolderAndSimulatedCamerasExcludeEachOther) {
  const ProcessResult result = KelcamTest::Kelcam({"--vimbac", In(""), "--simulated", "list"});

  EXPECT_EQ(result.err, "kelcam: --simulated excludes --vimbac\n(see kelcam --help)\n");
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

TEST_F(VimbaLibraries, VersionNamesTheOneThatAnswers) {
  const ProcessResult version = KelcamTest::Kelcam({"--version", "--vimbac", FolderWithVimba()});

  EXPECT_THAT(version.out, StartsWith("kelcam " KEL_VERSION "\nVimbaC 1.8.3, "));
  EXPECT_THAT(version.out, EndsWith(std::string(kVimbaFile) + " (simulated cameras)\n"));
  EXPECT_EQ(version.err, "");
}

TEST_F(VimbaLibraries, InfoNamesTheOneThatAnswers) {
  Simulate();
  const ProcessResult text = Run("info", Profile("mono"));
  const auto document = Info(Profile("mono"))["vimbac"];

  EXPECT_EQ(document["simulated"], true);
  EXPECT_EQ(document["version"], "1.8.3");
  EXPECT_THAT(document["file"].get<std::string>(), EndsWith(kVimbaFile));
  EXPECT_THAT(text.out, HasSubstr("VimbaC 1.8.3, " + document["file"].get<std::string>() + " (simulated cameras)\n"));
}

TEST_F(VimbaLibraries, AMissingOneIsNamedAndWhatToDo) {
  Setting("LD_LIBRARY_PATH", "");
  const std::filesystem::path program = ProgramWithoutVimba();
  const std::string text = std::string("No VimbaC library was found: ") + kVimbaFile +
                           " is missing\n"
                           "  real cameras: install the vendor's Vimba, or name the library's folder (kelcam --vimbac "
                           "FOLDER)\n"
                           "  without a camera: kelcam --simulated\n";

  const ProcessResult list = StartProgram(program, {"list"}).Wait();
  const ProcessResult version = StartProgram(program, {"--version"}).Wait();

  EXPECT_EQ(list.err, "error: " + text);
  EXPECT_EQ(list.exit_code, kFailed);
  EXPECT_EQ(version.out, "kelcam " KEL_VERSION "\n" + text);
  EXPECT_EQ(version.exit_code, kDone);
}

TEST_F(VimbaLibraries, AMissingOneIsNotMissedWhereAFolderIsGiven) {
  Setting("LD_LIBRARY_PATH", "");
  const std::filesystem::path program = ProgramWithoutVimba();

  const ProcessResult result = StartProgram(program, {"--vimbac", FolderWithVimba(), "list"}).Wait();

  EXPECT_THAT(result.err, StartsWith(kSimulatedNotice));
  EXPECT_EQ(result.exit_code, kDone);
}

}  // namespace
