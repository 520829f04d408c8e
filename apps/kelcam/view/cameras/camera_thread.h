// camera_thread.h
// The thread that owns one camera.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>

#include "commands/camera_event.h"
#include "device/bandwidth_link.h"
#include "device/camera_choice.h"
#include "device/camera_presence.h"
#include "device/camera_source.h"
#include "device/growing_pauses.h"
#include "view/cameras/camera_board.h"
#include "view/cameras/camera_wishes.h"
#include "view/cameras/command_queue.h"
#include "view/cameras/viewed_camera.h"
#include "view/pictures/area_pool.h"
#include "view/pictures/picture_desk.h"
#include "view/pictures/rate_meter.h"

namespace Kelcam {

// Runs the camera, hands its frames to the desk, does what pages ask for between two images, and opens the camera again
// after a loss.
class CameraThread {
 public:
  // Looks the camera up; throws Failure for one that there is not. link: null, or what the camera shares with others.
  // What is given must outlive the object.
  CameraThread(std::size_t index, const Options& options, const CameraChoice& choice, const Module& module,
               MessageLog& log, BandwidthLink* link, PictureDesk& desk);
  // Closes the camera.
  ~CameraThread();
  CameraThread(const CameraThread&) = delete;
  CameraThread& operator=(const CameraThread&) = delete;

  // Opens the camera, and prints why that fails: it is tried again later. Throws UsageError for what no later try can
  // mend. [the command's thread]
  void Open();
  // From now on the camera is its thread's.
  void Start();
  // The thread ends soon. [any thread]
  void AskToEnd();

  CameraBoard& Board() { return m_board; }         // [any thread]
  CommandQueue& Commands() { return m_commands; }  // [any thread]

  // One image while the run is not on; the frame's number. Throws Failure. [the camera's thread, from a command]
  std::uint64_t TakeShot();

 private:
  using Clock = std::chrono::steady_clock;

  void Run();
  bool AwaitReturn();
  void Report(const CameraEvent& event);
  std::unique_ptr<ViewedCamera> Opened(CameraSession::Inquiry inquiry);
  void RunUntilLost();
  void DoCommands();
  // False: it does not run now.
  bool KeepRunning();
  std::optional<Fault> TakeFrame();
  std::uint64_t Publish(const BSmartRef<BBaseAoi>& area);
  void CountFailure(const Fault& fault);
  bool IsLostAfter(const std::optional<Fault>& fault, LostCamera& lost);
  void NoteFiguresIfDue();
  void ShowCondition(Condition condition, const std::optional<Fault>& problem);
  void ShowState();

  CameraWishes m_wishes;
  MessageLog& m_log;
  BandwidthLink* const m_link;
  PictureDesk& m_desk;
  const std::shared_ptr<CameraSource> m_source;
  CameraBoard m_board;
  CommandQueue m_commands;
  std::atomic<bool> m_ends = false;

  // Of the thread alone.
  std::unique_ptr<ViewedCamera> m_camera;
  GrowingPauses m_pauses{GrowingPauses::Limits()};
  AreaPool m_areas;
  std::uint64_t m_frames = 0;
  RateMeter m_rate;
  int m_failures_in_a_row = 0;
  Clock::time_point m_awaited_since;  // of the image that is on its way
  bool m_is_awaited = false;
  Clock::time_point m_next_figures;
  std::thread m_thread;
};

}  // namespace Kelcam
