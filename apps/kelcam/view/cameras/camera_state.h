// camera_state.h
// What a page shows of a camera.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/report.h"
#include "bsize.h"

namespace Kelcam {

enum class Condition { kOpening, kRunning, kStopped, kLost };

// A control in the unit in which it can be set: its value with the unit behind it is a text of --set.
struct ControlState {
  std::string name;   // as --set has it
  std::string label;  // for people
  std::string unit;
  double minimum = 0.0;
  double maximum = 0.0;
  double step = 1.0;
  double value = 0.0;
  std::string value_text = {};
  bool is_logarithmic = false;
};

struct StreamRateState {
  std::int64_t value_bytes_per_s = 0;
  std::int64_t minimum_bytes_per_s = 0;
  std::int64_t maximum_bytes_per_s = 0;
};

struct CameraState {
  std::size_t index = 0;
  std::string title;       // as the command line has it
  std::string identifier;  // empty: it has not been opened yet
  Condition condition = Condition::kOpening;
  std::chrono::system_clock::time_point since;
  std::optional<Fault> problem;
  BSize size;
  bool has_color = false;
  bool is_color = false;
  std::string area;
  std::string trigger;
  std::vector<std::string> triggers;
  std::vector<ControlState> controls;
  StreamRateState rate;
};

struct Temperature {
  std::string name;
  double celsius = 0.0;
};

struct CameraFigures {
  std::uint64_t frames = 0;
  std::map<int, std::uint64_t> failures;  // by code
  std::optional<std::uint64_t> missing_frame_ids;
  double frames_per_s = 0.0;
  std::int64_t stream_rate_bytes_per_s = 0;
  std::vector<Temperature> temperatures;
};

Json ToJson(const CameraState& state);
Json ToJson(const CameraFigures& figures, std::size_t camera);
// {sentence, why, to_do, code}
Json ProblemOf(const Fault& fault);

}  // namespace Kelcam
