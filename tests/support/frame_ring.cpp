// frame_ring.cpp
// A camera as a program uses it through VimbaC: opened, frames announced, every frame that came back kept.
#include "support/frame_ring.h"

#include <tuple>

CameraHandle::CameraHandle(const std::string& id, VmbAccessMode_t access) {
  EXPECT_EQ(VmbCameraOpen(id.c_str(), access, &m_handle), VmbErrorSuccess);
}

CameraHandle::~CameraHandle() { std::ignore = VmbCameraClose(m_handle); }

FrameRing::FrameRing(VmbHandle_t camera, std::size_t count, std::optional<std::uint32_t> buffer_bytes)
    : m_camera(camera), m_frames(count) {
  const std::size_t size = buffer_bytes ? *buffer_bytes : static_cast<std::size_t>(IntOf(camera, "PayloadSize"));
  for (VmbFrame_t& frame : m_frames) {
    m_buffers.emplace_back(size);
    frame.buffer = m_buffers.back().data();
    frame.bufferSize = static_cast<VmbUint32_t>(size);
    frame.context[0] = this;
    EXPECT_EQ(VmbFrameAnnounce(camera, &frame, sizeof frame), VmbErrorSuccess);
  }
}

FrameRing::~FrameRing() {
  std::ignore = VmbCaptureEnd(m_camera);
  std::ignore = VmbCaptureQueueFlush(m_camera);
  std::ignore = VmbFrameRevokeAll(m_camera);
}

void FrameRing::Start() {
  EXPECT_EQ(VmbCaptureStart(m_camera), VmbErrorSuccess);
  for (std::size_t i = 0; i < m_frames.size(); ++i) EXPECT_EQ(Queue(i), VmbErrorSuccess);
}

VmbError_t FrameRing::Queue(std::size_t index) { return Queue(m_frames[index]); }

VmbError_t FrameRing::Queue(VmbFrame_t& frame) { return VmbCaptureFrameQueue(m_camera, &frame, &OnFrame); }

void FrameRing::KeepQueued() {
  // Refused once capture has ended.
  on_frame = [this](VmbFrame_t& frame) { std::ignore = Queue(frame); };
}

void FrameRing::OnFrame(VmbHandle_t, VmbFrame_t* frame) {
  FrameRing& ring = *static_cast<FrameRing*>(frame->context[0]);
  const VmbFrame_t received = *frame;
  if (ring.on_frame) ring.on_frame(*frame);
  const BMutexLock lock(ring.m_mutex);
  ring.m_arrivals.push_back(received);
  ring.m_arrived.NotifyAll();
}

std::vector<VmbFrame_t> FrameRing::WaitFor(std::size_t count) {
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  BMutexLock lock(m_mutex);
  while (m_arrivals.size() < count && std::chrono::steady_clock::now() < deadline) m_arrived.WaitUntil(lock, deadline);
  EXPECT_GE(m_arrivals.size(), count) << "frames that came in time";
  return m_arrivals;
}

std::size_t FrameRing::Arrived() {
  const BMutexLock lock(m_mutex);
  return m_arrivals.size();
}

std::int64_t IntOf(VmbHandle_t camera, const char* feature) {
  VmbInt64_t value = 0;
  EXPECT_EQ(VmbFeatureIntGet(camera, feature, &value), VmbErrorSuccess) << feature;
  return value;
}

double FloatOf(VmbHandle_t camera, const char* feature) {
  double value = 0.0;
  EXPECT_EQ(VmbFeatureFloatGet(camera, feature, &value), VmbErrorSuccess) << feature;
  return value;
}

std::string EnumOf(VmbHandle_t camera, const char* feature) {
  const char* value = "";
  EXPECT_EQ(VmbFeatureEnumGet(camera, feature, &value), VmbErrorSuccess) << feature;
  return value;
}

void SetInt(VmbHandle_t camera, const char* feature, std::int64_t value) {
  EXPECT_EQ(VmbFeatureIntSet(camera, feature, value), VmbErrorSuccess) << feature << " = " << value;
}

void SetFloat(VmbHandle_t camera, const char* feature, double value) {
  EXPECT_EQ(VmbFeatureFloatSet(camera, feature, value), VmbErrorSuccess) << feature << " = " << value;
}

void SetEnum(VmbHandle_t camera, const char* feature, const char* value) {
  EXPECT_EQ(VmbFeatureEnumSet(camera, feature, value), VmbErrorSuccess) << feature << " = " << value;
}

void RunCommand(VmbHandle_t camera, const char* command) {
  EXPECT_EQ(VmbFeatureCommandRun(camera, command), VmbErrorSuccess) << command;
}

void TriggerBy(VmbHandle_t camera, const char* source) {
  SetEnum(camera, "TriggerMode", "On");
  SetEnum(camera, "TriggerSource", source);
}
