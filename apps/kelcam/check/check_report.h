// check_report.h
// The report of a check: as a text for people, and as a document for programs.
#pragma once

#include <string>
#include <vector>

#include "base/report.h"
#include "check/judgement.h"
#include "check/masking.h"

namespace Kelcam {

struct JudgedPoint {
  const char* name;
  const char* looks_at;
  Judgement judgement;
};

class CheckReport {
 public:
  // Judges the facts. What is printed is masked.
  CheckReport(const CheckFacts& facts, Masking masking);

  // The worst of all points.
  Verdict Worst() const { return m_worst; }
  // "broken (1 broken, 2 to look at, 20 fine, 3 not looked at)"
  std::string Sum() const;

  // At most 80 characters a line, as far as words allow it.
  std::string Text() const;
  Json Document() const;

 private:
  struct Camera {
    const CameraFacts* facts;
    std::vector<JudgedPoint> points;
  };

  JudgedPoint Masked(const char* name, const char* looks_at, Judgement judgement) const;
  // A line of the head: what a value is of, and the value.
  std::string Fact(const std::string& name, const std::string& value) const;
  void Count(const std::vector<JudgedPoint>& points);

  const CheckFacts m_facts;
  const Masking m_masking;
  std::vector<JudgedPoint> m_system;
  std::vector<Camera> m_cameras;
  std::size_t m_counts[4] = {};  // by verdict
  Verdict m_worst = Verdict::kNotLookedAt;
};

}  // namespace Kelcam
