// regularfile.cpp
// What a file is that is not a regular one, as an error.
#include "regularfile.h"

#include <string>

namespace {

class KindCategory : public std::error_category {
 public:
  const char* name() const noexcept override { return "file kind"; }
  std::string message(int kind) const override { return std::string(NameOf(kind)) + ", not a regular file"; }

 private:
  static const char* NameOf(int kind) {
    switch (static_cast<FileKind>(kind)) {
      case FileKind::kPipe:
        return "it is a pipe (FIFO)";
      case FileKind::kDevice:
        return "it is a device";
      case FileKind::kSocket:
        return "it is a socket";
      default:
        return "it is something else";
    }
  }
};

}  // namespace

std::error_code ErrorOfKind(FileKind kind) {
  static const KindCategory kCategory;
  if (kind == FileKind::kRegular) return {};
  if (kind == FileKind::kFolder) return std::make_error_code(std::errc::is_a_directory);
  return {static_cast<int>(kind), kCategory};
}
