// engine/frame_filling.cpp
// How an exposure's picture gets into a frame buffer, packet by packet when packets are lost.
#include "engine/frame_filling.h"

#include <algorithm>
#include <cstring>

namespace Simulator {

void FrameContent::Render(const CaptureSettings& settings) {
  rendered.resize(settings.image_bytes);
  scene->Render(settings.shot, rendered.data());
}

FillResult FillFrame(const CaptureSettings& settings, FrameContent& content, CaptureQueue::Buffer buffer) {
  FillResult result;
  const bool whole = content.lost.empty() && buffer.size_bytes >= settings.image_bytes;
  if (whole && content.scene && content.rendered.empty()) {
    content.scene->Render(settings.shot, buffer.bytes);
  } else if (content.scene && content.rendered.empty()) {
    content.Render(settings);
  }
  std::size_t packet = 0;
  for (std::size_t begin = 0; begin < settings.image_bytes; begin += settings.packet_bytes, ++packet) {
    if (!content.lost.empty() && content.lost[packet]) {
      ++result.packets_lost;
      continue;
    }
    ++result.packets_received;
    const std::size_t end =
        std::min({begin + settings.packet_bytes, settings.image_bytes, std::size_t{buffer.size_bytes}});
    if (begin >= end) continue;
    if (!content.rendered.empty()) std::memcpy(buffer.bytes + begin, content.rendered.data() + begin, end - begin);
    result.bytes += end - begin;
  }
  if (result.packets_lost != 0) result.status = VmbFrameStatusIncomplete;
  if (buffer.size_bytes < settings.image_bytes) result.status = VmbFrameStatusTooSmall;
  return result;
}

VmbFrame_t DescribeFilled(const CaptureSettings& settings, const FillResult& result) {
  VmbFrame_t frame{};
  frame.receiveStatus = result.status;
  frame.receiveFlags = VmbFrameFlagsDimension | VmbFrameFlagsOffset | VmbFrameFlagsFrameID | VmbFrameFlagsTimestamp;
  frame.imageSize = static_cast<VmbUint32_t>(result.bytes);
  frame.pixelFormat = settings.shot.pixel_format;
  frame.width = static_cast<VmbUint32_t>(settings.shot.width);
  frame.height = static_cast<VmbUint32_t>(settings.shot.height);
  frame.offsetX = static_cast<VmbUint32_t>(settings.shot.offset_x);
  frame.offsetY = static_cast<VmbUint32_t>(settings.shot.offset_y);
  return frame;
}

}  // namespace Simulator
