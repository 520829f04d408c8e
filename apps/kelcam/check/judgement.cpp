// judgement.cpp
// What a check makes of what it has measured.
#include "check/judgement.h"

#include <utility>

namespace Kelcam {

const char* NameOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::kNotLookedAt:
      return "not looked at";
    case Verdict::kFine:
      return "fine";
    case Verdict::kLook:
      return "look at this";
    case Verdict::kBroken:
      return "broken";
  }
  return "";
}

Judgement Fine(std::string found) { return {Verdict::kFine, std::move(found), {}, {}}; }

Judgement Look(std::string found, std::string to_do) {
  return {Verdict::kLook, std::move(found), std::move(to_do), {}};
}

Judgement Broken(std::string found, std::string to_do) {
  return {Verdict::kBroken, std::move(found), std::move(to_do), {}};
}

Judgement NotLookedAt(std::string why) { return {Verdict::kNotLookedAt, std::move(why), {}, {}}; }

Judgement Of(Verdict verdict, const Fault& fault, const std::string& to_do) {
  std::string found =
      fault.code == Fault::kNoCode ? fault.text : "error " + std::to_string(fault.code) + ": " + fault.text;
  if (!fault.reason.why.empty()) found += "; " + fault.reason.why;
  return {verdict, std::move(found), fault.reason.to_do.empty() ? to_do : fault.reason.to_do, fault.reason.messages};
}

}  // namespace Kelcam
