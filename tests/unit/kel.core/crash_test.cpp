// crash_test.cpp
// What is left when a process dies while saving, and what a file keeps that is replaced. In the ways of POSIX systems.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

#include "biniprofile.h"
#include "ini_file.h"

namespace {

namespace fs = std::filesystem;

// Runs it in a process of its own and gives how that ended.
int StatusOfChild(const std::function<bool()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work() ? 0 : 1);
  int status = -1;
  ::waitpid(child, &status, 0);
  return status;
}

bool SaveUntilKilledAt(const WString& file_name, rlim_t bytes) {
  std::signal(SIGXFSZ, SIG_DFL);
  const rlimit limit{bytes, bytes};
  BIniProfile profile(file_name);
  return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 && profile.Write(L"A", L"new");
}

TEST(ProfileCrash, LeavesTheOldFileOrTheNewOneAtWhicheverByteItHappens) {
  const std::string before = "; head\nA=old\nB=1\n";
  const std::string after = "; head\nA=new\nB=1\n";
  for (rlim_t limit = 0; limit <= after.size(); ++limit) {
    const IniFile file(before);

    const int status = StatusOfChild([&] { return SaveUntilKilledAt(file.Name(), limit); });

    // The system lets a write go up to the limit and kills the process at the next one.
    const bool killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ;
    EXPECT_EQ(killed, limit < after.size()) << "limit " << limit;
    EXPECT_EQ(file.Bytes(), killed ? before : after) << "limit " << limit;
  }
}

TEST(ProfileCrash, LeavesNothingBehindOnceTheNextSaveIsDone) {
  const IniFile file("A=old\n");
  StatusOfChild([&] { return SaveUntilKilledAt(file.Name(), 1); });
  ASSERT_EQ(file.Neighbours().size(), 2u) << "the crash was to leave its half-written file";
  BIniProfile profile(file.Name());

  EXPECT_TRUE(profile.Write(L"A", L"new"));

  EXPECT_EQ(file.Bytes(), "A=new\n");
  EXPECT_EQ(file.Neighbours(), (std::vector<std::string>{"camera.ini"}));
}

TEST(ProfileReplacement, KeepsTheFilesRights) {
  const IniFile file("A=1\n");
  for (const mode_t mode : {0600u, 0640u, 0664u, 0606u}) {
    ASSERT_EQ(::chmod(file.Path().c_str(), mode), 0);
    BIniProfile profile(file.Name());

    EXPECT_TRUE(profile.Write(L"A", WString::Format(L"%d", static_cast<int>(mode))));

    struct stat status {};
    ASSERT_EQ(::stat(file.Path().c_str(), &status), 0);
    constexpr mode_t kRights = 07777;
    EXPECT_EQ(status.st_mode & kRights, mode);
  }
}

TEST(ProfileReplacement, KeepsALinkAndWritesWhereItLeads) {
  const IniFile file("A=1\n");
  const fs::path link = file.Folder() / "link.ini";
  fs::create_symlink("camera.ini", link);
  BIniProfile profile(WideName(link));

  EXPECT_TRUE(profile.Write(L"A", L"2"));

  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(file.Bytes(), "A=2\n");
  EXPECT_EQ(file.Neighbours(), (std::vector<std::string>{"camera.ini", "link.ini"}));
  EXPECT_EQ(profile.Name().Str(), L"link");
}

// The superuser may write every file, so the write is tried as somebody else.
bool WriteAsAnOrdinaryUser(const WString& file_name) {
  constexpr uid_t kNobody = 65534;
  if (::geteuid() == 0 && ::setuid(kNobody) != 0) return true;
  BIniProfile profile(file_name);
  return profile.Write(L"A", L"2");
}

TEST(ProfileReplacement, LeavesAWriteProtectedFileAlone) {
  const IniFile file("A=1\n");
  fs::permissions(file.Folder(), fs::perms::all);
  ASSERT_EQ(::chmod(file.Path().c_str(), 0444), 0);

  const int status = StatusOfChild([&] { return WriteAsAnOrdinaryUser(file.Name()); });

  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
  EXPECT_EQ(file.Bytes(), "A=1\n");
}

TEST(ProfileReplacement, FailsInAFolderThatMayNotBeWritten) {
  const IniFile file("A=1\n");
  ASSERT_EQ(::chmod(file.Path().c_str(), 0666), 0);
  ASSERT_EQ(::chmod(file.Folder().c_str(), 0555), 0);

  const int status = StatusOfChild([&] { return WriteAsAnOrdinaryUser(file.Name()); });

  ASSERT_EQ(::chmod(file.Folder().c_str(), 0755), 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
  EXPECT_EQ(file.Bytes(), "A=1\n");
}

}  // namespace
