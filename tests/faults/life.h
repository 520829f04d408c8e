// life.h
// One life of a device, as a host drives it: every operation once at least.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "bbaseaoi.h"
#include "bimagingdevice.h"
#include "bsmartref.h"
#include "cameras_under_test.h"
#include "observations.h"

class BImagingDeviceControl;
class LateFrames;

// List, create, read every operation, set every control, snap in single and continuous mode, switch the trigger and the
// colour mode, change the bandwidth, release. An operation that fails is noted, and the life goes on as far as it can.
// [host thread]
class Life {
 public:
  Life(LifeKind kind, CamerasUnderTest& cameras, LateFrames& late_frames);
  ~Life();
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;

  void Run();

  const Observations& Seen() const { return m_seen; }

 private:
  using Operation = std::function<std::string()>;

  void Note(std::string name, const Operation& operation);
  bool Create();
  void Link();
  void ReadOperations();
  void ReadControl(const std::string& name, BImagingDeviceControl* control);
  void SetControl(const std::string& name, BImagingDeviceControl* control, int value);
  void SetControls();
  void SnapSingle(const std::string& name, BBaseAoi::Kind kind);
  void SnapSingles();
  void SnapContinuously();
  void SwitchTrigger();
  void SwitchColourMode();
  void ChangeBandwidth();
  void RunFree();
  void Discover();
  void Release();

  // Parts of a snap.
  void Start(const std::string& name, bool one_shot);
  void Snap(const std::string& name, BBaseAoi::Kind kind);
  void Stop(const std::string& name);
  std::string PictureOf(BBaseAoi& area) const;

  const LifeKind m_kind;
  CamerasUnderTest& m_cameras;
  LateFrames& m_late_frames;
  Observations m_seen;
  BImagingDevice* m_device = nullptr;
  BImagingDevice* m_partner = nullptr;
  // Exposures of the first camera when the acquisition was started: what it has exposed before is of another run.
  std::uint64_t m_exposed_before = 0;
};
