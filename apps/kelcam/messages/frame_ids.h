// frame_ids.h
// The camera's own count of its frames, as the driver's messages report it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "bmutex.h"
#include "messages/message_log.h"

namespace Kelcam {

// Counts the ids between those of two frames that arrived one after the other. A frame that arrived incomplete is not
// missing.
class FrameIds final : public MessageListener {
 public:
  // Listens until it is destroyed, to the messages about the camera with this identifier; empty: to all. The log must
  // outlive the object.
  FrameIds(MessageLog& log, std::string identifier);
  ~FrameIds();
  FrameIds(const FrameIds&) = delete;
  FrameIds& operator=(const FrameIds&) = delete;

  // From now on the messages are about the camera with this identifier. [any thread]
  void SetIdentifier(const std::string& identifier);
  void OnMessage(const std::string& message) override;

  // How many ids did not arrive; none: no frame with an id has arrived. [any thread]
  std::optional<std::uint64_t> Missing() const;

 private:
  void Note(std::uint64_t id) KEL_REQUIRES(m_mutex);

  MessageLog& m_log;
  mutable BMutex m_mutex;
  std::string m_identifier KEL_GUARDED_BY(m_mutex);
  std::optional<std::uint64_t> m_last KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_missing KEL_GUARDED_BY(m_mutex) = 0;
};

}  // namespace Kelcam
