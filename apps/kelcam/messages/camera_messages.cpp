// camera_messages.cpp
// The driver's messages about one camera.
#include "messages/camera_messages.h"

namespace Kelcam {

CameraMessages::CameraMessages(MessageLog& log) : m_log(log) { m_log.Add(*this); }

CameraMessages::~CameraMessages() { m_log.Remove(*this); }

void CameraMessages::SetIdentifier(const std::string& identifier) {
  const BMutexLock lock(m_mutex);
  m_identifier = identifier;
}

void CameraMessages::OnMessage(const std::string& message) {
  const BMutexLock lock(m_mutex);
  if (IsAbout(message, m_identifier)) m_memory.Add(message);
}

}  // namespace Kelcam
