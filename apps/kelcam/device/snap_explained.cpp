// snap_explained.cpp
// Why an image failed, and what to do next.
#include "device/snap_explained.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/report.h"

namespace Kelcam {
namespace {

using Evidence = SnapEvidence;

constexpr std::string_view kNoClock = "Current camera timestamp = 18446744073709551615";
constexpr std::string_view kRefusedFrame = "Invalid timestamp ";
constexpr std::size_t kLinesShown = 4;

// What the driver's lines say of a step that failed.
constexpr std::string_view kFailures[] = {kFailedFrame,
                                          kRefusedFrame,
                                          kNoClock,
                                          "Frame record is not as announced",
                                          "Frame is in hand already",
                                          "VmbCaptureFrameQueue failed",
                                          " -> -",
                                          " returns -"};

bool IsFailure(std::string_view line) {
  return std::any_of(std::begin(kFailures), std::end(kFailures), [&](auto part) { return Contains(line, part); });
}

bool IsGone(const Evidence& evidence) { return evidence.camera_is_gone; }
bool DoesNotStart(const Evidence& evidence) {
  return AnyContains(evidence.lines, "Set feature AcquisitionMode = Continuous -> -") ||
         AnyContains(evidence.lines, "Set feature AcquisitionMode = SingleFrame -> -") ||
         AnyContains(evidence.lines, "Command AcquisitionStart -> -");
}
bool DoesNotStop(const Evidence& evidence) { return AnyContains(evidence.lines, "AcquisitionStop returns -"); }
bool LosesBuffers(const Evidence& evidence) { return Contains(evidence.text, "ReQueueFrame failed"); }
bool LacksMemory(const Evidence& evidence) {
  return Contains(evidence.text, "out of memory") || Contains(evidence.text, "no thread");
}
// The one that comes without a text.
bool IsIncomplete(const Evidence& evidence) { return !Contains(evidence.text, ": "); }
bool HasNoClock(const Evidence& evidence) { return !evidence.has_clock; }
bool RefusesFrames(const Evidence& evidence) { return AnyContains(evidence.lines, kRefusedFrame); }
bool IsTooShort(const Evidence& evidence) { return evidence.needed > evidence.timeout; }
bool WaitsForLine(const Evidence& evidence) { return evidence.trigger == TriggerChoice::kLine; }
bool WasFired(const Evidence& evidence) { return evidence.trigger == TriggerChoice::kSoftware; }
bool CannotRunFree(const Evidence& evidence) { return !evidence.has_trigger; }
bool IsRecordAltered(const Evidence& evidence) {
  return AnyContains(evidence.lines, "Frame record is not as announced") ||
         AnyContains(evidence.lines, "Frame is in hand already");
}
bool Always(const Evidence& /*evidence*/) { return true; }

struct SnapCause {
  int code;
  bool (*holds)(const Evidence&);
  const char* why;
  const char* to_do;
};

// The first one of the error's code that holds is the cause. docs/troubleshooting.md shows the same sentences, row by
// row.
constexpr SnapCause kSnapCauses[] = {
    {BError::eAcquisitionFailed, IsGone, "the camera does not answer any more",
     "check its power and cable, then start again"},
    {BError::eAcquisitionFailed, DoesNotStart, "the camera does not take the command to start",
     "try again; if it fails again, switch the camera off and on"},
    {BError::eAcquisitionFailed, DoesNotStop, "the camera does not take the command to stop",
     "try again; if it fails again, switch the camera off and on"},
    {BError::eAcquisitionFailed, LosesBuffers, "the library does not take a buffer for frames back",
     "start again: until then the camera has one buffer less"},
    {BError::eAcquisitionFailed, IsIncomplete,
     "the frame is incomplete: at least one of its packets is lost. The stream rate was <rate>",
     "set a lower BYTEPERSECOND in the profile, make cameras on one link partners, or use jumbo frames"},
    {BError::eAcquisitionFailed, LacksMemory, "the computer is short of memory or threads",
     "end other programs, or set a smaller area of interest"},
    {BError::eTimeout, IsGone, "the camera does not answer any more", "check its power and cable, then start again"},
    {BError::eTimeout, HasNoClock, "the camera's clock could not be read, so the driver refuses every frame",
     "switch the camera off and on; if it fails again, it lacks the features of the clock (GevTimestamp...)"},
    {BError::eTimeout, RefusesFrames,
     "frames came (<refused>) and were refused: they are older than the start of the snap",
     "try again: they are of a run before. If it fails again, switch the camera off and on"},
    {BError::eTimeout, IsTooShort, "exposure and transfer take at least <needed>, the time-out is <timeout>",
     "set a longer --timeout or a shorter exposure"},
    {BError::eTimeout, WaitsForLine, "no frame came in <timeout>: no trigger reached the camera's input line",
     "check the signal and TRIGGERPOLARITY in the profile, or use --trigger software"},
    {BError::eTimeout, WasFired, "the trigger was fired and no frame came in <timeout>",
     "check cable, switch and firewall: commands pass to the camera, and packets of frames do not come back"},
    {BError::eTimeout, CannotRunFree,
     "the camera has no input line Line2, so the driver has no free running for it: it waits for single images",
     "take single images: kelcam snap --mode single"},
    {BError::eTimeout, Always, "the camera runs free and no frame came in <timeout>",
     "check cable, switch and firewall: commands pass to the camera, and packets of frames do not come back"},
    {BError::eFrameTooSmall, Always, "the frame does not fit the buffers, which are announced for the raw format",
     "use the raw format (--color off, or no COLORCODEcolor in the profile)"},
    {BError::eAborted, Always, "a bandwidth partner lost a frame, and this camera probably lost one, too",
     "try again: the stream rates are lower now"},
    {BError::eFrameInvalid, IsRecordAltered, "the library has changed the record of the frame",
     "report it to the library's vendor"},
    {BError::eFrameInvalid, Always, "the library marks the frame as invalid",
     "try again; if it fails again, switch the camera off and on"},
};

std::string Filled(std::string text, const Evidence& evidence) {
  const std::size_t refused = CountContaining(evidence.lines, kRefusedFrame);
  const std::pair<std::string_view, std::string> values[] = {
      {"<rate>", Fixed(static_cast<double>(evidence.rate_bytes_per_s) / 1e6, 1) + " MB/s"},
      {"<refused>", std::to_string(refused)},
      {"<needed>", std::to_string(evidence.needed.count()) + " ms"},
      {"<timeout>", std::to_string(evidence.timeout.count()) + " ms"}};
  for (const auto& [name, value] : values) {
    if (const std::size_t at = text.find(name); at != std::string::npos) text.replace(at, name.size(), value);
  }
  return text;
}

}  // namespace

bool HasClock(const Lines& lines_of_start) { return !AnyContains(lines_of_start, kNoClock); }

Reason ExplainSnap(const SnapEvidence& evidence) {
  Reason reason;
  if (evidence.lines.empty()) return reason;
  Lines failures;
  std::copy_if(evidence.lines.begin(), evidence.lines.end(), std::back_inserter(failures), IsFailure);
  reason.messages = Condensed(failures);
  const std::size_t hidden = reason.messages.size() - std::min(reason.messages.size(), kLinesShown);
  reason.messages.erase(reason.messages.begin(), reason.messages.begin() + static_cast<std::ptrdiff_t>(hidden));
  const auto* const cause = std::find_if(
      std::begin(kSnapCauses), std::end(kSnapCauses),
      [&](const SnapCause& candidate) { return candidate.code == evidence.code && candidate.holds(evidence); });
  if (cause == std::end(kSnapCauses)) return reason;
  reason.why = Filled(cause->why, evidence);
  reason.to_do = cause->to_do;
  return reason;
}

}  // namespace Kelcam
