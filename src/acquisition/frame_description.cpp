// frame_description.cpp
// One line about what the library delivered.
#include "acquisition/frame_description.h"

namespace {

const wchar_t* StatusText(VmbFrameStatus_t status) {
  switch (status) {
    case VmbFrameStatusComplete:
      return L" FrameStatusComplete";
    case VmbFrameStatusIncomplete:
      return L" FrameStatusInComplete";
    case VmbFrameStatusTooSmall:
      return L" FrameStatusTooSmall";
    case VmbFrameStatusInvalid:
      return L" FrameStatusInvalid";
    default:
      return L"unknown FrameStatus";
  }
}

}  // namespace

VmbUint64_t FrameContextId(const VmbFrame_t& frame) { return reinterpret_cast<std::uintptr_t>(frame.context[1]); }

WString DescribeFrame(const VmbFrame_t& frame) {
  WString text = WString::Format(L"Frame context id = %llu", FrameContextId(frame)) + StatusText(frame.receiveStatus);
  if (frame.receiveFlags & VmbFrameFlagsDimension) {
    text += WString::Format(L" FrameDimension = %ux%u", frame.width, frame.height);
  }
  if (frame.receiveFlags & VmbFrameFlagsOffset) {
    text += WString::Format(L" FrameOffset = %ux%u", frame.offsetX, frame.offsetY);
  }
  if (frame.receiveFlags & VmbFrameFlagsFrameID) text += WString::Format(L" FrameID = %llu", frame.frameID);
  if (frame.receiveFlags & VmbFrameFlagsTimestamp) text += WString::Format(L" Timestamp = %llu", frame.timestamp);
  return text;
}
