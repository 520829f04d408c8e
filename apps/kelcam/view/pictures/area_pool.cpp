// area_pool.cpp
// The memory of frames, used again.
#include "view/pictures/area_pool.h"

#include <algorithm>
#include <utility>

namespace Kelcam {
namespace {

// One is being written, one is the newest, one or two are being encoded.
constexpr std::size_t kMostIdle = 4;

}  // namespace

BSmartRef<BBaseAoi> AreaPool::Take(BBaseAoi::Kind kind) {
  const BMutexLock lock(m_idle->mutex);
  auto& areas = m_idle->areas;
  // Those of a kind that is not used any more.
  std::erase_if(areas, [&](const BSmartRef<BBaseAoi>& area) { return area->ImageKind() != kind; });
  if (areas.empty()) return BSmartRef<BBaseAoi>(new BBaseAoi(kind));
  BSmartRef<BBaseAoi> area = areas.back();
  areas.pop_back();
  return area;
}

SharedFrame AreaPool::Share(Frame frame) const {
  const auto give_back = [idle = m_idle](const Frame* shared) {
    const std::unique_ptr<const Frame> owned(shared);
    const BMutexLock lock(idle->mutex);
    if (idle->areas.size() < kMostIdle) idle->areas.push_back(owned->area);
  };
  return SharedFrame(new Frame(std::move(frame)), give_back);
}

}  // namespace Kelcam
