// wholefile.h
// Files that are read and replaced as a whole.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "wstring.h"

// What is larger is no profile, and a device that never ends is not read until memory does.
constexpr std::size_t kLargestWholeFile = 16U << 20U;

// How long a writer waits for the others. None of them holds the lock for longer than a disk takes for one file.
constexpr std::chrono::milliseconds kLongestLockWait{5000};
constexpr std::chrono::milliseconds kLockPollInterval{5};

// Gives all bytes of the file, or the reason why not. Only regular files are read.
std::error_code ReadWholeFile(const WString& file_name, std::string& bytes);

// Replaces the content of an existing file by what `change` makes of it. Other calls for the file, in any process, wait
// meanwhile, so that none of them loses what another one wrote. A change that changes nothing does not touch the file.
// `change` is called up to twice, each time with what the file holds; what it throws ends the call.
std::error_code ChangeWholeFile(const WString& file_name, const std::function<std::string(std::string)>& change);

// An existing file, its links followed, that nobody else changes as long as the object lives: a lock keeps other
// writers out. The lock ends with the process, however that ends.
class LockedFile {
 public:
  // Waits for other writers up to kLongestLockWait.
  explicit LockedFile(const WString& file_name);
  ~LockedFile();
  LockedFile(const LockedFile&) = delete;
  LockedFile& operator=(const LockedFile&) = delete;

  // Why it could not be locked. Then nothing else may be called.
  std::error_code Error() const;

  // The bytes go to a new file in the same folder, down to the disk, which then takes the old one's name in one step.
  // On failure the old file is what it was. New files that killed writers have left there are removed.
  std::error_code Replace(std::string_view bytes) const;

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

// Whether a file of this name, next to `target`, is one that a writer of the target makes and had no time to remove:
// the target's name, a process and a number.
template <class Letter>
bool IsLeftover(std::basic_string_view<Letter> name, std::basic_string_view<Letter> target) {
  constexpr Letter kEnding[] = {'.', 'n', 'e', 'w'};
  const std::basic_string_view<Letter> ending(kEnding, std::size(kEnding));
  if (name.size() <= target.size() + 1 + ending.size() || name.substr(0, target.size()) != target) return false;
  if (name[target.size()] != '.' || name.substr(name.size() - ending.size()) != ending) return false;
  const auto numbers = name.substr(target.size() + 1, name.size() - ending.size() - target.size() - 1);
  const auto dash = numbers.find(Letter{'-'});
  const auto are_digits = [](std::basic_string_view<Letter> text) {
    for (const Letter letter : text) {
      if (letter < '0' || letter > '9') return false;
    }
    return !text.empty();
  };
  return dash != numbers.npos && are_digits(numbers.substr(0, dash)) && are_digits(numbers.substr(dash + 1));
}
