// camera/camera_features.h
// The features of one simulated camera, and what they say about the next exposure.
#pragma once

#include <functional>
#include <vector>

#include "camera/camera_configuration.h"
#include "camera/feature_nodes.h"
#include "engine/camera_clock.h"
#include "engine/capture_settings.h"
#include "engine/clock.h"
#include "engine/counters.h"
#include "engine/picture_means.h"

namespace Simulator {

// What the acquisition commands do. All may be called while the features are locked.
struct AcquisitionCommands {
  std::function<void()> start;
  std::function<void()> stop;
  std::function<void()> abort;
  std::function<void()> software_trigger;
  std::function<bool()> running;
};

// The state of a camera from its power-up on. Takes no lock: its owner does.
class CameraFeatures {
 public:
  // The arguments outlive this. Throws std::invalid_argument with the setting's name when a configured value cannot be
  // set.
  CameraFeatures(const CameraConfiguration& configuration, std::int64_t mtu_bytes, CameraClock& clock,
                 const Counters& counters, AcquisitionCommands commands);
  CameraFeatures(const CameraFeatures&) = delete;
  CameraFeatures& operator=(const CameraFeatures&) = delete;

  FeatureMap& Map() { return m_map; }
  const FeatureMap& Map() const { return m_map; }
  CaptureSettings Settings() const;
  // Lets the automatics adjust exposure, gain and balance by the last picture.
  void FollowPicture(const PictureMeans& means);

 private:
  std::vector<Feature> AllRows();
  std::vector<Feature> IdentityRows() const;
  std::vector<Feature> ImageFormatRows();
  std::vector<Feature> BinningRows();
  std::vector<Feature> AcquisitionRows();
  std::vector<Feature> TriggerRows() const;
  std::vector<Feature> LightRows() const;
  std::vector<Feature> TimestampRows();
  std::vector<Feature> StreamRows();
  std::vector<Feature> StatisticRows() const;

  void ApplyConfiguration();
  void ApplyRange(const std::string& name, const RangeOverride& change);
  void ApplySetting(const std::string& name, const FeatureSetting& setting);
  void ShrinkToSensor();
  void AdjustPacketSize();

  bool IsAutomatic(const char* mode) const;
  bool AnyAutomatic() const;
  double Correct(const char* name, std::size_t index, double wanted);
  void EndOnce(const char* mode);
  void FollowColour(const PictureMeans& means);

  int WidthMax() const;
  int HeightMax() const;
  std::size_t ImageBytes() const;
  std::int64_t PayloadSize() const;
  Microseconds ExposureTime() const;
  Seconds ReadoutTime() const;
  Seconds StreamTime() const;
  double FrameRateLimitHz() const;
  TriggerSettings Trigger() const;

  const CameraConfiguration& m_configuration;
  const std::int64_t m_mtu_bytes;
  CameraClock& m_clock;
  const Counters& m_counters;
  const AcquisitionCommands m_commands;
  std::int64_t m_latched_ticks = 0;
  Clock::time_point m_packet_size_adjusted{};
  FeatureMap m_map;
};

}  // namespace Simulator
