// api/control_calls.cpp
// The control interface: configuration, faults, plugs and lines, the record of calls.
#include <algorithm>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

#include "bmutex.h"
#include "control/configuration.h"
#include "control/json_members.h"
#include "engine/capture_settings.h"
#include "engine/clock.h"
#include "system/vimba_system.h"
#include "vimba_simulator.h"

namespace {

using Simulator::Camera;
using Simulator::Json;
using Simulator::VimbaSystem;

// One text for each thread. As a thread_local variable it would keep the library loaded while any of its threads lives.
class LastErrors {
 public:
  void Set(std::string text) {
    const BMutexLock lock(m_mutex);
    m_texts[std::this_thread::get_id()] = std::move(text);
  }
  const char* Get() {
    const BMutexLock lock(m_mutex);
    const auto found = m_texts.find(std::this_thread::get_id());
    return found == m_texts.end() ? "" : found->second.c_str();
  }

 private:
  BMutex m_mutex;
  std::map<std::thread::id, std::string> m_texts KEL_GUARDED_BY(m_mutex);
};

LastErrors last_errors;

// What the functions of the interface answer.
constexpr int kSuccess = 0;
constexpr int kFailure = 1;

// Runs the body. An exception becomes a failure and the thread's last error.
template <class Body>
int Control(Body body) {
  try {
    body(VimbaSystem::Instance());
    return kSuccess;
  } catch (const std::exception& error) {
    last_errors.Set(error.what());
    return kFailure;
  }
}

const char* Given(const char* text, const char* what) {
  if (!text) throw std::invalid_argument(std::string(what) + " is null");
  return text;
}

std::shared_ptr<Camera> CameraCalled(VimbaSystem& system, const char* camera_id) {
  system.Prepare();
  auto camera = system.FindCamera(Given(camera_id, "the camera id"));
  if (!camera) throw std::invalid_argument("there is no camera " + std::string(camera_id));
  return camera;
}

std::size_t CopyText(const std::string& text, char* buffer, std::size_t size) {
  if (buffer && size != 0) {
    const std::size_t copied = std::min(size - 1, text.size());
    std::memcpy(buffer, text.data(), copied);
    buffer[copied] = '\0';
  }
  return text.size() + 1;
}

Json StateOf(const VimbaSystem& system, const Camera& camera) {
  const Simulator::Counters& counters = camera.Counted();
  const auto session = system.FullSessionOf(camera);
  const auto frames = session ? session->Frames()->Count() : Simulator::CaptureQueue::Sizes{};
  Json state{{"plugged", camera.Plugged()},        {"openHandles", system.OpenHandles(camera)},
             {"acquiring", camera.Running()},      {"capturing", frames.capturing},
             {"announced", frames.announced},      {"queued", frames.queued},
             {"exposed", counters.exposed.load()}, {"delivered", counters.delivered.load()},
             {"dropped", counters.dropped.load()}, {"lostPackets", counters.packets_lost.load()}};
  state["features"] = camera.FeatureValues();
  return state;
}

}  // namespace

int VimbaSimConfigure(const char* json) {
  return Control([&](VimbaSystem& system) {
    system.Configure(json ? Simulator::ParseConfiguration(json) : Simulator::EnvironmentConfiguration());
  });
}

int VimbaSimAddFaults(const char* json) {
  return Control([&](VimbaSystem& system) {
    // The first configuration would forget them.
    system.Prepare();
    system.FaultSet().Add(Simulator::ParseFaults(Given(json, "the text")));
  });
}

void VimbaSimClearFaults() { VimbaSystem::Instance().FaultSet().Clear(); }

int VimbaSimUnplug(const char* camera_id) {
  return Control([&](VimbaSystem& system) { CameraCalled(system, camera_id)->Unplug(); });
}

int VimbaSimPlug(const char* camera_id) {
  return Control([&](VimbaSystem& system) { CameraCalled(system, camera_id)->Plug(); });
}

int VimbaSimSetLine(const char* camera_id, int line, int level) {
  return Control([&](VimbaSystem& system) {
    const auto camera = CameraCalled(system, camera_id);
    if (line < 1 || line > Simulator::kInputLines) {
      throw std::invalid_argument("line " + std::to_string(line) + " is none of 1 to " +
                                  std::to_string(Simulator::kInputLines));
    }
    if (level != 0 && level != 1) throw std::invalid_argument("level " + std::to_string(level) + " is neither 0 nor 1");
    camera->InputEdge(line, level == 1);
  });
}

int VimbaSimDeliverFrame(const char* camera_id, const char* json) {
  return Control([&](VimbaSystem& system) {
    const auto camera = CameraCalled(system, camera_id);
    const Simulator::FrameOverride frame = Simulator::ParseFrameOverride(json ? json : "{}");
    const auto session = system.FullSessionOf(*camera);
    if (!session || !session->DeliverNow(frame)) {
      throw std::runtime_error("camera " + std::string(camera_id) + " has no frame queued");
    }
  });
}

int VimbaSimWaitIdle(uint32_t timeout_ms) {
  constexpr std::chrono::microseconds kPause{200};
  const auto deadline = Simulator::Clock::now() + std::chrono::milliseconds(timeout_ms);
  const VimbaSystem& system = VimbaSystem::Instance();
  while (!system.Idle()) {
    if (Simulator::Clock::now() >= deadline) return kFailure;
    std::this_thread::sleep_for(kPause);
  }
  return kSuccess;
}

size_t VimbaSimCalls(char* buffer, size_t size) {
  return CopyText(VimbaSystem::Instance().Record().Text(), buffer, size);
}

void VimbaSimClearCalls() { VimbaSystem::Instance().Record().Clear(); }

void VimbaSimRecordCalls(int on) { VimbaSystem::Instance().Record().SetRecording(on != 0); }

uint64_t VimbaSimCallCount() { return VimbaSystem::Instance().Record().Total(); }

size_t VimbaSimState(char* buffer, size_t size) {
  std::string text = "{}";
  std::ignore = Control([&](VimbaSystem& system) {
    system.Prepare();
    Json state{{"started", system.Started()}, {"cameras", Json::object()}};
    for (const auto& camera : system.AllCameras()) {
      state["cameras"][camera->Configuration().id] = StateOf(system, *camera);
    }
    text = state.dump();
  });
  return CopyText(text, buffer, size);
}

uint64_t VimbaSimExposed(const char* camera_id) {
  const auto camera = camera_id ? VimbaSystem::Instance().FindCamera(camera_id) : nullptr;
  return camera ? camera->Counted().exposed.load() : 0;
}

const char* VimbaSimLastError() { return last_errors.Get(); }
