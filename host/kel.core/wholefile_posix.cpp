// wholefile_posix.cpp
// Whole files on POSIX systems, where names are UTF-8.
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <thread>
#include <tuple>
#include <utility>

#include "regularfile.h"
#include "wholefile.h"

namespace {

namespace fs = std::filesystem;

// Who may do what with a file, out of its mode.
constexpr mode_t kRights = 07777;
// A pipe without a writer, or a line without a carrier, is opened without waiting, and no terminal becomes ours.
constexpr int kAtOnce = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

std::error_code LastError() { return {errno, std::system_category()}; }

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
  }

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
    const std::string folder = fs::path(m_target).parent_path().string();
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

FileKind KindOf(mode_t mode) {
  if (S_ISREG(mode)) return FileKind::kRegular;
  if (S_ISDIR(mode)) return FileKind::kFolder;
  if (S_ISFIFO(mode)) return FileKind::kPipe;
  if (S_ISCHR(mode) || S_ISBLK(mode)) return FileKind::kDevice;
  return S_ISSOCK(mode) ? FileKind::kSocket : FileKind::kOther;
}

// What writers have left behind that were killed. Only whoever holds the lock may take it away. The standard library's
// iterator would end the process where there is no memory for a name.
void RemoveLeftovers(const fs::path& target) {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(target.parent_path().c_str()), ::closedir);
  if (!folder) return;
  const std::string target_name = target.filename().string();
  while (const dirent* entry = ::readdir(folder.get())) {
    if (IsLeftover<char>(entry->d_name, target_name)) std::ignore = ::unlinkat(::dirfd(folder.get()), entry->d_name, 0);
  }
}

enum class LockResult { kLocked, kHeldByOthers, kNotOnThisDisk };

LockResult TryLock(int descriptor) {
  while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (errno == EINTR) continue;
    return errno == EWOULDBLOCK ? LockResult::kHeldByOthers : LockResult::kNotOnThisDisk;
  }
  return LockResult::kLocked;
}

// Whether the file still has the name: whoever held the lock before may have put another one into its place.
bool HasName(int descriptor, const fs::path& name) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(descriptor, &opened) == 0 && ::stat(name.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

}  // namespace

std::error_code ErrorIfNotRegular(const WString& file_name) {
  struct stat status {};
  const bool is_there = ::stat(ToBString(file_name).c_str(), &status) == 0;
  return is_there ? ErrorOfKind(KindOf(status.st_mode)) : std::error_code();
}

std::error_code ReadWholeFile(const WString& file_name, std::string& bytes) {
  // Looked at before it is opened, because opening alone makes some devices move; and again, because it may change.
  if (const std::error_code error = ErrorIfNotRegular(file_name)) return error;
  const FileDescriptor file(::open(ToBString(file_name).c_str(), O_RDONLY | kAtOnce));
  if (file.Get() < 0) return LastError();
  struct stat status {};
  if (::fstat(file.Get(), &status) != 0) return LastError();
  if (const std::error_code error = ErrorOfKind(KindOf(status.st_mode))) return error;
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

// The lock is on the file itself, so nothing is left behind. A disk that has no locks is written without.
struct LockedFile::State {
  fs::path target;
  FileDescriptor file{-1};
  bool is_locked = false;
  std::error_code error;

  std::error_code Lock() {
    const auto deadline = std::chrono::steady_clock::now() + kLongestLockWait;
    for (;;) {
      // A write-protected file stays as it is, though its folder would let it be replaced.
      file = FileDescriptor(::open(target.c_str(), O_RDWR | kAtOnce));
      if (file.Get() < 0) return LastError();
      const LockResult result = TryLock(file.Get());
      if (result == LockResult::kNotOnThisDisk) return {};
      is_locked = result == LockResult::kLocked && HasName(file.Get(), target);
      if (is_locked) return {};
      if (std::chrono::steady_clock::now() >= deadline) return std::make_error_code(std::errc::device_or_resource_busy);
      if (result == LockResult::kHeldByOthers) std::this_thread::sleep_for(kLockPollInterval);
    }
  }
};

LockedFile::LockedFile(const WString& file_name) : m_state(std::make_unique<State>()) {
  m_state->target = fs::canonical(ToBString(file_name).Str(), m_state->error);
  if (!m_state->error) m_state->error = m_state->Lock();
}

LockedFile::~LockedFile() = default;

std::error_code LockedFile::Error() const { return m_state->error; }

std::error_code LockedFile::Replace(std::string_view bytes) const {
  if (m_state->is_locked) RemoveLeftovers(m_state->target);
  Replacement replacement(m_state->target.string());
  const bool done =
      replacement.IsOpen() && replacement.Write(bytes) && replacement.TakeOverRights() && replacement.TakePlace();
  return done ? std::error_code() : LastError();
}
