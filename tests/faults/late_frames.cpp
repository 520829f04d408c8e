// late_frames.cpp
// Frames that come when they should not: before an operation, or again and again while it runs.
#include "late_frames.h"

#include <nlohmann/json.hpp>
#include <tuple>

#include "simulated_camera_state.h"
#include "support/simulated_cameras.h"
#include "vimba_simulator.h"

namespace {

// An operation that waits for quiet would never end.
constexpr int kMostDuring = 300;

// Where no frame is queued there is none to come. A time may be given by the start of the acquisition, which is what
// the camera's clock was latched for.
void Deliver(nlohmann::json overrides) {
  if (const auto time = overrides.find("timestamp"); time != overrides.end() && time->is_string()) {
    *time = *time == "start" ? LatchedTime() : LatchedTime() - 1;
  }
  std::ignore = VimbaSimDeliverFrame(SimulatedCamera::kId, overrides.dump().c_str());
}

}  // namespace

LateFrames::LateFrames(const std::vector<Fault>& faults) {
  for (const Fault& fault : faults) {
    if (fault.late.empty()) continue;
    nlohmann::json json = nlohmann::json::parse(fault.late);
    Frames frames{json.at("late"), json.value("during", false), ""};
    json.erase("late");
    json.erase("during");
    frames.overrides = json.dump();
    m_frames.push_back(std::move(frames));
  }
}

LateFrames::Scope::Scope(const LateFrames& frames, const std::string& operation) {
  for (const Frames& each : frames.m_frames) {
    if (each.operation != operation) continue;
    Deliver(nlohmann::json::parse(each.overrides));
    if (!each.during) continue;
    m_threads.emplace_back([this, &each] {
      for (int i = 0; i < kMostDuring && !m_over; ++i) Deliver(nlohmann::json::parse(each.overrides));
    });
  }
}

LateFrames::Scope::~Scope() {
  m_over = true;
  for (std::thread& thread : m_threads) thread.join();
}
