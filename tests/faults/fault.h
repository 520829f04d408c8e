// fault.h
// One fault of a case, in the simulator's terms.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "call_lines.h"
#include "cameras_under_test.h"

// A call of a life: the how manieth of its function, camera and feature it is. So numbered, a call keeps its number
// when workers run beside it.
struct CallKey {
  std::string call{};
  std::string camera{};
  std::string feature{};
  std::int64_t occurrence = 1;

  bool Matches(const CallLine& line) const;
};

struct Fault {
  CallKey key{};
  int error = 0;
  // The call has its effect all the same.
  bool effective = false;
  // Every call from this one on, whichever it is.
  bool lasting = false;
  // What the call answers in place of the truth: JSON, or empty.
  std::string answer{};
  // Not of a call but of a frame, or a frame that comes when it should not: JSON as VimbaSimAddFaults or LateFrames
  // takes it, or empty.
  std::string frame{};
  std::string late{};

  bool IsOfCall() const { return frame.empty() && late.empty(); }
  // As --case takes it.
  std::string Json() const;
  static std::vector<Fault> Parse(const std::string& json);
  // The first call of the record that it has hit; the number of calls where it has hit none.
  std::size_t FirstHit(const std::vector<CallLine>& calls) const;
};

struct Case {
  LifeKind kind = LifeKind::kAlone;
  std::vector<Fault> faults;

  // One word and the faults: what --case takes.
  std::string Text() const;
  static Case Parse(const std::string& text);
};
