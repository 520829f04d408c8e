// wholefile_windows.cpp
// Whole files on Windows, where names are wide.
#include <windows.h>

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

#include "wholefile.h"

namespace {

std::error_code LastError() { return {static_cast<int>(::GetLastError()), std::system_category()}; }

class FileHandle {
 public:
  explicit FileHandle(HANDLE handle) : m_handle(handle) {}
  ~FileHandle() { Close(); }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  HANDLE Get() const { return m_handle; }
  bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
  bool Close() {
    const HANDLE handle = std::exchange(m_handle, INVALID_HANDLE_VALUE);
    return handle == INVALID_HANDLE_VALUE || ::CloseHandle(handle);
  }

 private:
  HANDLE m_handle;
};

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

}  // namespace

std::error_code ReadWholeFile(const WString& file_name, std::string& bytes) {
  const FileHandle file(OpenForReading(file_name.Str()));
  if (!file.IsOpen()) return LastError();
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

std::error_code ReplaceWholeFile(const WString& file_name, std::string_view bytes) {
  const std::wstring target = FinalName(file_name.Str());
  if (target.empty()) return LastError();
  std::wstring name;
  FileHandle file(CreateBeside(target, name));
  if (!file.IsOpen()) return LastError();
  const bool written = WriteAll(file.Get(), bytes) && ::FlushFileBuffers(file.Get()) && file.Close();
  if (written && ::MoveFileExW(name.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    return {};
  }
  const std::error_code error = LastError();
  std::ignore = file.Close();
  std::ignore = ::DeleteFileW(name.c_str());
  return error;
}
