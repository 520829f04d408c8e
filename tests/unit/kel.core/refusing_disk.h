// refusing_disk.h
// A disk on which a file cannot be replaced.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

// While it lives, replacing the file fails in the middle of it, for a reason of the system's own, whoever runs the
// test.
class RefusingDisk {
 public:
  explicit RefusingDisk(const std::filesystem::path& file);
  RefusingDisk(const RefusingDisk&) = delete;
  RefusingDisk& operator=(const RefusingDisk&) = delete;

  const std::wstring& Reason() const { return m_reason; }

 private:
  std::wstring m_reason;
  std::shared_ptr<void> m_hold;  // the system's own; letting go of it ends the refusal
};
