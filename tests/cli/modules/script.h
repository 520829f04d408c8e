// script.h
// What a test has the scripted module do.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "bmutex.h"

// Words of the form KEY=VALUE[,VALUE]... in the variable KELCAM_TEST_SCRIPT. [any thread]
class Script {
 public:
  Script();

  // The values one after the other, the last again and again; the default where the script has no such key.
  std::string Next(const std::string& key, const std::string& default_value);
  int Next(const std::string& key, int default_value) { return std::stoi(Next(key, std::to_string(default_value))); }

 private:
  struct Values {
    std::vector<std::string> list;
    std::size_t next = 0;
  };
  BMutex m_mutex;
  std::map<std::string, Values> m_values KEL_GUARDED_BY(m_mutex);
};

// A step that does not fail; every other number is the code that it fails with.
inline constexpr const char* kSuccess = "0";

Script& TheScript();
