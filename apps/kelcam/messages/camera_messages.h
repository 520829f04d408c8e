// camera_messages.h
// The driver's messages about one camera.
#pragma once

#include <string>

#include "bmutex.h"
#include "messages/message_log.h"

namespace Kelcam {

// Remembers messages for as long as it lives: all of them until it knows the camera's identifier, and then those about
// this camera and those about none. So the messages of other cameras explain nothing of this one.
class CameraMessages final : public MessageListener {
 public:
  // The log must outlive the object.
  explicit CameraMessages(MessageLog& log);
  ~CameraMessages();
  CameraMessages(const CameraMessages&) = delete;
  CameraMessages& operator=(const CameraMessages&) = delete;

  void SetIdentifier(const std::string& identifier);
  const MessageMemory& Memory() const { return m_memory; }

  void OnMessage(const std::string& message) override;

 private:
  MessageLog& m_log;
  BMutex m_mutex;
  std::string m_identifier KEL_GUARDED_BY(m_mutex);
  MessageMemory m_memory;
};

}  // namespace Kelcam
