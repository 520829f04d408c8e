// live_figures.h
// What is counted of a live run: of a second, and of all of it.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "base/report.h"

namespace Kelcam {

struct LiveFigures {
  using Seconds = std::chrono::duration<double>;

  std::uint64_t frames = 0;
  std::map<int, std::uint64_t> failures;           // by code
  std::optional<std::uint64_t> missing_frame_ids;  // none: the ids are not known
  Seconds elapsed{0.0};                            // the time in which this was counted
  std::int64_t stream_rate_bytes_per_s = 0;

  std::uint64_t Failures() const;
  double FramesPerSecond() const;

  // "60 frames in 3.0 s, " and the rates.
  std::string Line() const;
  // "20.0 frames/s, 2 failures (12103: 2), 1 missing frame id, stream rate 45.0 MB/s"
  std::string Rates() const;
  // The members that a second and the total have in common, appended to a document.
  void AppendTo(Json& document) const;
};

}  // namespace Kelcam
