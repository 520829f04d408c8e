// picture_file.cpp
// Where the bytes of a picture go.
#include "picture/picture_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "base/failure.h"
#include "base/utf8.h"

namespace Kelcam {
namespace {

std::string CannotBeWritten(const std::filesystem::path& file) {
  return "the picture " + Utf8(file) + " cannot be written: ";
}

[[noreturn]] void FailBecauseItExists(const std::filesystem::path& file) {
  throw Failure(CannotBeWritten(file) + "there is a file of this name (--no-clobber)");
}

// Removed unless it gets its final name: a picture appears under that name only when it is whole.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(const std::filesystem::path& final_name) : m_final_name(final_name), m_name(final_name) {
    m_name += ".unfinished";
  }
  ~UnfinishedFile() {
    std::error_code ignored;
    if (!m_finished) std::filesystem::remove(m_name, ignored);
  }
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  void Write(const std::vector<std::uint8_t>& bytes) {
    errno = 0;
    std::ofstream file(m_name, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw Failure(CannotBeWritten(m_final_name) + std::strerror(errno));
  }

  void TakeFinalName(ExistingFile existing) {
    std::error_code error;
    if (existing == ExistingFile::kStays) {
      // A second name is refused where there is one already; a new one in place of the old is not.
      std::filesystem::create_hard_link(m_name, m_final_name, error);
      if (!error) return;
      // Some file systems have no second names.
      CheckIsNew(m_final_name);
    }
    std::filesystem::rename(m_name, m_final_name, error);
    if (error) throw Failure(CannotBeWritten(m_final_name) + error.message());
    m_finished = true;
  }

 private:
  std::filesystem::path m_final_name;
  std::filesystem::path m_name;
  bool m_finished = false;
};

}  // namespace

void CheckFolder(const std::filesystem::path& file) {
  const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) {
    throw Failure(CannotBeWritten(file) + "there is no folder " + Utf8(folder));
  }
}

void CheckIsNew(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::exists(std::filesystem::symlink_status(file, error))) FailBecauseItExists(file);
}

void WritePictureFile(const std::filesystem::path& file, const std::vector<std::uint8_t>& bytes,
                      ExistingFile existing) {
  UnfinishedFile unfinished(file);
  unfinished.Write(bytes);
  unfinished.TakeFinalName(existing);
}

void WriteToStandardOutput(const std::vector<std::uint8_t>& bytes) {
  std::cout.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!std::cout.flush()) throw Failure("the picture could not be written to standard output");
}

}  // namespace Kelcam
