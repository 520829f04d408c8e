// camera_state.cpp
// What a page shows of a camera.
#include "view/cameras/camera_state.h"

#include "picture/image_time.h"

namespace Kelcam {
namespace {

const char* NameOf(Condition condition) {
  switch (condition) {
    case Condition::kOpening:
      return "opening";
    case Condition::kRunning:
      return "running";
    case Condition::kStopped:
      return "stopped";
    default:
      return "lost";
  }
}

// All controls that the module has can be set, and none of them has an automatic of its own.
Json ToJson(const ControlState& control) {
  return {{"name", control.name},       {"label", control.label},
          {"unit", control.unit},       {"minimum", control.minimum},
          {"maximum", control.maximum}, {"step", control.step},
          {"value", control.value},     {"value_text", control.value_text},
          {"automatic", nullptr},       {"scale", control.is_logarithmic ? "log" : "linear"},
          {"read_only", false}};
}

}  // namespace

Json ProblemOf(const Fault& fault) {
  return {{"sentence", fault.text}, {"why", fault.reason.why}, {"to_do", fault.reason.to_do}, {"code", fault.code}};
}

Json ToJson(const CameraState& state) {
  Json controls = Json::array();
  for (const ControlState& control : state.controls) controls.push_back(ToJson(control));
  return {{"index", state.index},
          {"title", state.title},
          {"identifier", state.identifier},
          {"state", NameOf(state.condition)},
          {"problem", state.problem ? ProblemOf(*state.problem) : Json()},
          {"since", LocalTimeOf(state.since).Extended()},
          {"width", state.size.width},
          {"height", state.size.height},
          {"color", state.is_color},
          {"can_color", state.has_color},
          {"area", state.area},
          {"trigger", state.trigger},
          {"triggers", state.triggers},
          {"controls", controls},
          {"rate",
           {{"value_bytes_per_s", state.rate.value_bytes_per_s},
            {"minimum", state.rate.minimum_bytes_per_s},
            {"maximum", state.rate.maximum_bytes_per_s}}}};
}

Json ToJson(const CameraFigures& figures, std::size_t camera) {
  Json failures = Json::object();
  for (const auto& [code, count] : figures.failures) failures[std::to_string(code)] = count;
  Json temperatures = Json::array();
  for (const Temperature& temperature : figures.temperatures) {
    temperatures.push_back({{"name", temperature.name}, {"celsius", temperature.celsius}});
  }
  return {{"camera", camera},
          {"frames", figures.frames},
          {"failures", failures},
          {"missing_frame_ids", figures.missing_frame_ids ? Json(*figures.missing_frame_ids) : Json()},
          {"frames_per_s", figures.frames_per_s},
          {"stream_rate_bytes_per_s", figures.stream_rate_bytes_per_s},
          {"temperatures", temperatures}};
}

}  // namespace Kelcam
