// wholefile_posix.cpp
// Whole files on POSIX systems, where names are UTF-8.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <tuple>
#include <utility>

#include "wholefile.h"

namespace {

// Who may do what with a file, out of its mode.
constexpr mode_t kRights = 07777;

std::error_code LastError() { return {errno, std::system_category()}; }

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  int Get() const { return m_descriptor; }
  bool Close() {
    const int descriptor = std::exchange(m_descriptor, -1);
    return descriptor < 0 || ::close(descriptor) == 0;
  }

 private:
  int m_descriptor;
};

// A new file next to the target, under a name that nothing else has; gone again unless it took the target's place.
class Replacement {
 public:
  explicit Replacement(const std::string& target) : m_target(target), m_file(Create()) {}
  ~Replacement() {
    if (!m_name.empty()) std::ignore = ::unlink(m_name.c_str());
  }

  bool IsOpen() const { return m_file.Get() >= 0; }

  bool Write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = ::write(m_file.Get(), bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
  }

  bool TakeOverRights() const {
    struct stat status {};
    if (::stat(m_target.c_str(), &status) != 0) return false;
    // Only a privileged process may give files away; for others the profile becomes their own, with the same rights.
    std::ignore = ::fchown(m_file.Get(), status.st_uid, status.st_gid);
    return ::fchmod(m_file.Get(), status.st_mode & kRights) == 0;
  }

  bool TakePlace() {
    if (::fsync(m_file.Get()) != 0 || !m_file.Close() || ::rename(m_name.c_str(), m_target.c_str()) != 0) return false;
    m_name.clear();
    // The new file is in place from here on; its name reaches the disk with the folder, now or a little later.
    const std::string folder = std::filesystem::path(m_target).parent_path().string();
    const FileDescriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.Get() >= 0) std::ignore = ::fsync(directory.Get());
    return true;
  }

 private:
  int Create() {
    for (int attempt = 0;; ++attempt) {
      m_name = m_target + '.' + std::to_string(::getpid()) + '-' + std::to_string(attempt) + ".new";
      const int descriptor = ::open(m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
      if (descriptor >= 0) return descriptor;
      if (errno != EEXIST) break;
    }
    m_name.clear();
    return -1;
  }

  std::string m_target;
  std::string m_name;
  FileDescriptor m_file;
};

}  // namespace

std::error_code ReadWholeFile(const WString& file_name, std::string& bytes) {
  const FileDescriptor file(::open(ToBString(file_name).c_str(), O_RDONLY | O_CLOEXEC));
  if (file.Get() < 0) return LastError();
  bytes.clear();
  char buffer[4096];
  for (;;) {
    const ssize_t count = ::read(file.Get(), buffer, sizeof buffer);
    if (count == 0) return {};
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return LastError();
    bytes.append(buffer, static_cast<std::size_t>(count));
    if (bytes.size() > kLargestWholeFile) return std::make_error_code(std::errc::file_too_large);
  }
}

std::error_code ReplaceWholeFile(const WString& file_name, std::string_view bytes) {
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(ToBString(file_name).Str(), error);
  if (error) return error;
  // A write-protected file stays as it is, though its folder would let it be replaced.
  if (::access(target.c_str(), W_OK) != 0) return LastError();
  Replacement replacement(target.string());
  const bool done =
      replacement.IsOpen() && replacement.Write(bytes) && replacement.TakeOverRights() && replacement.TakePlace();
  return done ? std::error_code() : LastError();
}
