// wholefile.cpp
// How a file is changed that others may change at the same time.
#include "wholefile.h"

std::error_code ChangeWholeFile(const WString& file_name, const std::function<std::string(std::string)>& change) {
  // What needs no writing needs no lock: also a write-protected file holds what it holds already.
  std::string before;
  if (const std::error_code error = ReadWholeFile(file_name, before)) return error;
  if (change(before) == before) return {};
  const LockedFile file(file_name);
  if (file.Error()) return file.Error();
  if (const std::error_code error = ReadWholeFile(file_name, before)) return error;
  const std::string after = change(before);
  return after == before ? std::error_code() : file.Replace(after);
}
