// camera_actions.cpp
// What pages may change of a camera.
#include "view/camera_actions.h"

#include <algorithm>
#include <functional>
#include <iterator>

#include "base/failure.h"
#include "view/cameras/camera_description.h"
#include "view/request_values.h"

namespace Kelcam {
namespace {

using Work = CommandQueue::Work;

int StatusOf(CommandOutcome::Kind kind) {
  switch (kind) {
    case CommandOutcome::Kind::kDone:
      return Http::kOk;
    case CommandOutcome::Kind::kRefused:
      return Http::kBadRequest;
    case CommandOutcome::Kind::kTooLate:
      return Http::kTooLate;
    case CommandOutcome::Kind::kNotThere:
    case CommandOutcome::Kind::kBusy:
      return Http::kUnavailable;
    default:
      return Http::kConflict;
  }
}

HttpAnswer AnswerOf(const CommandOutcome& outcome) {
  const int status = StatusOf(outcome.kind);
  return outcome.kind == CommandOutcome::Kind::kDone ? JsonAnswer(outcome.result)
                                                     : ErrorAnswer(status, outcome.sentence);
}

Work SetWork(const Json& body, ViewCamera&) {
  const std::string name = TextIn(body, "control");
  const std::string value = TextIn(body, "value");
  return [name, value](ViewedCamera& camera) -> Json {
    camera.Set(ParseControlSetting(name + "=" + value));
    CameraState state;
    camera.Describe(state);
    const auto found = std::find_if(state.controls.begin(), state.controls.end(),
                                    [&](const ControlState& control) { return control.name == name; });
    return {{"value_text", found == state.controls.end() ? value : found->value_text}};
  };
}

Work ColorWork(const Json& body, ViewCamera&) {
  return [on = SwitchIn(body, "color")](ViewedCamera& camera) -> Json {
    camera.SetColor(on);
    return {{"color", on}};
  };
}

Work AreaWork(const Json& body, ViewCamera&) {
  return [text = TextIn(body, "area")](ViewedCamera& camera) -> Json {
    camera.SetArea(text);
    return {{"area", text}};
  };
}

Work TriggerWork(const Json& body, ViewCamera&) {
  return [name = TextIn(body, "trigger")](ViewedCamera& camera) -> Json {
    camera.SetTrigger(TriggerOf(name));
    return {{"trigger", name}};
  };
}

Work RateWork(const Json& body, ViewCamera&) {
  return [rate_bytes_per_s = NumberIn(body, "bytes_per_s")](ViewedCamera& camera) -> Json {
    camera.SetRate(rate_bytes_per_s);
    return {{"bytes_per_s", rate_bytes_per_s}};
  };
}

Work RunWork(const Json& body, ViewCamera&) {
  return [on = SwitchIn(body, "run")](ViewedCamera& camera) -> Json {
    camera.SetRunning(on);
    return {{"run", on}};
  };
}

Work ShotWork(const Json&, ViewCamera& camera) {
  return [&camera](ViewedCamera&) -> Json { return {{"frame", camera.thread.TakeShot()}}; };
}

struct Action {
  const char* name;
  Work (*work)(const Json& body, ViewCamera& camera);
};
constexpr Action kActions[] = {{"set", SetWork},   {"color", ColorWork}, {"area", AreaWork}, {"trigger", TriggerWork},
                               {"rate", RateWork}, {"run", RunWork},     {"shot", ShotWork}};
// The one that is not the camera's thread's.
constexpr const char* kSharpness = "sharpness";

const Action* Find(const std::string& name) {
  const auto* const found =
      std::find_if(std::begin(kActions), std::end(kActions), [&](const Action& action) { return name == action.name; });
  return found == std::end(kActions) ? nullptr : found;
}

}  // namespace

bool IsAction(const std::string& name) { return name == kSharpness || Find(name); }

void RunAction(const std::string& name, const std::shared_ptr<HttpExchange>& exchange, ViewCamera& camera) {
  const Json body = BodyOf(exchange->Request());
  if (name == kSharpness) {
    camera.desk.SetSharpnessArea(AreaIn(body, "area"));
    return exchange->Answer(JsonAnswer({{"area", body["area"]}}));
  }
  camera.thread.Commands().Push(Find(name)->work(body, camera),
                                [exchange](const CommandOutcome& outcome) { exchange->Answer(AnswerOf(outcome)); });
}

}  // namespace Kelcam
