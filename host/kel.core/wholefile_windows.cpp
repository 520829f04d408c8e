// wholefile_windows.cpp
// Whole files on Windows, where names are wide.
#include <windows.h>

#include <algorithm>
#include <limits>
#include <thread>
#include <tuple>
#include <utility>

#include "regularfile.h"
#include "wholefile.h"

namespace {

std::error_code LastError() { return {static_cast<int>(::GetLastError()), std::system_category()}; }

class FileHandle {
 public:
  explicit FileHandle(HANDLE handle) : m_handle(handle) {}
  ~FileHandle() { Close(); }
  FileHandle(FileHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)) {}
  FileHandle& operator=(FileHandle&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
  }

  HANDLE Get() const { return m_handle; }
  bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
  bool Close() {
    const HANDLE handle = std::exchange(m_handle, INVALID_HANDLE_VALUE);
    return handle == INVALID_HANDLE_VALUE || ::CloseHandle(handle);
  }

 private:
  HANDLE m_handle;
};

// How long an open reader of the file, or of the lock, is given to let go of it; and when it is asked again.
constexpr std::chrono::milliseconds kReaderPatience{250};
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE OpenForReading(const std::wstring& name) {
  return ::CreateFileW(name.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// The file that a name leads to, links followed; empty when there is none.
std::wstring FinalName(const std::wstring& name) {
  const FileHandle file(OpenForReading(name));
  if (!file.IsOpen()) return {};
  std::wstring final_name(::GetFinalPathNameByHandleW(file.Get(), nullptr, 0, 0), L'\0');
  const auto size = static_cast<DWORD>(final_name.size());
  final_name.resize(size ? ::GetFinalPathNameByHandleW(file.Get(), final_name.data(), size, 0) : 0);
  return final_name;
}

HANDLE CreateBeside(const std::wstring& target, std::wstring& name) {
  for (int attempt = 0;; ++attempt) {
    name = target + L'.' + std::to_wstring(::GetCurrentProcessId()) + L'-' + std::to_wstring(attempt) + L".new";
    const HANDLE handle =
        ::CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle != INVALID_HANDLE_VALUE || ::GetLastError() != ERROR_FILE_EXISTS) return handle;
  }
}

bool WriteAll(HANDLE handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), std::numeric_limits<DWORD>::max()));
    DWORD written = 0;
    if (!::WriteFile(handle, bytes.data(), size, &written, nullptr)) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

FileKind KindOf(HANDLE handle) {
  switch (::GetFileType(handle)) {
    case FILE_TYPE_DISK:
      return FileKind::kRegular;
    case FILE_TYPE_PIPE:
      return FileKind::kPipe;
    case FILE_TYPE_CHAR:
      return FileKind::kDevice;
    default:
      return FileKind::kOther;
  }
}

bool IsFolder(const std::wstring& name) {
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// What writers have left behind that were killed. Only whoever holds the lock may take it away.
void RemoveLeftovers(const std::wstring& target) {
  const std::size_t name_begin = target.find_last_of(L"\\/") + 1;
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW((target + L".*.new").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    if (!IsLeftover<wchar_t>(found.cFileName, target.substr(name_begin))) continue;
    std::ignore = ::DeleteFileW((target.substr(0, name_begin) + found.cFileName).c_str());
  } while (::FindNextFileW(search, &found));
  ::FindClose(search);
}

// Somebody has the file open, or it is on its way out; or it may not be written at all, which looks the same.
bool IsInUse(DWORD error) { return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED; }

bool TakePlace(const std::wstring& name, const std::wstring& target) {
  const auto deadline = std::chrono::steady_clock::now() + kReaderPatience;
  while (!::MoveFileExW(name.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    const DWORD error = ::GetLastError();
    if (!IsInUse(error) || std::chrono::steady_clock::now() >= deadline) {
      ::SetLastError(error);
      return false;
    }
    std::this_thread::sleep_for(kLockPollInterval);
  }
  return true;
}

}  // namespace

std::error_code ErrorIfNotRegular(const WString& file_name) {
  if (IsFolder(file_name.Str())) return ErrorOfKind(FileKind::kFolder);
  const FileHandle file(::CreateFileW(file_name.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  return file.IsOpen() ? ErrorOfKind(KindOf(file.Get())) : std::error_code();
}

std::error_code ReadWholeFile(const WString& file_name, std::string& bytes) {
  if (IsFolder(file_name.Str())) return ErrorOfKind(FileKind::kFolder);
  const FileHandle file(OpenForReading(file_name.Str()));
  if (!file.IsOpen()) return LastError();
  if (const std::error_code error = ErrorOfKind(KindOf(file.Get()))) return error;
  bytes.clear();
  char buffer[4096];
  for (;;) {
    DWORD count = 0;
    if (!::ReadFile(file.Get(), buffer, sizeof buffer, &count, nullptr)) return LastError();
    if (count == 0) return {};
    bytes.append(buffer, count);
    if (bytes.size() > kLargestWholeFile) return std::make_error_code(std::errc::file_too_large);
  }
}

// The lock is a file that only one process may open. An open file cannot be replaced, so the lock is not on the target.
// The system removes it when its one handle goes, also that of a killed process.
struct LockedFile::State {
  std::wstring target;
  FileHandle lock{INVALID_HANDLE_VALUE};
  std::error_code error;

  std::error_code Lock() {
    const std::wstring name = target + L".lock";
    const auto start = std::chrono::steady_clock::now();
    for (;;) {
      lock = FileHandle(::CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                                      FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
      if (lock.IsOpen()) return {};
      const DWORD code = ::GetLastError();
      const auto waited = std::chrono::steady_clock::now() - start;
      // Access is denied for a moment while the system removes the file, and for good in a folder of somebody else's.
      if (!IsInUse(code) || (code == ERROR_ACCESS_DENIED && waited >= kReaderPatience)) {
        return {static_cast<int>(code), std::system_category()};
      }
      if (waited >= kLongestLockWait) return std::make_error_code(std::errc::device_or_resource_busy);
      std::this_thread::sleep_for(kLockPollInterval);
    }
  }
};

LockedFile::LockedFile(const WString& file_name) : m_state(std::make_unique<State>()) {
  m_state->target = FinalName(file_name.Str());
  m_state->error = m_state->target.empty() ? LastError() : m_state->Lock();
}

LockedFile::~LockedFile() = default;

std::error_code LockedFile::Error() const { return m_state->error; }

std::error_code LockedFile::Replace(std::string_view bytes) const {
  const std::wstring& target = m_state->target;
  RemoveLeftovers(target);
  std::wstring name;
  FileHandle file(CreateBeside(target, name));
  if (!file.IsOpen()) return LastError();
  const bool written = WriteAll(file.Get(), bytes) && ::FlushFileBuffers(file.Get()) && file.Close();
  if (written && TakePlace(name, target)) return {};
  const std::error_code error = LastError();
  std::ignore = file.Close();
  std::ignore = ::DeleteFileW(name.c_str());
  return error;
}
