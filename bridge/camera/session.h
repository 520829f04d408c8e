// camera/session.h
// One opening of a camera, from VmbCameraOpen to VmbCameraClose.
#pragma once

#include <arv.h>

#include <atomic>
#include <chrono>
#include <memory>

#include "VimbaC.h"
#include "aravis/object.h"
#include "bmutex.h"
#include "camera/acquisition_state.h"
#include "camera/camera_clock.h"
#include "camera/camera_record.h"
#include "camera/claims.h"
#include "camera/features.h"
#include "stream/frame_stream.h"

namespace Bridge {

// [any thread] but where a function says otherwise.
class Session {
 public:
  // With full access if there is a claim, otherwise for reading alone. Null, and an error, when the camera does not
  // answer or another program has it.
  static std::shared_ptr<Session> Open(VmbHandle_t handle, const CameraRecord& camera,
                                       std::unique_ptr<Claims::Claim> claim, VmbError_t& error);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  bool HasFullAccess() const { return m_stream != nullptr; }
  // DeviceNotOpen once the connection is lost.
  VmbError_t Alive() const { return m_lost ? VmbErrorDeviceNotOpen : VmbErrorSuccess; }

  // Null without full access.
  FrameStream* Frames() const { return m_stream.get(); }
  // The body gets the features, locked. A camera that has not answered in time is not asked again for a while: each
  // question in vain takes seconds, and a release asks several.
  template <class Body>
  VmbError_t WithFeatures(Body body) {
    const BRecursiveMutexLock lock(m_mutex);
    if (m_closed) return VmbErrorBadHandle;
    if (std::chrono::steady_clock::now() < m_silent_until) return VmbErrorTimeout;
    return Answered(body(m_features));
  }
  bool OnThread() const { return m_stream && m_stream->OnCallbackThread(); }
  // Ends capture and gives the camera up. Not from a callback.
  void Close();

 private:
  Session(VmbHandle_t handle, std::unique_ptr<Claims::Claim> claim, Object<ArvDevice> device);
  static constexpr std::chrono::seconds kSilence{8};

  // What the camera answered.
  VmbError_t Answered(VmbError_t error) KEL_REQUIRES(m_mutex) {
    if (error == VmbErrorTimeout) m_silent_until = std::chrono::steady_clock::now() + kSilence;
    return error;
  }
  bool IsSilent() const;

  static void OnControlLost(ArvDevice* device, gpointer self);

  // Given up after the camera is.
  const std::unique_ptr<Claims::Claim> m_claim;
  const Object<ArvDevice> m_device;
  std::atomic<bool> m_lost{false};
  // Held through every use of the camera's description, which Aravis does not guard.
  mutable BRecursiveMutex m_mutex;
  AcquisitionState m_state;
  CameraClock m_clock;
  Features m_features KEL_GUARDED_BY(m_mutex);
  bool m_closed KEL_GUARDED_BY(m_mutex) = false;
  std::chrono::steady_clock::time_point m_silent_until KEL_GUARDED_BY(m_mutex);
  const std::unique_ptr<FrameStream> m_stream;
};

}  // namespace Bridge
