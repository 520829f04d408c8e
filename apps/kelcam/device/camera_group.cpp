// camera_group.cpp
// The cameras of one command, each with its own results.
#include "device/camera_group.h"

#include <algorithm>
#include <iostream>

#include "base/interrupt.h"
#include "base/run_together.h"

namespace Kelcam {

CameraGroup::CameraGroup(const std::vector<CameraChoice>& choices, const Open& open) {
  m_members.reserve(choices.size());
  for (const CameraChoice& choice : choices) {
    m_members.push_back({choice, choice.Name(), nullptr, std::nullopt});
    if (!Interrupted()) Try(m_members.back(), open);
  }
}

CameraGroup::~CameraGroup() {
  m_link.reset();
  while (!m_members.empty()) m_members.pop_back();
}

void CameraGroup::Try(Member& member, const Open& open) {
  std::string label;
  try {
    member.run = open(member.choice);
    label = member.run->Label();
    member.name = member.run->Session().Identifier();
    member.run->SetUp();
  } catch (...) {
    member.NoteFault(label);
    member.run.reset();
  }
}

void CameraGroup::Member::NoteFault(const std::string& label) {
  try {
    throw;
  } catch (const UsageError& error) {
    fault = Fault{Fault::kNoCode, error.what()};
    result = kWrongUsage;
  } catch (...) {
    fault = FaultOfCurrentException();
    result = kFailed;
  }
  std::cerr << fault->Sentence(label) + "\n" + fault->reason.Text();
}

void CameraGroup::Link() {
  const std::vector<const CameraSession*> cameras = OpenCameras();
  if (cameras.size() > 1) {
    m_link.emplace(cameras);
    for (const Member& member : m_members) {
      if (member.run) member.run->ShareLink(*m_link);
    }
  } else if (!Interrupted()) {
    std::cerr << "notice: --link: fewer than two cameras are open, so there are no partners\n";
  }
}

void CameraGroup::Run() {
  std::vector<std::function<void()>> tasks;
  for (Member& member : m_members) {
    if (member.run) tasks.emplace_back([&member] { Run(member); });
  }
  RunTogether(tasks);
}

void CameraGroup::Run(Member& member) {
  try {
    member.run->Run();
  } catch (...) {
    member.NoteFault(member.run->Label());
  }
}

std::vector<const CameraSession*> CameraGroup::OpenCameras() const {
  std::vector<const CameraSession*> cameras;
  for (const Member& member : m_members) {
    if (member.run) cameras.push_back(&member.run->Session());
  }
  return cameras;
}

ExitCode CameraGroup::Result() const {
  ExitCode worst = kDone;
  for (const Member& member : m_members) {
    const bool has_failed = member.run && member.run->HasFailed();
    worst = std::max({worst, member.result, has_failed ? kFailed : kDone});
  }
  return worst;
}

}  // namespace Kelcam
