// api/capture_calls.cpp
// VimbaC: frames and capture.
#include "VimbaC.h"
#include "api/api_call.h"

using Simulator::ApiCall;
using Simulator::CaptureQueue;
using Simulator::Session;
using Simulator::VimbaSystem;

namespace {

// Whether a call works on a lost camera, as all do that take frames back.
enum class Lost { kRefused, kAllowed };

template <class Body>
VmbError_t WithFrames(VimbaSystem& system, VmbHandle_t camera, Lost lost, Body body) {
  const std::shared_ptr<Session> session = system.FindSession(camera);
  if (!session) return VmbErrorBadHandle;
  if (lost == Lost::kRefused && session->Alive() != VmbErrorSuccess) return session->Alive();
  CaptureQueue* const frames = session->Frames();
  return frames ? body(*frames) : VmbErrorInvalidAccess;
}

}  // namespace

VmbError_t VmbFrameAnnounce(VmbHandle_t camera, const VmbFrame_t* frame, VmbUint32_t frame_size_bytes) {
  Simulator::CallRecord& record = VimbaSystem::Instance().Record();
  const bool numbered = record.NumberFrame(camera, frame);
  const VmbError_t result =
      ApiCall(__func__).On(camera).Frame(frame).Size(frame_size_bytes, sizeof *frame).Answer([&](VimbaSystem& system) {
        return WithFrames(system, camera, Lost::kRefused, [&](CaptureQueue& frames) { return frames.Announce(frame); });
      });
  if (result && numbered) record.ForgetFrame(camera, frame);
  return result;
}

VmbError_t VmbFrameRevokeAll(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).Answer([&](VimbaSystem& system) {
    const VmbError_t result =
        WithFrames(system, camera, Lost::kAllowed, [&](CaptureQueue& frames) { return frames.RevokeAll(); });
    if (!result) system.Record().ForgetFrames(camera);
    return result;
  });
}

VmbError_t VmbCaptureStart(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kRefused, [&](CaptureQueue& frames) { return frames.Start(); });
  });
}

VmbError_t VmbCaptureEnd(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kAllowed, [&](CaptureQueue& frames) {
      frames.End();
      return VmbError_t{VmbErrorSuccess};
    });
  });
}

VmbError_t VmbCaptureFrameQueue(VmbHandle_t camera, const VmbFrame_t* frame, VmbFrameCallback callback) {
  return ApiCall(__func__).On(camera).Frame(frame).Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kRefused,
                      [&](CaptureQueue& frames) { return frames.Queue(frame, callback); });
  });
}

VmbError_t VmbCaptureQueueFlush(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kAllowed, [&](CaptureQueue& frames) {
      frames.Flush();
      return VmbError_t{VmbErrorSuccess};
    });
  });
}
