// late_frames.h
// Frames that come when they should not: before an operation, or again and again while it runs.
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "fault.h"

// Of the faults those that say {"late": OPERATION, "during": BOOL}, with the members of VimbaSimDeliverFrame beside.
class LateFrames {
 public:
  explicit LateFrames(const std::vector<Fault>& faults);

  // One run of the operation.
  class Scope {
   public:
    Scope(const LateFrames& frames, const std::string& operation);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    std::atomic<bool> m_over{false};
    std::vector<std::thread> m_threads;
  };

 private:
  struct Frames {
    std::string operation;
    bool during = false;
    // As VimbaSimDeliverFrame takes them.
    std::string overrides;
  };
  std::vector<Frames> m_frames;
};
