// simulator_fuzz.cpp
// Configurations and faults of the simulated cameras of any text: refused with a reason, or a short life works with
// them.
#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "fuzz/fuzz_input.h"
#include "support/simulator_text.h"
#include "vimba_simulator.h"

namespace {

using Fuzz::Expect;
using nlohmann::json;

constexpr double kLongestWaitMs = 2.0;
constexpr std::uint32_t kIdleTimeoutMs = 10000;
constexpr VmbInt64_t kLargestPayloadBytes = 1 << 14;
constexpr VmbUint32_t kMostCameras = 8;
constexpr std::size_t kFrames = 3;

void ExpectAnswer(int result) { Expect(result == 0 || *VimbaSimLastError() != '\0', "what is refused has a reason"); }

// The same, but quick: waits are short, and the clock of exposures is not real.
void Hasten(json& value) {
  if (!value.is_structured()) return;
  for (auto& [name, member] : value.items()) {
    if (value.is_object() && (name == "delay_ms" || name == "adjust_ms") && member.is_number()) {
      member = std::clamp(member.get<double>(), -1.0, kLongestWaitMs);
    } else if (value.is_object() && name == "timing") {
      member = "instant";
    } else {
      Hasten(member);
    }
  }
}

// Null where the text is no JSON.
json Hastened(const std::string& text) {
  json value = json::parse(text, nullptr, false);
  if (value.is_discarded()) return nullptr;
  Hasten(value);
  return value;
}

// Waits could be of hours: what is believed is the hastened text. Gives whether it was taken.
bool Configure(const std::string& text) {
  ExpectAnswer(VimbaSimConfigure(text.c_str()));
  json value = Hastened(text);
  if (!value.is_object()) return false;
  if (!value.contains("timing")) value["timing"] = "instant";
  // Charts, which take most of the time to draw, only where they are asked for.
  if (value["cameras"].is_array()) {
    for (json& camera : value["cameras"]) {
      if (camera.is_object() && !camera.contains("scene")) camera["scene"] = "none";
    }
  } else if (value["cameras"].is_null()) {
    value.erase("cameras");
  }
  const int result = VimbaSimConfigure(value.dump(-1, ' ', false, json::error_handler_t::replace).c_str());
  ExpectAnswer(result);
  return result == 0;
}

void AddFaults(const std::string& text) {
  const json value = Hastened(text);
  const std::string quick = value.is_null() ? text : value.dump(-1, ' ', false, json::error_handler_t::replace);
  ExpectAnswer(VimbaSimAddFaults(quick.c_str()));
}

void GiveBack(VmbHandle_t camera, VmbFrame_t* frame) { std::ignore = VmbCaptureFrameQueue(camera, frame, GiveBack); }

void Acquire(VmbHandle_t camera, VmbInt64_t payload_bytes) {
  std::vector<std::vector<std::uint8_t>> buffers(kFrames, std::vector<std::uint8_t>(std::size_t(payload_bytes)));
  std::vector<VmbFrame_t> frames(kFrames);
  std::ignore = VmbCaptureStart(camera);
  for (std::size_t i = 0; i < kFrames; ++i) {
    frames[i] = {};
    frames[i].buffer = buffers[i].data();
    frames[i].bufferSize = static_cast<VmbUint32_t>(payload_bytes);
    std::ignore = VmbFrameAnnounce(camera, &frames[i], sizeof(VmbFrame_t));
    std::ignore = VmbCaptureFrameQueue(camera, &frames[i], i == 0 ? nullptr : GiveBack);
  }
  std::ignore = VmbFeatureEnumSet(camera, "AcquisitionMode", "SingleFrame");
  std::ignore = VmbFeatureCommandRun(camera, "AcquisitionStart");
  std::ignore = VmbFeatureCommandRun(camera, "TriggerSoftware");
  VmbBool_t done = 0;
  std::ignore = VmbFeatureCommandIsDone(camera, "AcquisitionStart", &done);
  Expect(VimbaSimWaitIdle(kIdleTimeoutMs) == 0, "with instant timing the cameras come to rest");
  std::ignore = VmbFeatureCommandRun(camera, "AcquisitionStop");
  std::ignore = VmbCaptureEnd(camera);
  std::ignore = VmbCaptureQueueFlush(camera);
  std::ignore = VmbFrameRevokeAll(camera);
}

void Live() {
  if (VmbStartup() != VmbErrorSuccess) return;
  std::vector<VmbCameraInfo_t> cameras(kMostCameras);
  VmbUint32_t found = 0;
  std::ignore = VmbCamerasList(cameras.data(), kMostCameras, &found, sizeof(VmbCameraInfo_t));
  for (VmbUint32_t i = 0; i < std::min(found, kMostCameras); ++i) {
    VmbHandle_t camera = nullptr;
    if (VmbCameraOpen(cameras[i].cameraIdString, VmbAccessModeFull, &camera) != VmbErrorSuccess) continue;
    VmbInt64_t payload_bytes = 0;
    const VmbError_t code = VmbFeatureIntGet(camera, "PayloadSize", &payload_bytes);
    if (code == VmbErrorSuccess && payload_bytes > 0 && payload_bytes <= kLargestPayloadBytes) {
      Acquire(camera, payload_bytes);
    }
    VimbaSimClearFaults();
    Expect(VmbCameraClose(camera) == VmbErrorSuccess, "an open camera can be closed");
  }
  VmbShutdown();
}

}  // namespace

// A configuration, faults, and what a frame that is delivered out of turn says, each up to a separator.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const std::string configuration = input.Text();
  const std::string faults = input.Text();
  const std::string frame = input.Rest();
  if (!Configure(configuration)) Expect(VimbaSimConfigure("{\"timing\":\"instant\"}") == 0, "the built-in cameras do");
  AddFaults(faults);
  ExpectAnswer(VimbaSimDeliverFrame("DEV_000F31034C65", frame.c_str()));
  Live();
  Expect(json::accept(SimulatorText(VimbaSimState)), "the state is JSON");
  return 0;
}
