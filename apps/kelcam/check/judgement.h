// judgement.h
// What a check makes of what it has measured.
#pragma once

#include <string>
#include <vector>

#include "base/failure.h"
#include "check/check_facts.h"

namespace Kelcam {

enum class Verdict { kNotLookedAt, kFine, kLook, kBroken };

// "fine", "look at this", "broken", "not looked at"
const char* NameOf(Verdict verdict);

// Sentences without full stops.
struct Judgement {
  Verdict verdict = Verdict::kNotLookedAt;
  std::string found;  // what was measured; of what was not looked at, why not
  std::string to_do;  // empty where nothing is to be done
  Lines messages;     // what the driver reported of it
};

Judgement Fine(std::string found);
Judgement Look(std::string found, std::string to_do);
Judgement Broken(std::string found, std::string to_do);
Judgement NotLookedAt(std::string why);
// With the fault's code, reason, messages and next step; to_do where the fault has none.
Judgement Of(Verdict verdict, const Fault& fault, const std::string& to_do);

// One point of the report.
struct SystemPoint {
  const char* name;
  const char* looks_at;
  Judgement (*judge)(const CheckFacts& facts);
};

struct CameraPoint {
  const char* name;
  const char* looks_at;
  Judgement (*judge)(const CheckFacts& facts, const CameraFacts& camera);
};

}  // namespace Kelcam
