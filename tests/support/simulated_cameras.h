// simulated_cameras.h
// Composes the world of a test: which cameras are on the simulated link and what goes wrong with them.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// One camera, monochrome and small, that needs no time of its own unless it is given RealTiming.
// SimulatedCamera().Colour("RGGB").Missing("BinningHorizontal")
class SimulatedCamera {
 public:
  static constexpr char kId[] = "DEV_000F31000001";
  static constexpr char kSerial[] = "50-0503340001";
  static constexpr char kIp[] = "169.254.10.1";
  static constexpr int kWidth = 64;
  static constexpr int kHeight = 48;

  explicit SimulatedCamera(int number = 1);  // number n: id, serial number and address end with n

  SimulatedCamera& Colour(const std::string& bayer_order = "RGGB");  // Bayer, Mono8, YUV422Packed, RGB8Packed
  SimulatedCamera& Named(const std::string& name, const std::string& model);
  SimulatedCamera& Sensor(int width, int height);
  SimulatedCamera& Formats(const std::vector<std::string>& formats);
  SimulatedCamera& WidestPayload();
  SimulatedCamera& Missing(const std::string& feature);
  SimulatedCamera& Range(const std::string& feature, double min, double max);
  SimulatedCamera& Feature(const std::string& feature, const nlohmann::json& value);  // at power-up
  SimulatedCamera& RealTiming();
  SimulatedCamera& With(const std::string& member, const nlohmann::json& value);  // any member of the configuration

  const nlohmann::json& Configuration() const { return m_configuration; }

 private:
  nlohmann::json m_configuration;
};

// The link: set up with the object, back to the built-in cameras when it goes. Every device must be released by then.
class SimulatedCameras {
 public:
  explicit SimulatedCameras(const std::vector<SimulatedCamera>& cameras, const nlohmann::json& system = nullptr);
  explicit SimulatedCameras(const SimulatedCamera& camera) : SimulatedCameras(std::vector<SimulatedCamera>{camera}) {}
  ~SimulatedCameras();
  SimulatedCameras(const SimulatedCameras&) = delete;
  SimulatedCameras& operator=(const SimulatedCameras&) = delete;

  void Fault(const nlohmann::json& fault);
  static constexpr int kEveryOccurrence = 0;
  // The `occurrence`th call (from 1 on, counted from now) of this function and feature answers `error`.
  void FailCall(const std::string& call, const std::string& feature, int error, int occurrence = kEveryOccurrence);
  void ClearFaults();

  // One frame arrives now; see VimbaSimDeliverFrame.
  void Deliver(const nlohmann::json& overrides = nlohmann::json::object(), int camera = 1);

  void Unplug(int camera = 1);

  // The recorded calls, without their results: `VmbFeatureEnumSet("PixelFormat", "Mono8")`. Handles of camera 1 are
  // left out, those of others are not.
  std::vector<std::string> Calls() const;
  std::vector<std::string> CallsOf(const std::string& function) const;
  void ClearCalls();
  nlohmann::json State(int camera = 1) const;  // see VimbaSimState
};
