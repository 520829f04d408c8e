// event_text.h
// Server-sent events as they travel.
#pragma once

#include <memory>
#include <string>

#include "view/http/http_message.h"

namespace Kelcam {

inline constexpr const char* kCamerasEvent = "cameras";
inline constexpr const char* kFrameEvent = "frame";
inline constexpr const char* kFiguresEvent = "figures";
inline constexpr const char* kMessageEvent = "message";

// data: on one line.
inline std::shared_ptr<const std::string> EventText(const std::string& event, const std::string& data) {
  return std::make_shared<const std::string>("event: " + event + "\ndata: " + data + "\n\n");
}

}  // namespace Kelcam
