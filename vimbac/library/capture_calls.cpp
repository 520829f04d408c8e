// library/capture_calls.cpp
// VimbaC: frames and capture.
#include "VimbaC.h"
#include "api/api_call.h"

using VimbaLibrary::ApiCall;
using VimbaLibrary::VimbaSystem;

namespace {

// Whether a call works on a lost camera, as all do that take frames back.
enum class Lost { kRefused, kAllowed };

template <class Body>
VmbError_t WithFrames(VimbaSystem& system, VmbHandle_t camera, Lost lost, Body body) {
  const auto session = system.FindSession(camera);
  if (!session) return VmbErrorBadHandle;
  if (lost == Lost::kRefused && session->Alive() != VmbErrorSuccess) return session->Alive();
  auto* const frames = session->Frames();
  return frames ? body(*frames) : VmbErrorInvalidAccess;
}

}  // namespace

VmbError_t VmbFrameAnnounce(VmbHandle_t camera, const VmbFrame_t* frame, VmbUint32_t frame_size_bytes) {
  ApiCall call(__func__);
  call.On(camera).NewFrame(frame).Size(frame_size_bytes, sizeof *frame);
  return call.Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kRefused, [&](auto& frames) { return frames.Announce(frame); });
  });
}

VmbError_t VmbFrameRevokeAll(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).NoMoreFrames().Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kAllowed, [&](auto& frames) { return frames.RevokeAll(); });
  });
}

VmbError_t VmbCaptureStart(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kRefused, [&](auto& frames) { return frames.Start(); });
  });
}

VmbError_t VmbCaptureEnd(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kAllowed, [&](auto& frames) {
      frames.End();
      return VmbError_t{VmbErrorSuccess};
    });
  });
}

VmbError_t VmbCaptureFrameQueue(VmbHandle_t camera, const VmbFrame_t* frame, VmbFrameCallback callback) {
  return ApiCall(__func__).On(camera).Frame(frame).Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kRefused, [&](auto& frames) { return frames.Queue(frame, callback); });
  });
}

VmbError_t VmbCaptureQueueFlush(VmbHandle_t camera) {
  return ApiCall(__func__).On(camera).Answer([&](VimbaSystem& system) {
    return WithFrames(system, camera, Lost::kAllowed, [&](auto& frames) {
      frames.Flush();
      return VmbError_t{VmbErrorSuccess};
    });
  });
}
