// refusing_disk_windows.cpp
// Somebody holds the file open and does not let go of it.
#include <windows.h>

#include <system_error>

#include "refusing_disk.h"
#include "wstring.h"

RefusingDisk::RefusingDisk(const std::filesystem::path& file)
    : m_reason(ToWString(std::system_category().message(ERROR_ACCESS_DENIED)).Str()),
      m_hold(::CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr),
             ::CloseHandle) {}
