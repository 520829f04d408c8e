// simulated_cameras.cpp
// Composes the world of a test: which cameras are on the simulated link and what goes wrong with them.
#include "support/simulated_cameras.h"

#include <sstream>
#include <stdexcept>

#include "support/simulator_text.h"
#include "vimba_simulator.h"

namespace {

using nlohmann::json;

void Check(int result) {
  if (result != 0) throw std::runtime_error(std::string("simulator: ") + VimbaSimLastError());
}

std::string IdOf(int camera) { return "DEV_000F3100000" + std::to_string(camera); }

}  // namespace

SimulatedCamera::SimulatedCamera(int number)
    : m_configuration{{"id", IdOf(number)},
                      {"name", "Manta"},
                      {"model", "Manta G-507B (E0022705)"},
                      {"serial", "50-050334000" + std::to_string(number)},
                      {"ip", "169.254.10." + std::to_string(number)},
                      {"formats", {"Mono8"}},
                      {"timing", "instant"}} {
  m_configuration["sensor"]["type"] = "mono";
  Sensor(kWidth, kHeight);
}

SimulatedCamera& SimulatedCamera::Colour(const std::string& bayer_order) {
  m_configuration["sensor"]["type"] = bayer_order;
  const std::string raw = bayer_order == "BGGR"   ? "BayerBG8"
                          : bayer_order == "RGGB" ? "BayerRG8"
                          : bayer_order == "GBRG" ? "BayerGB8"
                                                  : "BayerGR8";
  return Formats({raw, "Mono8", "YUV422Packed", "RGB8Packed"});
}

SimulatedCamera& SimulatedCamera::Named(const std::string& name, const std::string& model) {
  return With("name", name).With("model", model);
}

SimulatedCamera& SimulatedCamera::Sensor(int width, int height) {
  m_configuration["sensor"]["width"] = width;
  m_configuration["sensor"]["height"] = height;
  return *this;
}

SimulatedCamera& SimulatedCamera::Formats(const std::vector<std::string>& formats) { return With("formats", formats); }

SimulatedCamera& SimulatedCamera::WidestPayload() { return With("payload", "widest"); }

SimulatedCamera& SimulatedCamera::Missing(const std::string& feature) {
  m_configuration["missing"].push_back(feature);
  return *this;
}

SimulatedCamera& SimulatedCamera::Range(const std::string& feature, double min, double max) {
  m_configuration["ranges"][feature] = {{"min", min}, {"max", max}};
  return *this;
}

SimulatedCamera& SimulatedCamera::Feature(const std::string& feature, const json& value) {
  m_configuration["features"][feature] = value;
  return *this;
}

SimulatedCamera& SimulatedCamera::RealTiming() { return With("timing", "real"); }

SimulatedCamera& SimulatedCamera::With(const std::string& member, const json& value) {
  m_configuration[member] = value;
  return *this;
}

SimulatedCameras::SimulatedCameras(const std::vector<SimulatedCamera>& cameras, const json& system) {
  json configuration{{"cameras", json::array()}};
  for (const SimulatedCamera& camera : cameras) configuration["cameras"].push_back(camera.Configuration());
  if (!system.is_null()) configuration["system"] = system;
  Check(VimbaSimConfigure(configuration.dump().c_str()));
}

SimulatedCameras::~SimulatedCameras() { VimbaSimConfigure(nullptr); }

void SimulatedCameras::Fault(const json& fault) { Check(VimbaSimAddFaults(fault.dump().c_str())); }

void SimulatedCameras::FailCall(const std::string& call, const std::string& feature, int error, int occurrence) {
  json fault{{"call", call}, {"error", error}};
  if (!feature.empty()) fault["feature"] = feature;
  constexpr int kWithoutEnd = 0;
  fault["occurrence"] = occurrence == kEveryOccurrence ? 1 : occurrence;
  fault["count"] = occurrence == kEveryOccurrence ? kWithoutEnd : 1;
  Fault(fault);
}

void SimulatedCameras::ClearFaults() { VimbaSimClearFaults(); }

void SimulatedCameras::Deliver(const json& overrides, int camera) {
  Check(VimbaSimDeliverFrame(IdOf(camera).c_str(), overrides.dump().c_str()));
}

void SimulatedCameras::Unplug(int camera) { Check(VimbaSimUnplug(IdOf(camera).c_str())); }

std::vector<std::string> SimulatedCameras::Calls() const {
  static const std::string kHandle = std::string("(") + SimulatedCamera::kId;
  std::vector<std::string> calls;
  std::istringstream text(SimulatorText(VimbaSimCalls));
  for (std::string line; std::getline(text, line);) {
    line.resize(line.rfind(')') + 1);
    if (const std::size_t at = line.find(kHandle); at != std::string::npos) {
      const std::size_t end = at + kHandle.size();
      line.erase(at + 1, line.compare(end, 2, ", ") == 0 ? kHandle.size() + 1 : kHandle.size() - 1);
    }
    calls.push_back(line);
  }
  return calls;
}

std::vector<std::string> SimulatedCameras::CallsOf(const std::string& function) const {
  std::vector<std::string> calls = Calls();
  std::erase_if(calls, [&](const std::string& call) { return call.rfind(function + "(", 0) != 0; });
  return calls;
}

void SimulatedCameras::ClearCalls() { VimbaSimClearCalls(); }

json SimulatedCameras::State(int camera) const {
  return json::parse(SimulatorText(VimbaSimState))["cameras"][IdOf(camera)];
}
