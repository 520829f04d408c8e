// camera_host.h
// A host that calls VimbaC itself: it only takes frames, looks at them and gives them back.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "VimbaC.h"
#include "bmutex.h"

// Vimba is started for as long as the object lives.
class StartedVimba {
 public:
  StartedVimba();
  ~StartedVimba() { VmbShutdown(); }
  StartedVimba(const StartedVimba&) = delete;
  StartedVimba& operator=(const StartedVimba&) = delete;
};

// What a callback has seen. Of a Mono8 frame every pixel was looked at.
struct SeenFrame {
  VmbFrameStatus_t status;
  std::uint64_t id;
  std::uint64_t timestamp_ns;
  bool right_picture;
  std::chrono::steady_clock::time_point time;
};

// One open camera. A call that fails throws std::runtime_error with its name and code.
class CameraHost {
 public:
  static constexpr std::size_t kFrames = 10;

  explicit CameraHost(const std::string& id);
  ~CameraHost();
  CameraHost(const CameraHost&) = delete;
  CameraHost& operator=(const CameraHost&) = delete;

  VmbHandle_t Handle() const { return m_camera; }
  void Set(const char* feature, std::int64_t value) const;
  void Set(const char* feature, double value) const;
  void Set(const char* feature, const char* entry) const;
  void Run(const char* command) const;
  std::int64_t Integer(const char* feature) const;
  std::string Entry(const char* feature) const;
  void SetSize(std::int64_t width, std::int64_t height) const;

  // Announces frames of this many bytes, else of the camera's payload, and starts the camera.
  void Start(std::size_t frame_bytes = 0);
  // Whether so many frames have come since the start.
  bool WaitForFrames(std::size_t count, std::chrono::seconds timeout = std::chrono::seconds(30)) const;
  // While frames arrive.
  void FlushAndQueueAgain();
  void Stop();
  std::vector<SeenFrame> Seen() const;
  // The pixels of the last complete frame.
  std::vector<std::uint8_t> LastPicture() const;

 private:
  static void OnFrame(VmbHandle_t camera, VmbFrame_t* frame);
  void Take(const VmbFrame_t& frame);

  VmbHandle_t m_camera = nullptr;
  std::vector<std::vector<std::uint8_t>> m_buffers;
  std::vector<VmbFrame_t> m_frames;
  mutable BMutex m_mutex;
  mutable BCondition m_changed;
  std::vector<SeenFrame> m_seen KEL_GUARDED_BY(m_mutex);
  std::vector<std::uint8_t> m_last_picture KEL_GUARDED_BY(m_mutex);
};
