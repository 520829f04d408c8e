// engine/frame_filling.h
// How an exposure's picture gets into a frame buffer, packet by packet when packets are lost.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/capture_settings.h"
#include "library/capture_queue.h"
#include "link/lost_packets.h"

namespace Simulator {

using VimbaLibrary::CaptureQueue;

struct FrameContent {
  // Null: the buffer's bytes stay as they are.
  const Scene* scene = nullptr;
  // Empty: to be rendered.
  std::vector<std::uint8_t> rendered;
  LostPackets lost;

  void Render(const CaptureSettings& settings);
};

struct FillResult {
  VmbFrameStatus_t status = VmbFrameStatusComplete;
  std::size_t bytes = 0;
  std::uint64_t packets_received = 0;
  std::uint64_t packets_lost = 0;
};

// Writes what arrives, never past the buffer. The place of a lost packet keeps the bytes that were there before.
FillResult FillFrame(const CaptureSettings& settings, FrameContent& content, CaptureQueue::Buffer buffer);

// The record of a frame that was filled so.
VmbFrame_t DescribeFilled(const CaptureSettings& settings, const FillResult& result);

}  // namespace Simulator
