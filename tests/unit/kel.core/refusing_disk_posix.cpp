// refusing_disk_posix.cpp
// The process may write no file beyond its first byte: the second one fails.
#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <system_error>

#include "refusing_disk.h"
#include "wstring.h"

namespace {

class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, SIG_DFL);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit m_before{};
};

}  // namespace

RefusingDisk::RefusingDisk(const std::filesystem::path&)
    : m_reason(ToWString(std::generic_category().message(EFBIG)).Str()), m_hold(std::make_shared<FileSizeLimit>(1)) {}
