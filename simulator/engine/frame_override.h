// engine/frame_override.h
// What a frame fault or a delivery by hand changes in a frame.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "VimbaC.h"

namespace Simulator {

struct FrameOverride {
  std::optional<VmbFrameStatus_t> status;
  std::optional<VmbFrameFlags_t> flags;
  std::optional<std::uint32_t> image_size;
  std::optional<std::uint32_t> ancillary_size;
  std::optional<VmbPixelFormat_t> pixel_format;
  std::optional<std::uint32_t> width;
  std::optional<std::uint32_t> height;
  std::optional<std::uint32_t> offset_x;
  std::optional<std::uint32_t> offset_y;
  std::optional<std::uint64_t> frame_id;
  std::optional<std::uint64_t> timestamp;

  // Only in faults.
  std::chrono::milliseconds delay{};
  bool drop = false;
  bool unplug = false;

  // Takes from `other` the members that have no value here. Delays add up.
  void MergeFrom(const FrameOverride& other);
  void ApplyTo(VmbFrame_t& frame) const;
};

}  // namespace Simulator
