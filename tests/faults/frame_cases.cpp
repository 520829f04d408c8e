// frame_cases.cpp
// The cases of the frame sweep.
#include "frame_cases.h"

#include <array>
#include <climits>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "VimbaC.h"
#include "call_keys.h"
#include "support/simulated_cameras.h"

namespace {

using Json = nlohmann::ordered_json;

// Those of a life that are triggered one by one.
constexpr int kFrames = 9;
constexpr std::int64_t kLastTime = INT64_MAX;
constexpr std::int64_t kMostSize = UINT32_MAX;

Fault OfFrame(int number, const Json& members) {
  Json json{{"camera", SimulatedCamera::kId}, {"frame", number}};
  json.update(members);
  return {.frame = json.dump()};
}

void AddEverywhere(const Json& members, std::vector<Case>& cases) {
  for (const LifeKind kind : {LifeKind::kAlone, LifeKind::kWithPartner}) {
    for (int frame = 0; frame < kFrames; ++frame) cases.push_back({kind, {OfFrame(frame, members)}});
  }
}

void AddRecords(std::vector<Case>& cases) {
  for (const int status : {0, -1, -2, -3, -4, 7, INT_MIN}) {
    AddEverywhere({{"status", status}}, cases);
    constexpr int kAllFlags = 15;
    for (int flags = 0; flags <= kAllFlags; ++flags) {
      cases.push_back({LifeKind::kAlone, {OfFrame(flags % kFrames, {{"status", status}, {"flags", flags}})}});
    }
  }
  for (const std::int64_t size :
       {std::int64_t{0}, std::int64_t{1}, std::int64_t{3071}, std::int64_t{9217}, kMostSize}) {
    AddEverywhere({{"imageSize", size}}, cases);
    AddEverywhere({{"bufferSize", size}}, cases);
    AddEverywhere({{"width", size}, {"height", size}, {"offsetX", size}, {"offsetY", size}}, cases);
  }
  for (const std::int64_t format :
       {std::int64_t{VmbPixelFormatMono8}, std::int64_t{VmbPixelFormatBayerGR8}, std::int64_t{VmbPixelFormatRgb8},
        std::int64_t{VmbPixelFormatYuv422}, std::int64_t{0}, kMostSize}) {
    AddEverywhere({{"pixelFormat", format}}, cases);
  }
  for (const std::int64_t time : {std::int64_t{0}, std::int64_t{1}, kLastTime}) {
    AddEverywhere({{"timestamp", time}}, cases);
  }
  AddEverywhere({{"frameID", kLastTime}}, cases);
}

void AddAlteredAndRepeated(std::vector<Case>& cases) {
  constexpr std::array kContexts{std::int64_t{0}, std::int64_t{1}, kLastTime};
  for (const std::int64_t context : kContexts) {
    AddEverywhere({{"context0", context}}, cases);
    // Its number when it was queued, which is small.
    AddEverywhere({{"context1", kLastTime - context / 2}}, cases);
    AddEverywhere({{"context0", context}, {"again", 2}}, cases);
  }
  for (const Json& buffer : {Json(nullptr), Json(1), Json(-16), Json(kLastTime)}) {
    AddEverywhere({{"buffer", buffer}}, cases);
  }
  for (const int again : {1, 2, 12}) {
    AddEverywhere({{"again", again}}, cases);
    AddEverywhere({{"again", again}, {"status", VmbFrameStatusIncomplete}}, cases);
  }
  for (int frame = 0; frame < kFrames; ++frame) {
    const Json unplug{{"camera", SimulatedCamera::kId}, {"unplugAtFrame", frame}};
    cases.push_back({LifeKind::kAlone, {{.frame = unplug.dump()}}});
    cases.push_back({LifeKind::kWithPartner, {{.frame = unplug.dump()}}});
  }
  AddEverywhere({{"drop", true}}, cases);
  AddEverywhere({{"delay_ms", 15}}, cases);
}

void AddLate(std::vector<Case>& cases) {
  constexpr std::array kOperations{"single 1.start",   "single 1.snap",     "single 1.stop",   "single 2.start",
                                   "continuous.start", "continuous 2.snap", "continuous.stop", "trigger.line",
                                   "colour.on",        "colour 1.snap",     "bandwidth.set",   "discovery",
                                   "release"};
  const std::array<Json, 9> overrides{Json::object(),
                                      {{"status", VmbFrameStatusIncomplete}},
                                      {{"status", VmbFrameStatusInvalid}},
                                      {{"timestamp", 1}},
                                      {{"timestamp", kLastTime}},
                                      {{"timestamp", "start"}},
                                      {{"timestamp", "start-1"}},
                                      {{"bufferSize", 1}},
                                      {{"again", 3}}};
  for (const char* operation : kOperations) {
    for (const bool during : {false, true}) {
      for (const Json& members : overrides) {
        Json late{{"late", operation}, {"during", during}};
        late.update(members);
        cases.push_back({LifeKind::kAlone, {{.late = late.dump()}}});
        cases.push_back({LifeKind::kWithPartner, {{.late = late.dump()}}});
      }
    }
  }
}

// The ring loses a frame with each.
void AddFailedQueueings(std::vector<Case>& cases) {
  constexpr std::int64_t kRing = 10;
  constexpr std::int64_t kQueueings = 30;
  for (std::int64_t first = kRing + 1; first <= kQueueings; ++first) {
    const CallKey key{"VmbCaptureFrameQueue", SimulatedCamera::kId, "", first};
    const Fault lasting{.key = key, .error = VmbErrorInvalidCall, .lasting = true};
    for (const LifeKind kind : {LifeKind::kAlone, LifeKind::kWithPartner}) cases.push_back({kind, {lasting}});
    for (const char* operation : {"single 2.snap", "continuous 2.snap", "release"}) {
      const Json burst{{"late", operation}, {"during", true}};
      cases.push_back({LifeKind::kAlone, {lasting, {.late = burst.dump()}}});
    }
    std::vector<Fault> several;
    for (std::int64_t next = first; next < first + kRing; next += 2) {
      several.push_back({.key = {key.call, key.camera, "", next}, .error = VmbErrorOther});
    }
    cases.push_back({LifeKind::kAlone, several});
  }
}

}  // namespace

std::vector<Case> FrameCases() {
  std::vector<Case> cases;
  AddRecords(cases);
  AddAlteredAndRepeated(cases);
  AddLate(cases);
  AddFailedQueueings(cases);
  return cases;
}
