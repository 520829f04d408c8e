// findings.cpp
// What a long test has found, with the run that shows it again; and the line that closes it.
#include "storms/findings.h"

#include <iostream>

namespace {

constexpr int kMostOfOneRun = 5;

}  // namespace

void Findings::BeginRun(const std::string& run, const std::string& again) {
  const BMutexLock lock(m_mutex);
  m_run = run;
  m_again = again;
  m_findings_of_run = 0;
  ++m_runs;
}

void Findings::Report(const std::string& what) {
  const BMutexLock lock(m_mutex);
  if (++m_findings_of_run > kMostOfOneRun) return;
  ++m_findings;
  std::cout << "finding: " << m_run << ": " << what << "\n  again: " << m_again << std::endl;
}

int Findings::PrintEnd() const {
  std::uint64_t runs = 0;
  {
    const BMutexLock lock(m_mutex);
    runs = m_runs;
  }
  return PrintEnd(runs, "runs");
}

int Findings::PrintEnd(std::uint64_t count, const char* unit) const {
  const BMutexLock lock(m_mutex);
  std::cout << m_name << ": " << count << " " << unit << ", " << m_findings << " findings" << std::endl;
  return m_findings == 0 ? 0 : 1;
}

std::string Findings::Run() const {
  const BMutexLock lock(m_mutex);
  return m_run;
}
