// live_figures.cpp
// What is counted of a live run: of a second, and of all of it.
#include "live/live_figures.h"

namespace Kelcam {
namespace {

constexpr double kBytesPerMegabyte = 1e6;

}  // namespace

std::uint64_t LiveFigures::Failures() const {
  std::uint64_t sum = 0;
  for (const auto& [code, count] : failures) sum += count;
  return sum;
}

double LiveFigures::FramesPerSecond() const {
  return elapsed > Seconds::zero() ? static_cast<double>(frames) / elapsed.count() : 0.0;
}

std::string LiveFigures::Line() const {
  return Counted(frames, "frame") + " in " + Fixed(elapsed.count(), 1) + " s, " + Rates();
}

std::string LiveFigures::Rates() const {
  std::string text =
      Fixed(FramesPerSecond(), 1) + " frames/s, " + Counted(Failures(), "failure") + CountsByCode(failures);
  if (missing_frame_ids) text += ", " + Counted(*missing_frame_ids, "missing frame id");
  return text + ", stream rate " + Fixed(static_cast<double>(stream_rate_bytes_per_s) / kBytesPerMegabyte, 1) + " MB/s";
}

void LiveFigures::AppendTo(Json& document) const {
  Json by_code = Json::object();
  for (const auto& [code, count] : failures) by_code[std::to_string(code)] = count;
  document["frames"] = frames;
  document["failures"] = Failures();
  document["failuresByCode"] = by_code;
  document["missingFrameIds"] = missing_frame_ids ? Json(*missing_frame_ids) : Json();
  document["seconds"] = elapsed.count();
  document["framesPerSecond"] = FramesPerSecond();
  document["streamBytesPerSecond"] = stream_rate_bytes_per_s;
}

}  // namespace Kelcam
