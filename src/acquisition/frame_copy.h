// frame_copy.h
// From a captured frame into the host's image.
#pragma once

#include <cstdint>

#include "acquisition/frame_queue.h"
#include "bsize.h"

class BBaseAoi;
class BColorConverter;

// What the camera was set up to deliver.
struct FrameLayout {
  BSize size;  // of the camera's image
  std::int64_t payload_bytes = 0;
  int rotation = 0;  // quarter turns: 1 clockwise, -1 counter-clockwise, 0 none
  bool is_color = false;
  bool yuv_stretch = false;
  const BColorConverter* converter = nullptr;  // of a colour camera
};

// Fills an area of either kind and holds it meanwhile. One that holds no such image is left alone. [host thread]
void CopyFrameToAoi(const BFrameQueue::BFrame& frame, const FrameLayout& layout, BBaseAoi& aoi);

// Both reset the area to the camera's image where it is not that already, and leave its pixels alone for a format that
// is not copied or that needs more bytes than the frame holds. The caller holds the area. They throw
// NBoard::Exception::eWrongImageKind for an area of the other kind. [host thread]
void CopyFrameToRgbAoi(const BFrameQueue::BFrame& frame, const FrameLayout& layout, BBaseAoi& aoi);
void CopyFrameToMonoAoi(const BFrameQueue::BFrame& frame, const FrameLayout& layout, BBaseAoi& aoi);
