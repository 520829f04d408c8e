// image_points.cpp
// The points of a check that are about a camera's images.
#include <algorithm>
#include <numeric>
#include <utility>

#include "base/report.h"
#include "check/camera_points.h"
#include "check/intervals.h"

namespace Kelcam {
namespace {

// More failures than this are no accident.
constexpr double kWorstShareOfFailures = 0.1;
constexpr double kLeastShareOfRate = 0.9;
// An image takes exposure and transfer; what comes on top is conversion, and a driver that looks every 10 ms.
constexpr double kMostTimesNeeded = 3.0;
constexpr double kConversionMilliseconds = 200.0;
constexpr double kMillisecondsPerSecond = 1000.0;
constexpr double kPercent = 100.0;

constexpr const char* kReceiveMore = "raise the receive buffer (above), and end programs that keep the computer busy";

std::string Milliseconds0(double time_ms) { return Fixed(time_ms, 0) + " ms"; }

// Of one byte for each pixel, which no format goes below.
double TransferOf(const DeviceFacts& device) {
  if (device.stream_bytes_per_s <= 0) return 0.0;
  return static_cast<double>(device.width) * static_cast<double>(device.height) /
         static_cast<double>(device.stream_bytes_per_s) * kMillisecondsPerSecond;
}

double NeededFor(const DeviceFacts& device) { return device.exposure_ms.value_or(0.0) + TransferOf(device); }

// The most frequent fault says what is to be done.
void Explain(const FaultsByCode& faults, Judgement& judgement) {
  const auto most = std::max_element(faults.begin(), faults.end(),
                                     [](const auto& a, const auto& b) { return a.second.count < b.second.count; });
  if (most == faults.end()) return;
  Judgement explained = Of(judgement.verdict, most->second.fault, judgement.to_do);
  judgement.found += ". " + explained.found;
  judgement.messages = std::move(explained.messages);
  judgement.to_do = std::move(explained.to_do);
}

Verdict VerdictOf(std::uint64_t failures, std::uint64_t all) {
  if (failures == 0) return Verdict::kFine;
  const double share = static_cast<double>(failures) / static_cast<double>(all);
  return share > kWorstShareOfFailures ? Verdict::kBroken : Verdict::kLook;
}

std::string TimesOf(const std::vector<Milliseconds>& times) {
  const double sum = std::accumulate(times.begin(), times.end(), 0.0,
                                     [](double before, Milliseconds time) { return before + time.count(); });
  return "the first good one took " + Milliseconds0(times.front().count()) + ", all " +
         Milliseconds0(sum / static_cast<double>(times.size())) + " in the mean, " +
         Milliseconds0(std::min_element(times.begin(), times.end())->count()) + " at least, " +
         Milliseconds0(std::max_element(times.begin(), times.end())->count()) + " at most";
}

Judgement JudgeSnaps(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.snaps || camera.snaps->figures.Snaps() == 0) return NotLookedAt(WhyUnknown(facts, camera));
  const SnapFacts& snaps = *camera.snaps;
  const std::uint64_t all = snaps.figures.Snaps();
  const std::uint64_t failed = all - snaps.times.size();
  Judgement judgement{
      VerdictOf(failed, all), std::to_string(snaps.times.size()) + " of " + Counted(all, "image") + " taken", {}, {}};
  if (snaps.was_ended) judgement.found += ", ended after failures in a row";
  if (!snaps.times.empty()) judgement.found += "; " + TimesOf(snaps.times);
  if (failed > 0) {
    judgement.to_do = "take more images and keep the messages: kelcam --log FILE snap";
    Explain(snaps.faults, judgement);
    return judgement;
  }
  const double needed_ms = camera.device ? NeededFor(*camera.device) : 0.0;
  const double best_ms = std::min_element(snaps.times.begin(), snaps.times.end())->count();
  if (needed_ms <= 0.0 || best_ms <= needed_ms * kMostTimesNeeded + kConversionMilliseconds) return judgement;
  return Look(judgement.found + "; exposure and transfer explain " + Milliseconds0(needed_ms),
              "see how fast the camera answers, above; a larger binning or a smaller area of interest is read faster");
}

std::string WhyNoRun(const CheckFacts& facts, const CameraFacts& camera) {
  const bool cannot_run = camera.device && !camera.device->has_trigger && camera.stuck.empty();
  return cannot_run ? "the driver has no free running for a camera without an input line" : WhyUnknown(facts, camera);
}

Judgement JudgeRun(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.run) return NotLookedAt(WhyNoRun(facts, camera));
  const RunFacts& run = *camera.run;
  const std::uint64_t failures = run.figures.Failures();
  Judgement judgement{VerdictOf(failures, failures + run.figures.frames), run.figures.Line(), {}, {}};
  if (failures > 0) {
    judgement.to_do = "watch it for longer: kelcam live";
    Explain(run.faults, judgement);
  }
  if (run.loss) {
    judgement = Broken(run.loss->text + ". " + judgement.found, "check the camera's power and cable");
  } else if (run.figures.frames == 0 && failures == 0) {
    return NotLookedAt(facts.was_interrupted ? WhyUnknown(facts, camera) : "no image was due in this time");
  }
  return judgement;
}

Judgement JudgeRate(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.device) return NotLookedAt(WhyUnknown(facts, camera));
  const DeviceFacts& device = *camera.device;
  const bool has_run = camera.run && camera.run->figures.frames > 1;
  if (!has_run) return NotLookedAt(camera.run ? "too few images came" : WhyNoRun(facts, camera));
  const double rate_hz = camera.run->figures.FramesPerSecond();
  const double transfer_ms = TransferOf(device);
  std::string found = Fixed(rate_hz, 1) + " images/s";
  if (device.rate_hz) found += ", the camera reports " + Fixed(*device.rate_hz, 1) + " as the most";
  if (device.exposure_ms && transfer_ms > 0.0) {
    found += "; exposure " + Fixed(*device.exposure_ms, 1) + " ms, transfer " + Fixed(transfer_ms, 1) + " ms";
  }
  if (device.rate_hz && *device.rate_hz > 0.0 && rate_hz < *device.rate_hz * kLeastShareOfRate) {
    return Look(found,
                "see the failures and the gaps; a busy computer or another camera on the link slows it down, too");
  }
  if (device.exposure_ms && transfer_ms > 0.0 && *device.exposure_ms > transfer_ms) {
    found += ": the exposure limits the rate";
  }
  if (!device.rate_hz) return NotLookedAt("the camera does not report its highest rate; " + found);
  return Fine(found);
}

Judgement JudgeIntervals(const CheckFacts& facts, const CameraFacts& camera) {
  const std::optional<Intervals> intervals =
      camera.run ? IntervalsOf(camera.run->arrivals, camera.ticks_per_s) : std::optional<Intervals>();
  if (!intervals) return NotLookedAt(camera.run ? "too few images came" : WhyNoRun(facts, camera));
  const std::uint64_t missing = camera.run->figures.missing_frame_ids.value_or(0);
  const std::string found = Fixed(intervals->mean_ms, 1) + " ms from image to image in the mean, " +
                            Fixed(intervals->least_ms, 1) + " at least, " + Fixed(intervals->most_ms, 1) +
                            " at most, " + Counted(intervals->gaps, "gap") + ", " +
                            Counted(missing, "missing frame id") +
                            (intervals->by_camera_clock ? " (by the camera's clock)" : " (as they arrived)");
  if (missing > 0) {
    return Look(found,
                "frames were lost on the way, or no buffer was free: see packet size, receive buffer and packets");
  }
  if (intervals->gaps == 0) return Fine(found);
  if (intervals->by_camera_clock) {
    return Look(found, "the camera itself paused: an incomplete frame leaves a gap, too; see the failures of the run");
  }
  return Look(found, "the computer was late, or the camera paused; end other programs and check again");
}

Judgement JudgePackets(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.was_asked) return NotLookedAt(WhyUnknown(facts, camera));
  const bool is_simulated = facts.system.library && facts.system.library->is_simulated;
  std::string found;
  bool is_bad = false;
  if (camera.packets && camera.packets->received > 0) {
    const PacketCounters& packets = *camera.packets;
    const double all = static_cast<double>(packets.received + packets.missed);
    found = std::to_string(packets.received) + " received, " + std::to_string(packets.missed) + " missed (" +
            Fixed(static_cast<double>(packets.missed) / all * kPercent, 3) + " %)";
    if (packets.resent) found += ", " + std::to_string(*packets.resent) + " sent again";
    if (packets.frames_dropped)
      found += ", " + Counted(static_cast<std::uint64_t>(*packets.frames_dropped), "frame") + " dropped";
    is_bad = packets.missed > 0;
  }
  const bool knows_system = !is_simulated && camera.run && camera.run->dropped_by_system;
  if (knows_system) {
    found += (found.empty() ? "" : "; ") + std::string("the system threw away ") +
             Counted(*camera.run->dropped_by_system, "packet") + " of all programs during the run";
    is_bad = is_bad || *camera.run->dropped_by_system > 0;
  }
  if (found.empty()) return NotLookedAt("the library keeps no counters of packets when the camera is closed");
  if (!is_bad) return Fine(found);
  if (knows_system && *camera.run->dropped_by_system > 0) return Look(found, kReceiveMore);
  return Look(found, "set a lower BYTEPERSECOND in the profile, use jumbo frames, or look at cable and switch");
}

Judgement JudgeCalls(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.stuck.empty()) {
    return Broken("a call of the driver does not return: it waits for " + camera.stuck,
                  "switch the camera off and on, and check again");
  }
  if (!camera.device) return NotLookedAt(WhyUnknown(facts, camera));
  return Fine("every call of the driver returned");
}

constexpr CameraPoint kPoints[] = {
    {"single images", "twenty images, each with its start and stop, and how long they take", JudgeSnaps},
    {"run", "a continuous run: images, failures, missing frame ids", JudgeRun},
    {"frame rate", "the rate of the run against what camera, exposure and transfer allow", JudgeRate},
    {"intervals", "the time from one frame of the run to the next", JudgeIntervals},
    {"packets", "what library and system count of lost packets", JudgePackets},
    {"calls", "whether every call of the driver returns", JudgeCalls},
};

}  // namespace

std::span<const CameraPoint> ImagePoints() { return kPoints; }

}  // namespace Kelcam
