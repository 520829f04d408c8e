// camera_return.cpp
// A camera that went away, until it is back.
#include "device/camera_return.h"

#include <utility>

#include "base/interrupt.h"

namespace Kelcam {

std::unique_ptr<CameraSession> OpenAgain(const std::shared_ptr<CameraSource>& source) {
  return IsThere(*source) ? std::make_unique<CameraSession>(source) : nullptr;
}

CameraReturn::CameraReturn(Open open, OnRefusal on_refusal, GrowingPauses::Limits pauses)
    : m_open(std::move(open)), m_on_refusal(std::move(on_refusal)), m_pauses(pauses) {}

std::unique_ptr<CameraSession> CameraReturn::Await(const IsOver& is_over) {
  // What the run has done so far is still to be reported.
  const SomethingToClose results;
  m_tries = 0;
  m_last_refusal.clear();
  if (!std::exchange(m_begins_at_once, false) && !m_pauses.Wait(is_over)) return nullptr;
  do {
    if (is_over()) return nullptr;
    if (std::unique_ptr<CameraSession> session = Try()) return session;
  } while (m_pauses.Wait(is_over));
  return nullptr;
}

void CameraReturn::NoteSuccess() {
  m_begins_at_once = true;
  m_pauses.Reset();
}

std::unique_ptr<CameraSession> CameraReturn::Try() {
  ++m_tries;
  Fault fault;
  try {
    return m_open();
  } catch (...) {
    fault = FaultOfCurrentException();
  }
  if (std::exchange(m_last_refusal, fault.text) != fault.text) m_on_refusal(fault);
  return nullptr;
}

}  // namespace Kelcam
