// fault.cpp
// One fault of a case, in the simulator's terms.
#include "fault.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>

namespace {

using Json = nlohmann::ordered_json;

constexpr char kAny[] = "any";
// By LifeKind.
constexpr std::array<std::string_view, 3> kKindNames{"alone", "partner", "free"};

Json AsJson(const Fault& fault) {
  if (!fault.IsOfCall()) return Json::parse(fault.frame.empty() ? fault.late : fault.frame);
  Json json{{"call", fault.key.call}};
  if (!fault.key.camera.empty()) json["camera"] = fault.key.camera;
  if (!fault.key.feature.empty()) json["feature"] = fault.key.feature;
  json["occurrence"] = fault.key.occurrence;
  if (fault.lasting) json["count"] = 0;
  if (fault.error != 0) json["error"] = fault.error;
  if (fault.effective) json["effect"] = true;
  if (!fault.answer.empty()) json["answer"] = Json::parse(fault.answer);
  return json;
}

Fault FromJson(const Json& json) {
  Fault fault;
  if (!json.contains("call")) {
    (json.contains("late") ? fault.late : fault.frame) = json.dump();
    return fault;
  }
  fault.key = {json.at("call"), json.value("camera", ""), json.value("feature", ""), json.value("occurrence", 1)};
  fault.error = json.value("error", 0);
  fault.effective = json.value("effect", false);
  fault.lasting = json.value("count", 1) == 0;
  if (json.contains("answer")) fault.answer = json["answer"].dump();
  return fault;
}

}  // namespace

bool CallKey::Matches(const CallLine& line) const {
  if (call == kAny) return line.call != "VmbShutdown";
  return call == line.call && (camera.empty() || camera == line.camera) && (feature.empty() || feature == line.feature);
}

std::string Fault::Json() const { return AsJson(*this).dump(); }

std::vector<Fault> Fault::Parse(const std::string& json) {
  const ::Json text = ::Json::parse(json);
  std::vector<Fault> faults;
  for (const ::Json& fault : text) faults.push_back(FromJson(fault));
  return faults;
}

std::size_t Fault::FirstHit(const std::vector<CallLine>& calls) const {
  // Frames count by themselves.
  if (!IsOfCall()) return 0;
  std::int64_t seen = 0;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (key.Matches(calls[i]) && ++seen == key.occurrence) return i;
  }
  return calls.size();
}

std::string Case::Text() const {
  Json all = Json::array();
  for (const Fault& fault : faults) all.push_back(AsJson(fault));
  return std::string(kKindNames[static_cast<std::size_t>(kind)]) + " " + all.dump();
}

Case Case::Parse(const std::string& text) {
  const std::size_t blank = text.find(' ');
  const auto kind = std::ranges::find(kKindNames, std::string_view(text).substr(0, blank));
  if (blank == std::string::npos || kind == kKindNames.end()) {
    throw std::invalid_argument("a case is `alone`, `partner` or `free` and an array of faults");
  }
  return {kLifeKinds[static_cast<std::size_t>(kind - kKindNames.begin())], Fault::Parse(text.substr(blank + 1))};
}
