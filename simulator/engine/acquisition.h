// engine/acquisition.h
// The sensor of one opened camera: when frames are exposed, and how they reach the queue.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bmutex.h"
#include "engine/camera_clock.h"
#include "engine/capture_settings.h"
#include "engine/clock.h"
#include "engine/counters.h"
#include "engine/frame_filling.h"
#include "engine/frame_override.h"
#include "engine/link.h"
#include "engine/picture_means.h"
#include "library/capture_queue.h"

namespace Simulator {

using VimbaLibrary::CaptureQueue;

// What the acquisition needs of the camera that it belongs to. All of it outlives the acquisition.
struct SensorParts {
  std::shared_ptr<const Scene> scene;
  CameraClock& clock;
  Counters& counters;
  Link& link;
  double packet_loss;
  std::uint64_t seed;
  // The faults that are due for the frame now exposed.
  std::function<FrameOverride()> next_faults;
  // Called without a lock when a fault unplugs the camera.
  std::function<void(const std::optional<Replug>&)> unplug;
  // Called without a lock after each picture that was taken with an automatic on.
  std::function<void(const PictureMeans&)> measured;
};

// Runs a thread of its own. [any thread] but where a function says otherwise.
class Acquisition {
 public:
  Acquisition(SensorParts parts, CaptureQueue& frames);
  // Ends as Close does.
  ~Acquisition();
  Acquisition(const Acquisition&) = delete;
  Acquisition& operator=(const Acquisition&) = delete;

  // New feature values; they hold from the next exposure on.
  void Apply(const CaptureSettings& settings);

  void Start();
  // The frame that is being exposed or sent still arrives.
  void Stop();
  // The frame that is being exposed or sent is dropped, and so are those that wait for their time-out.
  void Abort();
  bool Running() const;

  void SoftwareTrigger();
  void InputEdge(int line, bool rising);
  // Has the thread look again whether a frame may begin.
  void Wake();

  // Delivers one frame of the present settings at once, past every acquisition rule. Returns after its callback; false
  // when no frame is queued.
  bool DeliverNow(const FrameOverride& override);

  // No frame is being exposed or sent, and none will be unless time passes or somebody calls.
  bool Idle() const;
  // Grows with every start, trigger and exposure.
  std::uint64_t Activity() const { return m_activity; }
  // Ends the thread and drops frames as Abort does. Not on that thread.
  void Close();
  // Whether the caller runs on the thread.
  bool OnThread() const;

 private:
  // One frame in the camera.
  struct Exposure {
    CaptureSettings settings;
    Clock::time_point start;
    FrameOverride faults;
    std::uint64_t frame_id;
    std::uint64_t acquisition;
    std::uint64_t aborts;
  };
  // One frame that has been sent.
  struct Arrival {
    Exposure exposure;
    FrameContent content;
    // Null: nothing is sent again.
    Link::Resend resend;
    Clock::time_point due;
  };

  void Run();
  bool NextStart(BMutexLock& lock, Clock::time_point& start) KEL_REQUIRES(m_mutex);
  Exposure BeginExposure(Clock::time_point start) KEL_REQUIRES(m_mutex);
  void Expose(BMutexLock& lock, const Exposure& exposure) KEL_REQUIRES(m_mutex);
  // Returns false when the frame was dropped on the way.
  bool Send(BMutexLock& lock, const Link::Transfer& transfer, Arrival& frame) KEL_REQUIRES(m_mutex);
  // Takes the frame that is being sent off the link.
  void AbandonTransfer() KEL_REQUIRES(m_mutex);
  void LosePackets(const Link::Transfer& transfer, const std::vector<Link::Loss>& losses, Arrival& frame);
  // Waits for a change, but no longer than until that moment, or hands over what has arrived.
  void Await(BMutexLock& lock, Clock::time_point moment) KEL_REQUIRES(m_mutex);
  bool WaitUntil(BMutexLock& lock, Clock::time_point moment, const Exposure& exposure) KEL_REQUIRES(m_mutex);
  void FinishFrame(Clock::time_point arrived, const Exposure& exposure) KEL_REQUIRES(m_mutex);
  // Puts the frame in the line of those that arrive, or drops it when those before it need all queued frames.
  void Receive(Arrival frame) KEL_REQUIRES(m_mutex);
  // Hands over the frames that have arrived, one after the other. Returns whether there was one.
  bool HandOverArrived(BMutexLock& lock) KEL_REQUIRES(m_mutex);
  bool HasArrived(Arrival& frame) KEL_REQUIRES(m_mutex);
  // Called without the lock.
  void HandOver(Arrival& frame);
  // Fills the oldest queued frame, if there is one, and returns its number. Called without the lock.
  std::optional<std::uint64_t> Deliver(const Exposure& exposure, FrameContent& content);
  void AddTrigger() KEL_REQUIRES(m_mutex);
  bool LevelHolds() const KEL_REQUIRES(m_mutex);
  bool Wanted() const KEL_REQUIRES(m_mutex);

  const SensorParts m_parts;
  CaptureQueue& m_frames;

  mutable BMutex m_mutex;
  BCondition m_changed;
  CaptureSettings m_settings KEL_GUARDED_BY(m_mutex);
  bool m_closing KEL_GUARDED_BY(m_mutex) = false;
  bool m_running KEL_GUARDED_BY(m_mutex) = false;
  bool m_exposing KEL_GUARDED_BY(m_mutex) = false;
  // Starts so far, so that a late frame does not count for the next acquisition.
  std::uint64_t m_acquisition KEL_GUARDED_BY(m_mutex) = 0;
  std::uint64_t m_aborts KEL_GUARDED_BY(m_mutex) = 0;
  std::uint64_t m_next_frame_id KEL_GUARDED_BY(m_mutex) = 0;
  std::int64_t m_frames_done KEL_GUARDED_BY(m_mutex) = 0;
  std::int64_t m_frame_limit KEL_GUARDED_BY(m_mutex) = 0;
  std::deque<Clock::time_point> m_triggers KEL_GUARDED_BY(m_mutex);
  // By the numbers of the lines, which begin with 1.
  std::array<bool, kInputLines + 1> m_level_high KEL_GUARDED_BY(m_mutex) = {};
  // The last start of an acquisition or choice of a source. No exposure starts earlier.
  Clock::time_point m_armed KEL_GUARDED_BY(m_mutex);
  // When sensor and stream are free again. No exposure starts earlier.
  Clock::time_point m_ready KEL_GUARDED_BY(m_mutex);
  Clock::time_point m_last_start KEL_GUARDED_BY(m_mutex);
  Clock::time_point m_last_arrival KEL_GUARDED_BY(m_mutex);
  // Of the frame that is being exposed or sent.
  std::optional<Link::Id> m_transfer KEL_GUARDED_BY(m_mutex);
  // In the order in which they were sent. One that waits for its time-out holds up those behind it.
  std::deque<Arrival> m_arriving KEL_GUARDED_BY(m_mutex);
  // The memory of the last rendered picture, for the next one.
  std::vector<std::uint8_t> m_scratch KEL_GUARDED_BY(m_mutex);

  // Decides which packets get lost. Used on the thread alone: frames delivered by hand lose none.
  std::mt19937_64 m_random;
  std::atomic<std::uint64_t> m_activity{0};
  std::atomic<std::thread::id> m_thread_id;
  std::thread m_thread;
};

}  // namespace Simulator
