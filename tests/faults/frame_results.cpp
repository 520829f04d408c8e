// frame_results.cpp
// What a host may see of a frame that comes otherwise than it should.
#include "frame_results.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "VimbaC.h"
#include "berror.h"
#include "text_pattern.h"

namespace {

using Json = nlohmann::json;

// Of a life alone, by the number of the exposure. Later ones belong to the run without triggers.
constexpr std::array<std::string_view, 9> kSnapOfFrame{"single 1",     "single 2",     "single 3",
                                                       "continuous 1", "continuous 2", "continuous 3",
                                                       "colour 1",     "colour 2",     "colour 3"};

// Frames of a time that the camera's clock will not reach in a run are new, those of its first tick are old.
constexpr std::int64_t kOldTimestamp = 1;

std::string Error(int code) { return "error " + std::to_string(code); }

bool IsAltered(const Json& fault) {
  const std::array members{"buffer", "bufferSize", "context0", "context1"};
  return std::ranges::any_of(members, [&](const char* member) { return fault.contains(member); });
}

// What the snap of this frame ends with; none where it is not certain.
std::optional<std::string> ResultOf(const Json& fault) {
  if (fault.contains("unplugAtFrame") || fault.contains("late") || fault.contains("again")) return std::nullopt;
  if (fault.contains("drop")) return Error(BError::eTimeout);
  if (IsAltered(fault)) return Error(BError::eFrameInvalid);
  switch (fault.value("status", int{VmbFrameStatusComplete})) {
    case VmbFrameStatusComplete:
      return fault.value("timestamp", std::int64_t{kOldTimestamp + 1}) <= kOldTimestamp ? Error(BError::eTimeout)
                                                                                        : "ok";
    case VmbFrameStatusIncomplete:
      return Error(BError::eAcquisitionFailed);
    case VmbFrameStatusTooSmall:
      return Error(BError::eFrameTooSmall);
    default:
      return Error(BError::eFrameInvalid);
  }
}

// Frames that come as well as the one that was asked for may be the ones that a snap gets.
constexpr std::string_view kOfOthers =
    "*.snap=error 12103*|*.snap=error 12106|*.snap=error 12108|*.snap=error 12110|bandwidth*=*";

}  // namespace

bool MayFollowFromFrame(std::string_view text, const Fault& fault) {
  const Json json = Json::parse(fault.frame.empty() ? fault.late : fault.frame);
  // A frame that says another format is read as one of that format, where that is copied.
  if (json.contains("pixelFormat") && FitsOneOf("*.picture=torn|*.picture=untouched", text)) return true;
  const std::optional<std::string> result = ResultOf(json);
  if (!result) return FitsOneOf(kOfOthers, text);
  return FitsOneOf("bandwidth*=*|*.snap=" + *result, text);
}

void CheckSnapOfFrame(const Observations& seen, const Case& test, Findings& findings) {
  if (test.kind != LifeKind::kAlone || test.faults.size() != 1 || test.faults.front().frame.empty()) return;
  const Json fault = Json::parse(test.faults.front().frame);
  const auto number = fault.value("frame", kSnapOfFrame.size());
  const std::optional<std::string> result = ResultOf(fault);
  if (number >= kSnapOfFrame.size() || !result) return;
  const std::string name = std::string(kSnapOfFrame[number]) + ".snap";
  const auto snap = std::ranges::find(seen, name, &Observation::name);
  if (snap == seen.end() || snap->value == *result) return;
  findings.push_back(name + " is " + snap->value + " where it has to be " + *result);
}
