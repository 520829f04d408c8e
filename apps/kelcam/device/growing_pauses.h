// growing_pauses.h
// Pauses between tries, each longer than the one before.
#pragma once

#include <chrono>
#include <functional>

namespace Kelcam {

// Each pause is twice as long as the one before, up to the longest. [one thread]
class GrowingPauses {
 public:
  struct Limits {
    std::chrono::milliseconds first{250};
    std::chrono::milliseconds longest{5000};
  };

  explicit GrowingPauses(Limits limits) : m_limits(limits), m_next(FirstOf(limits)) {}

  // How long the next pause is.
  std::chrono::milliseconds Next() const { return m_next; }
  // Waits for as long as the next pause is. False: it was over before, which is asked again and again.
  bool Wait(const std::function<bool()>& is_over);
  // The next pause is the first one again.
  void Reset() { m_next = FirstOf(m_limits); }

 private:
  static std::chrono::milliseconds FirstOf(Limits limits);

  Limits m_limits;
  std::chrono::milliseconds m_next;
};

}  // namespace Kelcam
