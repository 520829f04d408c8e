// regular_file_test.cpp
// Names that lead to something else than a file that can be read to its end.
#include <gtest/gtest.h>

#include <string>

#include "berror.h"
#include "biniprofile.h"
#include "ini_file.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#endif

namespace {

BError ErrorOf(const WString& file_name) {
  try {
    const BIniProfile profile(file_name);
    return BError();
  } catch (const BError& error) {
    return error;
  }
}

BError NotReadable(const WString& file_name, const wchar_t* reason) {
  return BError(BError::eProfileNotReadable, file_name, reason);
}

constexpr wchar_t kPipe[] = L"it is a pipe (FIFO), not a regular file";
constexpr wchar_t kDevice[] = L"it is a device, not a regular file";

TEST(ProfileThatIsNoRegularFile, AFolderIsNamedSo) {
  const IniFile file("");
  const WString folder = WideName(file.Folder());

  EXPECT_EQ(ErrorOf(folder), NotReadable(folder, L"Is a directory"));
}

#ifdef _WIN32

TEST(ProfileThatIsNoRegularFile, APipeIsNamedSo) {
  const WString name = WString::Format(L"\\\\.\\pipe\\kel-profile-%u", static_cast<unsigned>(::GetCurrentProcessId()));
  const HANDLE pipe =
      ::CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX, 0, PIPE_UNLIMITED_INSTANCES, 0, 0, 0, nullptr);
  ASSERT_NE(pipe, INVALID_HANDLE_VALUE);

  EXPECT_EQ(ErrorOf(name), NotReadable(name, kPipe));

  ::CloseHandle(pipe);
}

TEST(ProfileThatIsNoRegularFile, ADeviceIsNamedSo) { EXPECT_EQ(ErrorOf(L"NUL"), NotReadable(L"NUL", kDevice)); }

#else

// Opening it for reading would wait for a writer.
TEST(ProfileThatIsNoRegularFile, APipeIsNamedSo) {
  const IniFile file("");
  const std::string name = (file.Folder() / "pipe.ini").string();
  ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);

  EXPECT_EQ(ErrorOf(WideName(name)), NotReadable(WideName(name), kPipe));
}

TEST(ProfileThatIsNoRegularFile, ADeviceIsNamedSo) {
  EXPECT_EQ(ErrorOf(L"/dev/zero"), NotReadable(L"/dev/zero", kDevice));
}

TEST(ProfileThatIsNoRegularFile, ASocketIsNamedSo) {
  const IniFile file("");
  const std::string name = (file.Folder() / "s").string();
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(name.size(), sizeof address.sun_path);
  name.copy(address.sun_path, name.size());
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

  EXPECT_EQ(ErrorOf(WideName(name)), NotReadable(WideName(name), L"it is a socket, not a regular file"));

  ::close(socket);
}

TEST(ProfileThatIsNoRegularFile, ALinkToADeviceIsNoBetter) {
  const IniFile file("");
  const std::filesystem::path link = file.Folder() / "link.ini";
  std::filesystem::create_symlink("/dev/zero", link);

  EXPECT_EQ(ErrorOf(WideName(link)), NotReadable(WideName(link), kDevice));
}

TEST(ProfileThatIsNoRegularFile, APipeThatTookTheFilesPlaceIsNotWritten) {
  const IniFile file("A=1\n");
  BIniProfile profile(file.Name());
  std::filesystem::remove(file.Path());
  ASSERT_EQ(::mkfifo(file.Path().c_str(), 0600), 0);

  EXPECT_FALSE(profile.Write(L"A", L"2"));

  EXPECT_EQ(profile.Complaints().front().Str(), file.Name().Str() + L": A = 2 is not saved: " + kPipe);
  EXPECT_TRUE(std::filesystem::is_fifo(file.Path()));
}

#endif

}  // namespace
