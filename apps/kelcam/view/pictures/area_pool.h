// area_pool.h
// The memory of frames, used again.
#pragma once

#include <memory>
#include <vector>

#include "bbaseaoi.h"
#include "bmutex.h"
#include "bsmartref.h"
#include "view/pictures/frame.h"

namespace Kelcam {

// Allocating a frame costs more than taking it: the system clears each page. [any thread]
class AreaPool {
 public:
  AreaPool() : m_idle(std::make_shared<Idle>()) {}

  // One that nobody else has, of this kind; its pixels are unspecified.
  BSmartRef<BBaseAoi> Take(BBaseAoi::Kind kind);
  // The frame's area comes back when the last one who looks at it has finished.
  SharedFrame Share(Frame frame) const;

 private:
  // Lives as long as a frame.
  struct Idle {
    BMutex mutex;
    std::vector<BSmartRef<BBaseAoi>> areas KEL_GUARDED_BY(mutex);
  };

  std::shared_ptr<Idle> m_idle;
};

}  // namespace Kelcam
