// storm_world.h
// What a storm rages over: the loaded module, a few simulated cameras, and the checks of all that they leave.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "bbaseaoi.h"
#include "bmutex.h"
#include "imagingdevice.h"
#include "storms/findings.h"
#include "storms/process_census.h"
#include "support/driver_module.h"
#include "support/profile_file.h"
#include "support/simulated_cameras.h"

// Receives every message and proves its form. [any thread]
class MessageProof final : public ImagingDevice::BSink {
 public:
  explicit MessageProof(Findings& findings);
  ~MessageProof() override;
  MessageProof(const MessageProof&) = delete;
  MessageProof& operator=(const MessageProof&) = delete;

  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override;
  void OnLogMessage(const WString& text, bool important) override;

 private:
  Findings& m_findings;
  ImagingDevice::BSink* m_before;
};

// Cameras 1 to n, each with a picture of its own. The destructor unloads the module and then checks: the recorded calls
// belong together, and no thread and no descriptor is left that was not there at the beginning.
class StormWorld {
 public:
  StormWorld(Findings& findings, std::vector<SimulatedCamera> cameras);
  ~StormWorld();
  StormWorld(const StormWorld&) = delete;
  StormWorld& operator=(const StormWorld&) = delete;

  // The exports. [host thread, one at a time]
  BImagingDevice* Open(int camera);
  void Release(BImagingDevice*& device);
  void List();

  // The three calls of a host for one picture, or as many of them as the device allows. What it does not allow, or a
  // picture of another camera, is a finding. [any thread]
  void SnapOnce(BImagingDevice& device, int camera);
  // False when the start threw.
  bool Start(BImagingDevice& device, bool one_shot);
  BError Snap(BImagingDevice& device, int camera, std::uint32_t timeout_ms);
  void Stop(BImagingDevice& device);

  SimulatedCameras& Link() { return *m_link; }
  Findings& Found() { return m_findings; }
  static std::string IdOf(int camera);

 private:
  void CheckPicture(int camera, const BBaseAoi& area);
  void CheckLeftovers();

  Findings& m_findings;
  const ProcessCensus m_before = ProcessCensus::Now();
  std::deque<ProfileFile> m_profiles;
  std::optional<SimulatedCameras> m_link;
  std::optional<MessageProof> m_messages;
  std::optional<DriverModule> m_module;
  BMutex m_mutex;
  // The first picture of each camera; the scenes stand still.
  std::vector<std::vector<std::uint8_t>> m_pictures KEL_GUARDED_BY(m_mutex);
};
