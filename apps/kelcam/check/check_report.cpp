// check_report.cpp
// The report of a check: as a text for people, and as a document for programs.
#include "check/check_report.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "base/text_table.h"
#include "check/camera_points.h"
#include "check/intervals.h"
#include "check/system_points.h"

namespace Kelcam {
namespace {

constexpr std::size_t kWidth = 80;
constexpr std::size_t kVerdictWidth = 15;  // "not looked at" and two blanks
constexpr std::size_t kNameWidth = 17;     // "transport layer" and two blanks
constexpr const char* kToDo = "to do: ";
constexpr const char* kMessage = "| ";

// The words of the text in lines; the first one continues what is before it. A word that is too long has its own line.
std::string Wrapped(const std::string& text, std::size_t indent, const std::string& before_each = {}) {
  const std::string margin = std::string(indent, ' ') + before_each;
  std::istringstream words(text);
  std::string wrapped = before_each;
  std::size_t column = margin.size();
  for (std::string word; words >> word;) {
    const bool is_first = column == margin.size();
    if (!is_first && column + 1 + word.size() > kWidth) {
      wrapped += "\n" + margin;
      column = margin.size();
    } else if (!is_first) {
      wrapped += ' ';
      ++column;
    }
    wrapped += word;
    column += word.size();
  }
  return wrapped + "\n";
}

std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.resize(width, ' ');
  return text;
}

std::string TextOf(const JudgedPoint& point) {
  constexpr std::size_t kIndent = kVerdictWidth + kNameWidth;
  const Judgement& judgement = point.judgement;
  std::string text = Padded(NameOf(judgement.verdict), kVerdictWidth) + Padded(point.name, kNameWidth);
  text += Wrapped(Printable(judgement.found), kIndent);
  for (const std::string& message : judgement.messages) {
    text += std::string(kIndent, ' ') + Wrapped(Printable(message), kIndent, kMessage);
  }
  if (!judgement.to_do.empty())
    text += std::string(kIndent, ' ') + Wrapped(kToDo + Printable(judgement.to_do), kIndent);
  return text;
}

std::string Headline(const CameraFacts& camera) {
  std::string text = Printable(camera.name);
  const std::string by_id = "--camera " + (camera.row ? camera.row->id : camera.name);
  if (camera.title != by_id) text += " (" + Printable(camera.title) + ")";
  if (camera.row) text += ", " + CellOf(camera.row->model) + ", id " + CellOf(camera.row->id);
  if (camera.firmware) text += ", firmware " + Printable(*camera.firmware);
  if (camera.row && camera.row->address) text += ", " + *camera.row->address;
  return text;
}

Json ToJson(const std::vector<JudgedPoint>& points) {
  Json documents = Json::array();
  for (const JudgedPoint& point : points) {
    Json document = {{"point", point.name},
                     {"looksAt", point.looks_at},
                     {"verdict", NameOf(point.judgement.verdict)},
                     {"found", point.judgement.found}};
    if (!point.judgement.messages.empty()) document["messages"] = point.judgement.messages;
    if (!point.judgement.to_do.empty()) document["toDo"] = point.judgement.to_do;
    documents.push_back(document);
  }
  return documents;
}

Json FiguresOf(const CameraFacts& camera) {
  Json document = {{"snapMilliseconds", nullptr}, {"run", nullptr}, {"intervals", nullptr}};
  if (camera.snaps) {
    document["snapMilliseconds"] = Json::array();
    for (const Milliseconds time : camera.snaps->times) document["snapMilliseconds"].push_back(time.count());
  }
  if (!camera.run) return document;
  document["run"] = Json::object();
  camera.run->figures.AppendTo(document["run"]);
  if (const auto intervals = IntervalsOf(camera.run->arrivals, camera.ticks_per_s)) {
    document["intervals"] = {{"count", intervals->count},
                             {"meanMilliseconds", intervals->mean_ms},
                             {"leastMilliseconds", intervals->least_ms},
                             {"mostMilliseconds", intervals->most_ms},
                             {"gaps", intervals->gaps},
                             {"byCameraClock", intervals->by_camera_clock}};
  }
  return document;
}

}  // namespace

CheckReport::CheckReport(const CheckFacts& facts, Masking masking) : m_facts(facts), m_masking(std::move(masking)) {
  for (const SystemPoint& point : SystemPoints()) {
    m_system.push_back(Masked(point.name, point.looks_at, point.judge(m_facts)));
  }
  Count(m_system);
  for (const CameraFacts& camera : m_facts.cameras) {
    m_cameras.push_back({&camera, {}});
    for (const auto points : {SetUpPoints(), ImagePoints()}) {
      for (const CameraPoint& point : points) {
        m_cameras.back().points.push_back(Masked(point.name, point.looks_at, point.judge(m_facts, camera)));
      }
    }
    Count(m_cameras.back().points);
  }
}

JudgedPoint CheckReport::Masked(const char* name, const char* looks_at, Judgement judgement) const {
  judgement.found = m_masking.Masked(judgement.found);
  judgement.to_do = m_masking.Masked(judgement.to_do);
  for (std::string& message : judgement.messages) message = m_masking.Masked(message);
  return {name, looks_at, std::move(judgement)};
}

std::string CheckReport::Fact(const std::string& name, const std::string& value) const {
  constexpr std::size_t kFactWidth = 10;
  return Padded(name, kFactWidth) + Wrapped(m_masking.Masked(value), kFactWidth);
}

void CheckReport::Count(const std::vector<JudgedPoint>& points) {
  for (const JudgedPoint& point : points) {
    ++m_counts[static_cast<std::size_t>(point.judgement.verdict)];
    m_worst = std::max(m_worst, point.judgement.verdict);
  }
}

std::string CheckReport::Sum() const {
  const auto count = [&](Verdict verdict) { return std::to_string(m_counts[static_cast<std::size_t>(verdict)]); };
  return std::string(NameOf(m_worst)) + " (" + count(Verdict::kBroken) + " broken, " + count(Verdict::kLook) +
         " to look at, " + count(Verdict::kFine) + " fine, " + count(Verdict::kNotLookedAt) + " not looked at)";
}

std::string CheckReport::Text() const {
  const SystemFacts& system = m_facts.system;
  std::string text = "kelcam check: ";
  text += Sum() + "\n\n";
  text += Fact("program", system.program) + Fact("module", system.module);
  text += Fact("system", system.system + ", " + Counted(system.processors, "processor"));
  text += Fact("time", system.time);
  if (m_facts.was_interrupted) text += Fact("stopped", "before its end; what follows was known by then");
  text += "\n";
  for (const JudgedPoint& point : m_system) text += TextOf(point);
  for (const Camera& camera : m_cameras) {
    text += '\n';
    text += Fact("camera", Headline(*camera.facts));
    for (const JudgedPoint& point : camera.points) text += TextOf(point);
  }
  return text;
}

Json CheckReport::Document() const {
  const SystemFacts& system = m_facts.system;
  Json cameras = Json::array();
  for (const Camera& camera : m_cameras) {
    cameras.push_back({{"camera", camera.facts->name},
                       {"named", camera.facts->title},
                       {"points", ToJson(camera.points)},
                       {"figures", FiguresOf(*camera.facts)}});
  }
  Json vimbac;
  if (system.library) {
    vimbac = {{"file", system.library->file},
              {"version", system.library->version},
              {"simulated", system.library->is_simulated}};
  }
  return m_masking.MaskedDocument({{"verdict", NameOf(m_worst)},
                                   {"version", KEL_VERSION},
                                   {"system", system.system},
                                   {"module", system.module},
                                   {"vimbac", vimbac},
                                   {"time", system.time},
                                   {"points", ToJson(m_system)},
                                   {"cameras", cameras},
                                   {"interrupted", m_facts.was_interrupted}});
}

}  // namespace Kelcam
