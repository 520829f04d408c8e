// findings.h
// What a long test has found, with the run that shows it again; and the line that closes it.
#pragma once

#include <cstdint>
#include <string>

#include "bmutex.h"

// [any thread]
class Findings {
 public:
  // `name` begins the closing line: "storms".
  explicit Findings(std::string name) : m_name(std::move(name)) {}
  Findings(const Findings&) = delete;
  Findings& operator=(const Findings&) = delete;

  // A run begins; `again` is the command that repeats it.
  void BeginRun(const std::string& run, const std::string& again);
  // Prints it at once. Of one run the first few are printed and counted.
  void Report(const std::string& what);
  // "storms: 12 runs, 0 findings". Returns the program's exit code.
  int PrintEnd() const;
  int PrintEnd(std::uint64_t count, const char* unit) const;

  std::string Run() const;

 private:
  const std::string m_name;
  mutable BMutex m_mutex;
  std::string m_run KEL_GUARDED_BY(m_mutex);
  std::string m_again KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_runs KEL_GUARDED_BY(m_mutex) = 0;
  std::uint64_t m_findings KEL_GUARDED_BY(m_mutex) = 0;
  int m_findings_of_run KEL_GUARDED_BY(m_mutex) = 0;
};
