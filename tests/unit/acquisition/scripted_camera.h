// scripted_camera.h
// The parts of one camera's acquisition, put together as a device does it, on the scripted library.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "acquisition/frame_receiver.h"
#include "acquisition/frame_ring.h"
#include "acquisition/snap_cycle.h"
#include "bstopwatch.h"
#include "support/host_output.h"
#include "unit/scripted/scripted_library.h"
#include "vimba/vimba_camera.h"

// An opened camera whose payload size is known; nothing is announced. Nothing calls a handler but the test.
struct ScriptedCamera : testing::Test, FrameReceiver::Listener, SnapCycle::Stream {
  static constexpr VmbInt64_t kPayloadBytes = 12;
  // Of frames that no test need look at closer.
  static constexpr std::uint64_t kScanStart = 1000;

  HostOutput output;
  VimbaCamera camera;
  BStopWatch watch;
  BFrameQueue queue;
  FrameRing ring{camera, this, IgnoreFrame};
  FrameReceiver receiver{camera, watch, ring, queue, *this};
  SnapCycle cycle{camera, watch, queue, receiver, *this};
  // What the listeners heard, in their order.
  std::vector<std::string> heard;

  ScriptedCamera();
  ~ScriptedCamera() override;

  // The lines of the one message with this title's end, without the title.
  std::vector<std::wstring> Lines(const std::wstring& title_end) const;
  BError Pop();

  static void IgnoreFrame(VmbHandle_t camera, VmbFrame_t* frame);

 private:
  void OnLostFrame() override;
  void BeforeAcquisition(BLogCollector& log) override;
  void AfterAcquisition(std::int32_t snap_error, BLogCollector& log) override;
};
