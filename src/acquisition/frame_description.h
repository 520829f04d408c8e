// frame_description.h
// One line about what the library delivered.
#pragma once

#include "VimbaC.h"
#include "wstring.h"

// Context id, receive status and, as far as the frame's flags vouch for them, dimension, offset, id and timestamp.
WString DescribeFrame(const VmbFrame_t& frame);

// The context id that the frame was queued under (its second context value).
VmbUint64_t FrameContextId(const VmbFrame_t& frame);
