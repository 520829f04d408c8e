// snap_cycle.h
// The host's three calls: start, snap, stop.
#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "berror.h"
#include "bmutex.h"

class BBaseAoi;
class BFrameQueue;
class BImagingDeviceTrigger;
class BLogCollector;
class BStopWatch;
class FrameReceiver;
class VimbaCamera;
struct FrameLayout;

// One acquisition after the other: each begins with StartSnap and ends with StopSnap, and Snap waits in between for one
// frame. The three exclude each other, whatever threads call them. [any thread] unless an operation says otherwise.
class SnapCycle {
 public:
  // The camera's stream, which adapts to how its snaps end. Called with the snap mutex held; writes into the message of
  // the operation that calls.
  class Stream {
   public:
    virtual void BeforeAcquisition(BLogCollector& log) = 0;
    // `snap_error`: the code of the last snap that failed, 0 when none did.
    virtual void AfterAcquisition(std::int32_t snap_error, BLogCollector& log) = 0;

   protected:
    ~Stream() = default;
  };

  // What is given must outlive the cycle. `snap_watch` begins anew with each acquisition.
  SnapCycle(const VimbaCamera& camera, BStopWatch& snap_watch, BFrameQueue& queue, FrameReceiver& receiver,
            Stream& stream);
  SnapCycle(const SnapCycle&) = delete;
  SnapCycle& operator=(const SnapCycle&) = delete;

  // The trigger that the cycle fires and switches; null for none, as at the beginning. [host thread]
  void SetTrigger(BImagingDeviceTrigger* trigger) { m_trigger = trigger; }

  // Throws BError 12103 when the camera refuses; nothing runs then.
  void StartSnap(bool one_shot);
  // Fires the software trigger where it is the one in use, waits for a frame or a failure, and copies a frame into the
  // area. A null area only consumes it.
  BError Snap(BBaseAoi* aoi, std::uint32_t timeout_ms, const FrameLayout& layout);
  // Throws BError 12103 when the camera refuses; may be tried again.
  void StopSnap();

  // The camera's clock now, or FrameReceiver::kNoTimestamp when it cannot be read.
  std::uint64_t LatchCameraTimestamp();
  // From a successful start of a continuous run to its stop.
  bool RunsContinuously() const { return m_runs_continuously; }
  // Held for the whole of the three calls. Recursive, because a stop adapts the stream's rate under it, and writing a
  // rate takes it by itself: whoever writes one without a snap has to be kept out of a running snap, too.
  BRecursiveMutex& SnapMutex() { return m_snap_mutex; }

 private:
  void SetAcquisitionMode(bool one_shot, BLogCollector& log) KEL_REQUIRES(m_snap_mutex);
  void StartAcquisition(BLogCollector& log);
  bool TriggerIsExternal() const;
  void LogReceivedFrames(BLogCollector& log) const KEL_REQUIRES(m_snap_mutex);

  const VimbaCamera& m_camera;
  BStopWatch& m_snap_watch;
  BFrameQueue& m_queue;
  FrameReceiver& m_receiver;
  Stream& m_stream;
  BImagingDeviceTrigger* m_trigger = nullptr;
  // What was asked for last; a run that could not be started leaves it set.
  bool m_continuous_mode KEL_GUARDED_BY(m_snap_mutex) = false;
  std::atomic<bool> m_runs_continuously{false};
  std::atomic<std::int32_t> m_last_snap_error{0};
  BRecursiveMutex m_snap_mutex;
  std::vector<std::uint64_t> m_received_frame_ids KEL_GUARDED_BY(m_snap_mutex);
};
