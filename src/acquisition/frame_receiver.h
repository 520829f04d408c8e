// frame_receiver.h
// What happens to a frame between the library's callback and the frame queue.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "VimbaC.h"
#include "acquisition/frame_blocks.h"
#include "acquisition/frame_queue.h"
#include "acquisition/workers_in_flight.h"

class BStopWatch;
class FrameRing;
struct ArrivedFrame;
class VimbaCamera;

// A good frame is copied into the queue by a worker of its own, a failed one leaves an error there, one that is older
// than the acquisition leaves nothing. Whatever it was, the frame goes back to the library.
class FrameReceiver {
 public:
  // No time of a camera; what a scan start that no frame can reach is set to.
  static constexpr std::uint64_t kNoTimestamp = ~std::uint64_t{0};

  // Hears of frames that were lost on their way. Called without any lock of the receiver or the queue. [Vimba thread]
  class Listener {
   public:
    virtual void OnLostFrame() = 0;

   protected:
    ~Listener() = default;
  };

  // Messages count on `snap_watch`. What is given must outlive the receiver.
  FrameReceiver(const VimbaCamera& camera, const BStopWatch& snap_watch, FrameRing& ring, BFrameQueue& queue,
                Listener& listener);
  FrameReceiver(const FrameReceiver&) = delete;
  FrameReceiver& operator=(const FrameReceiver&) = delete;

  // A good frame is copied when its timestamp is not below `scan_start`. kNoTimestamp, as at the beginning, refuses
  // every frame. [host thread]
  void SetScanStart(std::uint64_t scan_start) { m_start_scan_timestamp = scan_start; }
  // Refuses every frame for its scope, unless another scan start is set meanwhile: where that does not come about, the
  // one before holds again. [host thread]
  class Refusal {
   public:
    explicit Refusal(FrameReceiver& receiver)
        : m_receiver(receiver), m_before(receiver.m_start_scan_timestamp.exchange(kNoTimestamp)) {}
    ~Refusal() {
      if (!m_over) m_receiver.SetScanStart(m_before);
    }
    Refusal(const Refusal&) = delete;
    Refusal& operator=(const Refusal&) = delete;
    void EndWith(std::uint64_t scan_start) {
      m_over = true;
      m_receiver.SetScanStart(scan_start);
    }

   private:
    FrameReceiver& m_receiver;
    const std::uint64_t m_before;
    bool m_over = false;
  };

  // While an acquisition runs, memory for copies is kept ready. [host thread]
  void SetRunning(bool running) { m_blocks->SetRunning(running); }
  // Returns when every worker has handed its frame back and touches neither ring nor queue any more. No frame may
  // arrive meanwhile. [host thread]
  void WaitForWorkers() { m_workers.WaitUntilNone(); }

  // The registered handler. Nothing leaves it: without memory the acquisition fails and the frame goes back.
  // [Vimba thread]
  void OnFrameExt(VmbFrame_t* frame);
  // The whole job on the library's thread: an alternative to OnFrameExt that is not registered. [Vimba thread]
  void OnFrame(VmbFrame_t* frame);

  // Memory kept for the next copies. [any thread]
  std::size_t IdleBytes() const { return m_blocks->IdleBytes(); }

 private:
  class FrameInHand;

  void HandleFrame(const ArrivedFrame& frame, BFrameQueue::AcquisitionNumber acquisition);
  void HandleFrameInHand();
  void StartWorker(const ArrivedFrame& frame, BFrameQueue::AcquisitionNumber acquisition);
  void CopyAndHandBack(const ArrivedFrame& frame, BFrameQueue::AcquisitionNumber acquisition);
  BSmartRef<BFrameQueue::BFrame> CopyOf(const ArrivedFrame& frame);
  void LoseFrame(BError error);
  // Without memory even for its entry a failure is not reported: a snap that waits runs into its time-out instead.
  void PushFailure(const wchar_t* text);
  void PushFailureUnlessOver(BFrameQueue::AcquisitionNumber acquisition, const wchar_t* text);

  const VimbaCamera& m_camera;
  const BStopWatch& m_snap_watch;
  FrameRing& m_ring;
  BFrameQueue& m_queue;
  Listener& m_listener;
  // Shared with the copies, which may outlive the device.
  const std::shared_ptr<FrameBlocks> m_blocks = std::make_shared<FrameBlocks>();
  std::atomic<std::uint64_t> m_start_scan_timestamp{kNoTimestamp};
  WorkersInFlight m_workers;
};
