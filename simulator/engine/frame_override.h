// engine/frame_override.h
// What a frame fault or a delivery by hand changes in a frame.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "VimbaC.h"

namespace Simulator {

// What comes back after an unplugging.
struct Replug {
  std::string camera;  // its id; empty: that of the camera that was unplugged
  std::chrono::milliseconds after{};
};

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

  // What the library should leave as it was announced. An address is changed by `buffer_shift` bytes.
  std::optional<std::uint32_t> buffer_size;
  std::optional<std::uint64_t> context0;
  std::optional<std::uint64_t> context1;
  std::optional<std::int64_t> buffer_shift;
  bool buffer_null = false;
  // So many times more the same record is called back, at once.
  std::int64_t again = 0;

  // Only in faults.
  std::chrono::milliseconds delay{};
  bool drop = false;
  bool unplug = false;
  // With `unplug`; none: nothing comes back.
  std::optional<Replug> replug;

  // Takes from `other` the members that have no value here. Delays add up.
  void MergeFrom(const FrameOverride& other);
  // The received part.
  void ApplyTo(VmbFrame_t& frame) const;
  // The announced part.
  void Alter(VmbFrame_t& frame) const;
};

}  // namespace Simulator
