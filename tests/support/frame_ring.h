// frame_ring.h
// A camera as a program uses it through VimbaC: opened, frames announced, every frame that came back kept.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "VimbaC.h"
#include "bmutex.h"

inline constexpr std::chrono::seconds kDeadline{20};

// Asks again and again. False when the deadline passes before the condition holds.
template <class Condition>
[[nodiscard]] bool Eventually(Condition condition) {
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::yield();
  }
  return true;
}

// The API is started while it lives.
struct StartedApi {
  StartedApi() { EXPECT_EQ(VmbStartup(), VmbErrorSuccess); }
  ~StartedApi() { VmbShutdown(); }
  StartedApi(const StartedApi&) = delete;
  StartedApi& operator=(const StartedApi&) = delete;
};

// An opened camera; closed with the object unless it is closed already.
class CameraHandle {
 public:
  explicit CameraHandle(const std::string& id, VmbAccessMode_t access = VmbAccessModeFull);
  ~CameraHandle();
  CameraHandle(const CameraHandle&) = delete;
  CameraHandle& operator=(const CameraHandle&) = delete;
  operator VmbHandle_t() const { return m_handle; }

 private:
  VmbHandle_t m_handle = nullptr;
};

// Frames of one camera. The callback keeps a copy of each record and runs the ring's own function, by default none.
class FrameRing {
 public:
  // Without a size the buffers have that of the camera's payload.
  FrameRing(VmbHandle_t camera, std::size_t count, std::optional<std::uint32_t> buffer_bytes = std::nullopt);
  // Ends capture and takes the frames back.
  ~FrameRing();
  FrameRing(const FrameRing&) = delete;
  FrameRing& operator=(const FrameRing&) = delete;

  // Set before capture starts; runs on the callback thread.
  std::function<void(VmbFrame_t&)> on_frame;

  // Starts capture and queues every frame.
  void Start();
  [[nodiscard]] VmbError_t Queue(std::size_t index);
  [[nodiscard]] VmbError_t Queue(VmbFrame_t& frame);
  // Has every frame queued again when it has come. Set before capture starts.
  void KeepQueued();
  VmbFrame_t& Frame(std::size_t index) { return m_frames[index]; }
  std::vector<unsigned char>& Buffer(std::size_t index) { return m_buffers[index]; }

  // All arrivals so far, once there are this many. The test fails when they do not come in time.
  std::vector<VmbFrame_t> WaitFor(std::size_t count);
  std::size_t Arrived();

 private:
  static void OnFrame(VmbHandle_t camera, VmbFrame_t* frame);

  const VmbHandle_t m_camera;
  std::vector<std::vector<unsigned char>> m_buffers;
  std::vector<VmbFrame_t> m_frames;
  BMutex m_mutex;
  BCondition m_arrived;
  std::vector<VmbFrame_t> m_arrivals KEL_GUARDED_BY(m_mutex);
};

std::int64_t IntOf(VmbHandle_t camera, const char* feature);
double FloatOf(VmbHandle_t camera, const char* feature);
std::string EnumOf(VmbHandle_t camera, const char* feature);
// The test fails when the camera refuses.
void SetInt(VmbHandle_t camera, const char* feature, std::int64_t value);
void SetFloat(VmbHandle_t camera, const char* feature, double value);
void SetEnum(VmbHandle_t camera, const char* feature, const char* value);
void RunCommand(VmbHandle_t camera, const char* command);
// Trigger mode on with this source.
void TriggerBy(VmbHandle_t camera, const char* source);
