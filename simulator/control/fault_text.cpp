// control/fault_text.cpp
// Faults and frame members as JSON.
#include "control/fault_text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <utility>

#include "control/configuration.h"
#include "library/value_text.h"

namespace Simulator {

using VimbaLibrary::ValueText;
namespace {

constexpr std::chrono::milliseconds kMaxDelay = std::chrono::minutes(10);

// Members by which the kinds of faults are recognised.
constexpr char kCallMember[] = "call";
constexpr char kFrameMember[] = "frame";
constexpr char kUnplugMember[] = "unplugAtFrame";
// What an unplugging has to have anything come back.
constexpr char kReplugMember[] = "plugAfter_ms";

// In place of a function's name.
constexpr char kAnyCall[] = "any";

// The calls that can have faults: all of the API that can fail.
constexpr std::array<std::string_view, 27> kCalls{"VmbVersionQuery",
                                                  "VmbStartup",
                                                  "VmbCamerasList",
                                                  "VmbCameraInfoQuery",
                                                  "VmbCameraOpen",
                                                  "VmbCameraClose",
                                                  "VmbFeatureIntGet",
                                                  "VmbFeatureIntSet",
                                                  "VmbFeatureIntRangeQuery",
                                                  "VmbFeatureFloatGet",
                                                  "VmbFeatureFloatSet",
                                                  "VmbFeatureFloatRangeQuery",
                                                  "VmbFeatureEnumGet",
                                                  "VmbFeatureEnumSet",
                                                  "VmbFeatureEnumAsInt",
                                                  "VmbFeatureStringGet",
                                                  "VmbFeatureStringMaxlengthQuery",
                                                  "VmbFeatureBoolGet",
                                                  "VmbFeatureCommandRun",
                                                  "VmbFeatureCommandIsDone",
                                                  "VmbFeatureInvalidationRegister",
                                                  "VmbFrameAnnounce",
                                                  "VmbFrameRevokeAll",
                                                  "VmbCaptureStart",
                                                  "VmbCaptureEnd",
                                                  "VmbCaptureFrameQueue",
                                                  "VmbCaptureQueueFlush"};

void ReadFrameMembers(JsonMembers& members, FrameOverride& frame) {
  members.Integer("status", frame.status);
  members.Integer("flags", frame.flags);
  members.Integer("imageSize", frame.image_size);
  members.Integer("ancillarySize", frame.ancillary_size);
  members.Integer("pixelFormat", frame.pixel_format);
  members.Integer("width", frame.width);
  members.Integer("height", frame.height);
  members.Integer("offsetX", frame.offset_x);
  members.Integer("offsetY", frame.offset_y);
  members.Integer("frameID", frame.frame_id);
  members.Integer("timestamp", frame.timestamp);
  members.Integer("bufferSize", frame.buffer_size);
  members.Integer("context0", frame.context0);
  members.Integer("context1", frame.context1);
  if (const Json* shift = members.Any("buffer"); shift && shift->is_null()) {
    frame.buffer_null = true;
  } else {
    members.Integer("buffer", frame.buffer_shift);
  }
  members.Integer("again", frame.again, 0);
}

void ReadDelay(JsonMembers& members, std::chrono::milliseconds& delay) {
  std::int64_t delay_ms = 0;
  if (members.Integer("delay_ms", delay_ms, 0, kMaxDelay.count())) delay = std::chrono::milliseconds(delay_ms);
}

constexpr char kAnswerMember[] = "answer";
constexpr char kUntouched[] = "untouched";

AnswerValue ReadAnswerValue(const JsonMembers& members, const Json& value) {
  if (value.is_null()) return nullptr;
  if (value.is_boolean()) return std::int64_t{value.get<bool>()};
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (value.is_number()) return value.get<double>();
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_object() || !value.empty()) members.Refuse(kAnswerMember, "has a value that is no result");
  return AsItIs{};
}

void ReadAnswer(JsonMembers& members, std::shared_ptr<const Answer>& answer) {
  const Json* text = members.Any(kAnswerMember);
  if (!text) return;
  auto read = std::make_shared<Answer>();
  read->untouched = *text == kUntouched;
  if (!read->untouched) {
    if (!text->is_array()) members.Refuse(kAnswerMember, "is neither untouched nor an array");
    for (const Json& value : *text) read->values.push_back(ReadAnswerValue(members, value));
  }
  answer = std::move(read);
}

CallFault ReadCallFault(JsonMembers& members) {
  CallFault fault;
  members.Text(kCallMember, fault.pattern.call);
  if (fault.pattern.call == kAnyCall) {
    fault.pattern.call.clear();
  } else if (std::find(kCalls.begin(), kCalls.end(), fault.pattern.call) == kCalls.end()) {
    members.Refuse(kCallMember, "is no call that can fail");
  }
  members.Text("camera", fault.pattern.camera);
  members.Text("feature", fault.pattern.feature);
  if (const Json* value = members.Any("value")) {
    if (!value->is_string() && !value->is_number()) members.Refuse("value", "is neither text nor number");
    fault.pattern.value = value->is_string()           ? value->get<std::string>()
                          : value->is_number_integer() ? ValueText(value->get<std::int64_t>())
                                                       : ValueText(value->get<double>());
  }
  members.Integer("occurrence", fault.occurrence, 1);
  members.Integer("count", fault.count, 0);
  members.Integer("error", fault.error);
  members.Flag("effect", fault.effective);
  bool done = false;
  if (members.Flag("done", done)) fault.done = done;
  ReadAnswer(members, fault.answer);
  ReadDelay(members, fault.delay);
  return fault;
}

void ReadReplug(JsonMembers& members, FrameOverride& frame) {
  Replug replug;
  std::int64_t after_ms = 0;
  if (!members.Integer(kReplugMember, after_ms, 0, kMaxDelay.count())) return;
  replug.after = std::chrono::milliseconds(after_ms);
  members.Text("plug", replug.camera);
  frame.replug = std::move(replug);
}

FrameFault ReadFrameFault(JsonMembers& members) {
  FrameFault fault;
  members.Text("camera", fault.camera);
  fault.effect.unplug = members.Integer(kUnplugMember, fault.frame, 0);
  members.Integer("every", fault.every, 1);
  members.Integer("count", fault.count, 0);
  if (fault.effect.unplug) {
    ReadReplug(members, fault.effect);
    return fault;
  }
  members.Integer(kFrameMember, fault.frame, 0);
  ReadFrameMembers(members, fault.effect);
  members.Flag("drop", fault.effect.drop);
  ReadDelay(members, fault.effect.delay);
  return fault;
}

}  // namespace

void ReadFault(JsonMembers& members, Faults::Set& faults) {
  if (members.Any(kCallMember)) {
    faults.calls.push_back(ReadCallFault(members));
  } else if (members.Any(kFrameMember) || members.Any(kUnplugMember)) {
    faults.frames.push_back(ReadFrameFault(members));
  } else {
    throw std::invalid_argument(members.PathOf(kCallMember) + ": a fault needs one of call, frame and unplugAtFrame");
  }
}

Faults::Set ParseFaults(std::string_view json) {
  Json text = ParseJson(json);
  if (!text.is_array()) text = Json::array({std::move(text)});
  const Json outer{{"faults", std::move(text)}};
  Faults::Set faults;
  JsonMembers(outer, "").Objects("faults", [&](JsonMembers& fault) { ReadFault(fault, faults); });
  return faults;
}

FrameOverride ParseFrameOverride(std::string_view json) {
  const Json text = ParseJson(json);
  JsonMembers members(text, "");
  FrameOverride frame;
  ReadFrameMembers(members, frame);
  members.RefuseOthers();
  if (frame.timestamp && *frame.timestamp == 0) frame.timestamp.reset();
  return frame;
}

}  // namespace Simulator
