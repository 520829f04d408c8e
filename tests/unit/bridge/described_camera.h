// described_camera.h
// The bridge's features over a camera that is a description and some memory: no network, no pictures.
#pragma once

#include <arv.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "aravis/object.h"
#include "camera/features.h"

// A file of tests/unit/bridge/cameras between what every camera has.
class DescribedCamera {
 public:
  // Throws std::runtime_error when there is no such file or Aravis does not understand it.
  explicit DescribedCamera(const std::string& family);

  Bridge::Features& Features() { return *m_features; }
  Bridge::AcquisitionState& State() { return m_state; }
  // The camera's own, past the bridge.
  std::int64_t OwnInteger(const char* feature) const;
  double OwnFloat(const char* feature) const;
  std::string OwnEntry(const char* feature) const;
  void SetOwn(const char* feature, const std::string& value);

 private:
  Bridge::Object<ArvDevice> m_device;
  Bridge::AcquisitionState m_state;
  std::unique_ptr<Bridge::CameraClock> m_clock;
  std::unique_ptr<Bridge::Features> m_features;
};

// A line for each feature: "Width = 640 (16 to 1280)", "PixelFormat = Mono8", "AcquisitionStart", "Gain: NotFound".
std::vector<std::string> Described(const Bridge::Features& features, const std::vector<const char*>& names);

// The test fails when the bridge answers otherwise.
double FloatOf(DescribedCamera& camera, const char* feature);
std::int64_t IntOf(DescribedCamera& camera, const char* feature);
std::string EntryOf(DescribedCamera& camera, const char* feature);
void ExpectFloatSet(DescribedCamera& camera, const char* feature, double value, VmbError_t expected = VmbErrorSuccess);
void ExpectEntrySet(DescribedCamera& camera, const char* feature, const char* entry,
                    VmbError_t expected = VmbErrorSuccess);
