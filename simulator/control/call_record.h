// control/call_record.h
// The record of API calls, a line a call in the order in which they began.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>

#include "VimbaC.h"
#include "bmutex.h"

namespace Simulator {

// Has the names of handles and frames itself, so that a call is recorded before it waits for any lock of a camera.
// Keeps the newest kMostLines lines, so that a program may run for weeks. [any thread]
class CallRecord {
 public:
  static constexpr std::size_t kMostLines = 100'000;

  // Lines are numbered from 1 and keep their numbers when older ones are dropped.
  using Line = std::uint64_t;
  // Adds a line without its result. Returns 0 when recording is off.
  Line Begin(std::string call);
  // Adds the result; none for a call that returns nothing. Does nothing when the line has been dropped.
  void End(Line line, std::optional<VmbError_t> result);

  // Counts a call, recorded or not.
  void Count();
  std::uint64_t Total() const;

  void SetRecording(bool on);
  bool Recording() const;
  void Clear();
  // The kept lines. Those of calls that have not returned yet end in " = ...".
  std::string Text() const;

  void NameHandle(VmbHandle_t handle, std::string name);
  // Forgets the handle and its frames.
  void ForgetHandle(VmbHandle_t handle);
  // "system", "null", the camera's id or "unknown".
  std::string HandleText(VmbHandle_t handle) const;

  // Gives the frame the next number of its camera unless it has one. Returns whether it did.
  bool NumberFrame(VmbHandle_t camera, const VmbFrame_t* frame);
  void ForgetFrame(VmbHandle_t camera, const VmbFrame_t* frame);
  void ForgetFrames(VmbHandle_t camera);
  // "frame 3", "frame null" or "frame unknown".
  std::string FrameText(VmbHandle_t camera, const VmbFrame_t* frame) const;

 private:
  struct Entry {
    std::string call;
    bool ended = false;
    std::optional<VmbError_t> result;
  };
  struct Handle {
    std::string name;
    std::map<const VmbFrame_t*, std::size_t> frames;
    std::size_t next_frame = 0;
  };

  mutable BMutex m_mutex;
  std::deque<Entry> m_entries KEL_GUARDED_BY(m_mutex);
  // The line number of the first entry.
  Line m_first KEL_GUARDED_BY(m_mutex) = 1;
  std::uint64_t m_total KEL_GUARDED_BY(m_mutex) = 0;
  bool m_recording KEL_GUARDED_BY(m_mutex) = true;
  std::map<VmbHandle_t, Handle> m_handles KEL_GUARDED_BY(m_mutex);
};

}  // namespace Simulator
