// camera_return.h
// A camera that went away, until it is back.
#pragma once

#include <functional>
#include <memory>

#include "base/failure.h"
#include "device/camera_session.h"
#include "device/camera_source.h"
#include "device/growing_pauses.h"

namespace Kelcam {

// Opens the camera of an earlier session once more, if it is there. Null: it is not. Throws Failure when it refuses.
std::unique_ptr<CameraSession> OpenAgain(const std::shared_ptr<CameraSource>& source);

// Opens a camera again and again until it answers, with pauses that grow. It holds no session: whoever calls has closed
// the lost one before, and owns the one that comes. While it waits the program does not end at once when it is
// interrupted, but comes back here. [the thread that owns the camera]
class CameraReturn {
 public:
  // Opens the camera and sets it up. Null: it is not there. What it throws is no end either: somebody may plug in
  // another one.
  using Open = std::function<std::unique_ptr<CameraSession>()>;
  using IsOver = std::function<bool()>;
  // Why a camera that is there does not open: each reason once in a row.
  using OnRefusal = std::function<void(const Fault&)>;

  CameraReturn(Open open, OnRefusal on_refusal, GrowingPauses::Limits pauses);

  // The new session; null: it was over before. The first try comes at once, unless the last session was no success:
  // then the pauses go on where they ended.
  std::unique_ptr<CameraSession> Await(const IsOver& is_over);
  // What was opened is of use: an image came.
  void NoteSuccess();
  // Of the last Await.
  int Tries() const { return m_tries; }

 private:
  std::unique_ptr<CameraSession> Try();

  const Open m_open;
  const OnRefusal m_on_refusal;
  GrowingPauses m_pauses;
  bool m_begins_at_once = true;
  int m_tries = 0;
  std::string m_last_refusal;
};

}  // namespace Kelcam
