// control/fault_text.cpp
// Faults and frame members as JSON.
#include "control/fault_text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "camera/value_text.h"
#include "control/configuration.h"

namespace Simulator {
namespace {

constexpr std::chrono::milliseconds kMaxDelay = std::chrono::minutes(10);

// Members by which the kinds of faults are recognised.
constexpr char kCallMember[] = "call";
constexpr char kFrameMember[] = "frame";
constexpr char kUnplugMember[] = "unplugAtFrame";

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
}

void ReadDelay(JsonMembers& members, std::chrono::milliseconds& delay) {
  std::int64_t delay_ms = 0;
  if (members.Integer("delay_ms", delay_ms, 0, kMaxDelay.count())) delay = std::chrono::milliseconds(delay_ms);
}

CallFault ReadCallFault(JsonMembers& members) {
  CallFault fault;
  members.Text(kCallMember, fault.pattern.call);
  if (std::find(kCalls.begin(), kCalls.end(), fault.pattern.call) == kCalls.end()) {
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
  bool done = false;
  if (members.Flag("done", done)) fault.done = done;
  ReadDelay(members, fault.delay);
  return fault;
}

FrameFault ReadFrameFault(JsonMembers& members) {
  FrameFault fault;
  members.Text("camera", fault.camera);
  fault.effect.unplug = members.Integer(kUnplugMember, fault.frame, 0);
  if (fault.effect.unplug) return fault;
  members.Integer(kFrameMember, fault.frame, 0);
  members.Integer("count", fault.count, 0);
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
