// camera_board.h
// What is known of a camera, for everybody who asks.
#pragma once

#include <cstdint>

#include "bmutex.h"
#include "view/cameras/camera_state.h"

namespace Kelcam {

// The camera's thread writes it. [any thread]
class CameraBoard {
 public:
  CameraBoard(std::size_t index, const std::string& title) {
    m_state.index = index;
    m_state.title = title;
    m_state.since = std::chrono::system_clock::now();
  }

  CameraState State() const {
    const BMutexLock lock(m_mutex);
    return m_state;
  }
  // Grows with each change of the state.
  std::uint64_t Version() const {
    const BMutexLock lock(m_mutex);
    return m_version;
  }
  CameraFigures Figures() const {
    const BMutexLock lock(m_mutex);
    return m_figures;
  }

  template <class Change>
  void ChangeState(const Change& change) {
    const BMutexLock lock(m_mutex);
    const Condition before = m_state.condition;
    change(m_state);
    if (m_state.condition != before) m_state.since = std::chrono::system_clock::now();
    ++m_version;
  }
  template <class Change>
  void ChangeFigures(const Change& change) {
    const BMutexLock lock(m_mutex);
    change(m_figures);
  }

 private:
  mutable BMutex m_mutex;
  CameraState m_state KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_version KEL_GUARDED_BY(m_mutex) = 0;
  CameraFigures m_figures KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam
