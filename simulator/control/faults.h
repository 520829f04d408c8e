// control/faults.h
// The faults that a test or a configuration has asked for, and when each is due.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "VimbaC.h"
#include "bmutex.h"
#include "control/answer.h"
#include "engine/frame_override.h"

namespace Simulator {

// An empty text matches every value.
struct CallPattern {
  std::string call;
  std::string camera;
  std::string feature;
  std::string value;
};

struct CallFault {
  CallPattern pattern;
  // The first call that is hit, counted from 1 among those that have matched since the fault was added.
  std::int64_t occurrence = 1;
  // How many are hit; 0: all from the first one.
  std::int64_t count = 1;
  VmbError_t error = VmbErrorSuccess;
  // The call has its effect although it answers the error.
  bool effective = false;
  // What VmbFeatureCommandIsDone reports in place of the command's state.
  std::optional<bool> done;
  // Null: the truth.
  std::shared_ptr<const Answer> answer;
  std::chrono::milliseconds delay{};
};

struct FrameFault {
  std::string camera;
  // The first exposure that is hit, counted from 0 among the camera's exposures since the fault was added.
  std::int64_t frame = 0;
  // One of so many exposures is hit, from the first one on.
  std::int64_t every = 1;
  // How many are hit; 0: all.
  std::int64_t count = 1;
  FrameOverride effect;
};

// What happens to one call.
struct CallEffect {
  VmbError_t error = VmbErrorSuccess;
  bool effective = false;
  std::optional<bool> done;
  std::shared_ptr<const Answer> answer;
  std::chrono::milliseconds delay{};
};

// [any thread]
class Faults {
 public:
  struct Set {
    std::vector<CallFault> calls;
    std::vector<FrameFault> frames;
  };
  void Add(Set faults);
  void Clear();

  // Counts the call. Delays of several faults add up; of several codes the first one is returned.
  CallEffect ForCall(const CallPattern& call);
  FrameOverride ForExposure(std::string_view camera);
  bool Any() const;

 private:
  template <class Fault>
  struct Counted {
    Fault fault;
    std::int64_t seen = 0;
  };

  mutable BMutex m_mutex;
  std::vector<Counted<CallFault>> m_calls KEL_GUARDED_BY(m_mutex);
  std::vector<Counted<FrameFault>> m_frames KEL_GUARDED_BY(m_mutex);
};

}  // namespace Simulator
