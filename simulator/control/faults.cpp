// control/faults.cpp
// The faults that a test or a configuration has asked for, and when each is due.
#include "control/faults.h"

#include <utility>

namespace Simulator {
namespace {

bool Fits(const std::string& pattern, std::string_view value) { return pattern.empty() || pattern == value; }

bool Fits(const CallPattern& pattern, const CallPattern& call) {
  return Fits(pattern.call, call.call) && Fits(pattern.camera, call.camera) && Fits(pattern.feature, call.feature) &&
         Fits(pattern.value, call.value);
}

bool Due(std::int64_t seen, std::int64_t first, std::int64_t count, std::int64_t every = 1) {
  // The difference of two counts always fits; the sum of a first one and a large count would not.
  const std::int64_t since = seen - first;
  return seen >= first && since % every == 0 && (count == 0 || since / every < count);
}

}  // namespace

void Faults::Add(Set faults) {
  const BMutexLock lock(m_mutex);
  for (CallFault& fault : faults.calls) m_calls.push_back({std::move(fault)});
  for (FrameFault& fault : faults.frames) m_frames.push_back({std::move(fault)});
}

void Faults::Clear() {
  const BMutexLock lock(m_mutex);
  m_calls.clear();
  m_frames.clear();
}

bool Faults::Any() const {
  const BMutexLock lock(m_mutex);
  return !m_calls.empty();
}

CallEffect Faults::ForCall(const CallPattern& call) {
  CallEffect effect;
  const BMutexLock lock(m_mutex);
  for (Counted<CallFault>& counted : m_calls) {
    const CallFault& fault = counted.fault;
    if (!Fits(fault.pattern, call) || !Due(++counted.seen, fault.occurrence, fault.count)) continue;
    effect.delay += fault.delay;
    if (!effect.error) {
      effect.error = fault.error;
      effect.effective = fault.effective;
    }
    if (!effect.done) effect.done = fault.done;
    if (!effect.answer) effect.answer = fault.answer;
  }
  return effect;
}

FrameOverride Faults::ForExposure(std::string_view camera) {
  FrameOverride effect;
  const BMutexLock lock(m_mutex);
  for (Counted<FrameFault>& counted : m_frames) {
    const FrameFault& fault = counted.fault;
    if (Fits(fault.camera, camera) && Due(counted.seen++, fault.frame, fault.count, fault.every)) {
      effect.MergeFrom(fault.effect);
    }
  }
  return effect;
}

}  // namespace Simulator
