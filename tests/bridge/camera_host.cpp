// camera_host.cpp
// A host that calls VimbaC itself: it only takes frames, looks at them and gives them back.
#include "bridge/camera_host.h"

#include <stdexcept>
#include <tuple>

#include "bridge/picture_check.h"

namespace {

void Check(const std::string& call, VmbError_t code) {
  if (code != VmbErrorSuccess) throw std::runtime_error(call + " answers " + std::to_string(code));
}

}  // namespace

StartedVimba::StartedVimba() { Check("VmbStartup", VmbStartup()); }

CameraHost::CameraHost(const std::string& id) {
  Check("VmbCameraOpen " + id, VmbCameraOpen(id.c_str(), VmbAccessModeFull, &m_camera));
}

CameraHost::~CameraHost() {
  std::ignore = VmbCaptureEnd(m_camera);
  std::ignore = VmbFrameRevokeAll(m_camera);
  std::ignore = VmbCameraClose(m_camera);
}

void CameraHost::Set(const char* feature, std::int64_t value) const {
  Check(feature, VmbFeatureIntSet(m_camera, feature, value));
}

void CameraHost::Set(const char* feature, double value) const {
  Check(feature, VmbFeatureFloatSet(m_camera, feature, value));
}

void CameraHost::Set(const char* feature, const char* entry) const {
  Check(feature, VmbFeatureEnumSet(m_camera, feature, entry));
}

void CameraHost::Run(const char* command) const { Check(command, VmbFeatureCommandRun(m_camera, command)); }

std::int64_t CameraHost::Integer(const char* feature) const {
  VmbInt64_t value = 0;
  Check(feature, VmbFeatureIntGet(m_camera, feature, &value));
  return value;
}

std::string CameraHost::Entry(const char* feature) const {
  const char* entry = nullptr;
  Check(feature, VmbFeatureEnumGet(m_camera, feature, &entry));
  return entry;
}

void CameraHost::SetSize(std::int64_t width, std::int64_t height) const {
  Set("Width", width);
  Set("Height", height);
}

void CameraHost::Start(std::size_t frame_bytes) {
  if (frame_bytes == 0) frame_bytes = static_cast<std::size_t>(Integer("PayloadSize"));
  m_buffers.assign(kFrames, std::vector<std::uint8_t>(frame_bytes));
  m_frames.assign(kFrames, VmbFrame_t{});
  {
    const BMutexLock lock(m_mutex);
    m_seen.clear();
  }
  for (std::size_t i = 0; i < kFrames; ++i) {
    m_frames[i].buffer = m_buffers[i].data();
    m_frames[i].bufferSize = static_cast<VmbUint32_t>(frame_bytes);
    m_frames[i].context[0] = this;
    Check("VmbFrameAnnounce", VmbFrameAnnounce(m_camera, &m_frames[i], sizeof(VmbFrame_t)));
  }
  Check("VmbCaptureStart", VmbCaptureStart(m_camera));
  for (const VmbFrame_t& frame : m_frames)
    Check("VmbCaptureFrameQueue", VmbCaptureFrameQueue(m_camera, &frame, OnFrame));
  Run("AcquisitionStart");
}

bool CameraHost::WaitForFrames(std::size_t count, std::chrono::seconds timeout) const {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  BMutexLock lock(m_mutex);
  while (m_seen.size() < count) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    m_changed.WaitUntil(lock, deadline);
  }
  return true;
}

void CameraHost::FlushAndQueueAgain() {
  Check("VmbCaptureQueueFlush", VmbCaptureQueueFlush(m_camera));
  // Refused for those that a callback has, or has queued since.
  for (const VmbFrame_t& frame : m_frames) std::ignore = VmbCaptureFrameQueue(m_camera, &frame, OnFrame);
}

void CameraHost::Stop() {
  Run("AcquisitionStop");
  Check("VmbCaptureEnd", VmbCaptureEnd(m_camera));
  Check("VmbCaptureQueueFlush", VmbCaptureQueueFlush(m_camera));
  Check("VmbFrameRevokeAll", VmbFrameRevokeAll(m_camera));
}

std::vector<SeenFrame> CameraHost::Seen() const {
  const BMutexLock lock(m_mutex);
  return m_seen;
}

std::vector<std::uint8_t> CameraHost::LastPicture() const {
  const BMutexLock lock(m_mutex);
  return m_last_picture;
}

void CameraHost::OnFrame(VmbHandle_t camera, VmbFrame_t* frame) {
  static_cast<CameraHost*>(frame->context[0])->Take(*frame);
  // Refused once capture ends.
  std::ignore = VmbCaptureFrameQueue(camera, frame, OnFrame);
}

void CameraHost::Take(const VmbFrame_t& frame) {
  const auto time = std::chrono::steady_clock::now();
  const auto* const pixels = static_cast<const std::uint8_t*>(frame.buffer);
  const bool complete = frame.receiveStatus == VmbFrameStatusComplete;
  const BSize size{static_cast<int>(frame.width), static_cast<int>(frame.height)};
  const BPoint at{static_cast<int>(frame.offsetX), static_cast<int>(frame.offsetY)};
  const bool right = complete && frame.pixelFormat == VmbPixelFormatMono8 &&
                     frame.imageSize == frame.width * frame.height && ShowsGrey(pixels, size, frame.frameID, at);
  const BMutexLock lock(m_mutex);
  m_seen.push_back({frame.receiveStatus, frame.frameID, frame.timestamp, right, time});
  if (complete) m_last_picture.assign(pixels, pixels + frame.imageSize);
  m_changed.NotifyAll();
}
