// set_up_points.cpp
// The points of a check that are about setting up a camera.
#include <algorithm>
#include <cstdlib>
#include <numeric>

#include "base/report.h"
#include "check/camera_points.h"
#include "check/clock_course.h"

namespace Kelcam {
namespace {

constexpr Milliseconds kLongestOpening{5000};
// A camera next to the computer answers within about a millisecond.
constexpr double kLongestAnswerMilliseconds = 10.0;
// Jumbo frames carry 9000 bytes; not everything between camera and computer carries all of them.
constexpr std::int64_t kSmallestJumboPacket = 8000;
constexpr std::int64_t kGigabitBitsPerSecond = 1'000'000'000;
constexpr double kBitsPerMegabit = 1e6;
constexpr double kBitsPerByte = 8.0;
// Chips of the commercial grade are made for up to this temperature inside.
constexpr double kHottestCelsius = 85.0;

constexpr const char* kPacketSize = "GVSPPacketSize = ";
constexpr const char* kPixelFormat = "PixelFormat = ";
// A camera without binning is an ordinary one.
constexpr const char* kNoBinning = "Binning";
constexpr const char* kUnconvertedFormat = "RGB";

constexpr const char* kSwitchOff = "switch the camera off and on";

// What follows the text in the line that begins with it; empty: there is none.
std::string ValueIn(const Lines& lines, std::string_view text) {
  const auto line = std::find_if(lines.rbegin(), lines.rend(),
                                 [&](const std::string& candidate) { return candidate.starts_with(text); });
  return line == lines.rend() ? std::string() : line->substr(text.size());
}

Judgement JudgeProfile(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.has_profile) return NotLookedAt("the camera was not named by a profile (--profile)");
  if (camera.profile_fault)
    return Of(Verdict::kBroken, *camera.profile_fault, "look at the file's name, and whether you may read it");
  if (!camera.findings) return NotLookedAt(WhyUnknown(facts, camera));
  if (camera.findings->empty()) return Fine("every key and value in it can be used");
  Judgement judgement = Look(Counted(camera.findings->size(), "line") + " of it cannot be used as written",
                             "correct them: kelcam profile check names the nearest key");
  for (const ProfileFinding& finding : *camera.findings) judgement.messages.push_back(finding.Sentence("the profile"));
  return judgement;
}

Judgement JudgeOpening(const CheckFacts& facts, const CameraFacts& camera) {
  if (camera.opening_fault) {
    return Of(Verdict::kBroken, *camera.opening_fault,
              "compare the camera's name with kelcam list --long; see the driver's messages: kelcam -v info");
  }
  if (!camera.opening) return NotLookedAt(WhyUnknown(facts, camera));
  const std::string found = "opened in " + Fixed(camera.opening->count(), 0) + " ms";
  Lines failures;
  for (const std::string& line : camera.opening_lines) {
    if (Contains(line, " failed") && !line.starts_with(kNoBinning)) failures.push_back(line);
  }
  if (!failures.empty()) {
    Judgement judgement = Look(found + ", with failures on the way",
                               "read the messages; a camera that opens at a later try was held by another program");
    judgement.messages = Condensed(failures);
    return judgement;
  }
  if (*camera.opening <= kLongestOpening) return Fine(found);
  return Look(found + ", which is long", "see how fast the camera answers, below");
}

Judgement JudgeFormat(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.device) return NotLookedAt(WhyUnknown(facts, camera));
  const std::string format = ValueIn(camera.opening_lines, kPixelFormat);
  std::string found = std::to_string(camera.device->width) + " x " + std::to_string(camera.device->height) + ", " +
                      (format.empty() ? "format not reported" : format) +
                      (camera.device->is_color ? ", colour" : ", monochrome");
  if (camera.sensor_type) found += ", sensor " + Printable(*camera.sensor_type);
  if (camera.color_format == kUnconvertedFormat && camera.device->is_color) {
    return Look(found + "; COLORCODEcolor = RGB asks for a format that the driver does not convert",
                "remove COLORCODEcolor from the profile, or set it to YUV");
  }
  if (format.empty()) return Look(found, "see the messages of the opening: kelcam -v check");
  return Fine(found);
}

Judgement JudgeAnswers(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.device || camera.device->answers.empty()) return NotLookedAt(WhyUnknown(facts, camera));
  std::vector<Milliseconds> answers = camera.device->answers;
  std::sort(answers.begin(), answers.end());
  const double median_ms = answers[answers.size() / 2].count();
  const std::string found = "the camera answers in " + Fixed(median_ms, 2) + " ms, at the latest in " +
                            Fixed(answers.back().count(), 2) + " ms (" + Counted(answers.size(), "question") + ")";
  if (median_ms <= kLongestAnswerMilliseconds) return Fine(found);
  return Look(found, "connect the camera without a switch and check again; a camera alone answers in about 1 ms");
}

Judgement JudgePacketSize(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.device) return NotLookedAt(WhyUnknown(facts, camera));
  const std::string text = ValueIn(camera.opening_lines, kPacketSize);
  if (text.empty()) return NotLookedAt("the camera does not report GVSPPacketSize");
  const std::int64_t size = std::strtoll(text.c_str(), nullptr, 10);
  std::string found = "packets of " + std::to_string(size) + " bytes";
  const bool is_simulated = facts.system.library && facts.system.library->is_simulated;
  const std::optional<std::int64_t> mtu =
      camera.route && !is_simulated ? camera.route->mtu_bytes : std::optional<std::int64_t>();
  const std::string adapter = mtu && !camera.route->adapter.empty() ? camera.route->adapter : "the adapter";
  if (mtu) found += ", " + adapter + " takes up to " + std::to_string(*mtu) + " (MTU)";
  if (mtu && size > *mtu) {
    return Broken(found + ": none of them arrives whole",
                  "set an MTU of 9000 at the adapter, or a smaller packet size at the camera");
  }
  if (size >= kSmallestJumboPacket) return Fine(found);
  if (mtu && *mtu >= kSmallestJumboPacket) {
    return Look(found + ": the camera or a switch on the way carries no jumbo frames",
                "enable jumbo frames in the switch, or connect the camera without one");
  }
  return Look(found + ": jumbo frames are off, so pictures cost more processor time",
              "set an MTU of 9000 at the adapter, and enable jumbo frames in the switch");
}

Judgement JudgeRoute(const Route& route, const CameraFacts& camera) {
  std::string found = route.adapter.empty() ? "an adapter without a name" : Printable(route.adapter);
  if (route.link_bits_per_s) {
    found += ", " + Fixed(static_cast<double>(*route.link_bits_per_s) / kBitsPerMegabit, 0) + " Mbit/s";
  } else {
    found += ", speed not reported";
  }
  if (route.is_in_subnet == false) {
    return Look(found + ", and the camera's address is in no subnet of it",
                "give adapter and camera addresses of one subnet");
  }
  if (!route.link_bits_per_s) return Fine(found);
  if (*route.link_bits_per_s < kGigabitBitsPerSecond) {
    return Look(found + ": a GigE camera needs 1000", "look at cable and plugs, and at the ports of the switch");
  }
  const double rate_bits_per_s =
      camera.device ? static_cast<double>(camera.device->stream_bytes_per_s) * kBitsPerByte : 0.0;
  if (rate_bits_per_s <= static_cast<double>(*route.link_bits_per_s)) return Fine(found);
  return Look(found + ", less than the stream rate", "set a lower BYTEPERSECOND in the profile");
}

Judgement JudgeNetwork(const CheckFacts& facts, const CameraFacts& camera) {
  if (facts.system.library && facts.system.library->is_simulated)
    return NotLookedAt("a simulated camera is on no network");
  if (!camera.was_asked) return NotLookedAt(WhyUnknown(facts, camera));
  if (!camera.row || !camera.row->address) return NotLookedAt("the camera does not report its address");
  if (!camera.route) return NotLookedAt("the system does not say by which adapter packets go to the camera");
  return JudgeRoute(*camera.route, camera);
}

Judgement JudgeTrigger(const CheckFacts& facts, const CameraFacts& camera) {
  if (!camera.device) return NotLookedAt(WhyUnknown(facts, camera));
  const std::string line = camera.device->has_trigger
                               ? "; input line and free running are there. Whether a signal arrives was not looked at"
                               : "";
  const bool has_snapped = camera.snaps && !camera.snaps->times.empty();
  const bool has_run = camera.run && camera.run->figures.frames > 0;
  if (!has_snapped && has_run) {
    return Broken("the software trigger starts no image, and the camera delivers them when it runs free",
                  std::string(kSwitchOff) + "; if it stays so, the camera does not take TriggerSoftware");
  }
  if (!camera.device->has_trigger) {
    return Look("the camera has no input line Line2, so the driver has neither an external trigger nor free running",
                "take single images: kelcam snap --mode single");
  }
  if (!has_snapped) return NotLookedAt(camera.snaps ? "no image came, whoever started it" : WhyUnknown(facts, camera));
  return Fine("the software trigger starts images" + line);
}

Judgement JudgeClock(const CheckFacts& facts, const CameraFacts& camera) {
  const std::optional<ClockCourse> course = CourseOf(camera.clock, camera.ticks_per_s);
  if (!course) return NotLookedAt(WhyUnknown(facts, camera));
  const std::string span = Fixed(course->camera_seconds.value_or(0.0), 2) + " s while the computer's counts " +
                           Fixed(course->seconds, 2) + " s";
  const std::string repair = std::string(kSwitchOff) + "; if it stays so, look for a newer firmware";
  switch (course->kind) {
    case ClockCourse::kUnread:
      return Broken("the clock cannot be read, so the driver refuses every frame",
                    std::string(kSwitchOff) + "; if it stays so, the camera lacks the features of the clock");
    case ClockCourse::kStands:
      return Broken("the clock stands: the driver cannot tell new frames from old ones", repair);
    case ClockCourse::kGoesBack:
      return Broken("the clock goes back: the driver takes frames for old ones, and refuses them", repair);
    case ClockCourse::kJumps:
      return Look("the clock jumps by " + Fixed(course->worst_jump_s, 2) + " s: frame times cannot be compared",
                  repair);
    case ClockCourse::kGoesWrong:
      return Look("the clock counts " + span, repair);
    case ClockCourse::kGoes:
      break;
  }
  if (!course->camera_seconds) return Fine("the clock goes; the camera does not report how fast");
  return Fine("the clock counts " + span);
}

std::string TemperatureText(const char* where, const std::optional<double>& cold, const std::optional<double>& warm) {
  if (!warm) return {};
  std::string text = std::string(where) + " " + Fixed(*warm, 1) + " °C";
  if (cold && *cold != *warm) text += " (" + Fixed(*cold, 1) + " at the beginning)";
  return text;
}

Judgement JudgeTemperature(const CheckFacts& facts, const CameraFacts& camera) {
  const std::optional<Temperatures>& last = camera.warm ? camera.warm : camera.cold;
  if (!last) return NotLookedAt(WhyUnknown(facts, camera));
  if (!last->sensor && !last->board) return NotLookedAt("the camera reports no temperature");
  const std::string sensor = TemperatureText("sensor", camera.cold->sensor, last->sensor);
  const std::string board = TemperatureText("main board", camera.cold->board, last->board);
  const std::string found = sensor + (sensor.empty() || board.empty() ? "" : ", ") + board;
  if (std::max(last->sensor.value_or(0.0), last->board.value_or(0.0)) > kHottestCelsius) {
    return Look(found + ": above 85 °C, for which ordinary chips are made",
                "cool the camera: mount it on metal; compare with the limits in its data sheet");
  }
  return Fine(found +
              "; below 85 °C, for which ordinary chips are made. The camera's own limits are in its data sheet");
}

constexpr CameraPoint kPoints[] = {
    {"profile", "whether every line of the profile can be used", JudgeProfile},
    {"opening", "whether the driver opens the camera and sets it up, and how long that takes", JudgeOpening},
    {"format", "size and pixel format, and whether the driver converts what the profile asks for", JudgeFormat},
    {"answers", "how long the camera takes to answer a question", JudgeAnswers},
    {"packet size", "the size of the camera's packets against the network's largest (MTU)", JudgePacketSize},
    {"network", "the adapter by which packets reach the camera, its speed and its subnet", JudgeNetwork},
    {"trigger", "whether the software trigger starts images, and whether there is an input line", JudgeTrigger},
    {"clock", "whether the camera's clock goes as the computer's does", JudgeClock},
    {"temperature", "the temperatures of sensor and main board, before and after the images", JudgeTemperature},
};

}  // namespace

std::string WhyUnknown(const CheckFacts& facts, const CameraFacts& camera) {
  if (camera.opening_fault) return "the camera is not open";
  if (!camera.stuck.empty()) return "a call of the driver before it does not return";
  if (camera.run && camera.run->loss) return "the camera does not answer any more";
  if (facts.was_interrupted) return "the check was stopped before";
  return "the camera does not report it";
}

std::span<const CameraPoint> SetUpPoints() { return kPoints; }

}  // namespace Kelcam
