// frame_arrivals.h
// When frames arrived, as the driver's messages report it.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bmutex.h"
#include "messages/message_log.h"

namespace Kelcam {

struct FrameArrival {
  std::chrono::steady_clock::time_point time;  // when the driver reported it
  std::optional<std::uint64_t> timestamp;      // the camera's clock at the exposure
  bool is_complete = false;
  bool is_refused = false;  // it is older than the start
};

// None for a message that is not about a frame that arrived.
std::optional<FrameArrival> ArrivalIn(const std::string& message, std::chrono::steady_clock::time_point time);

class FrameArrivals final : public MessageListener {
 public:
  // Listens until it is destroyed, to the messages about the camera with this identifier; empty: to all. The log must
  // outlive the object.
  FrameArrivals(MessageLog& log, std::string identifier);
  ~FrameArrivals();
  FrameArrivals(const FrameArrivals&) = delete;
  FrameArrivals& operator=(const FrameArrivals&) = delete;

  void OnMessage(const std::string& message) override;

  // The first kMostKept of them. [any thread]
  std::vector<FrameArrival> All() const;

 private:
  static constexpr std::size_t kMostKept = 1'000'000;

  MessageLog& m_log;
  const std::string m_identifier;
  mutable BMutex m_mutex;
  std::vector<FrameArrival> m_arrivals KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam
