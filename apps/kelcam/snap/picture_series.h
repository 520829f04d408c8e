// picture_series.h
// The images of one snap command: taken one after the other, written while the next is taken.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

#include "base/failure.h"
#include "base/job_queue.h"
#include "bbaseaoi.h"
#include "bsmartref.h"
#include "commands/command_line.h"
#include "commands/lasting_camera.h"
#include "device/acquisition_run.h"
#include "picture/file_pattern.h"
#include "picture/picture_details.h"
#include "snap/schedule.h"
#include "snap/snap_figures.h"
#include "snap/snap_report.h"

namespace Kelcam {

// Every image tried has a result; a failed one does not keep the next from being tried, unless the options say so.
class PictureSeries {
 public:
  // The camera must be open, and outlive the object.
  PictureSeries(const Options& options, LastingCamera& camera, PlaceOnScreen place);

  // Throws Failure when a picture's name is taken, or its folder is not there, as far as that is known: before the
  // camera is open, which is null then, or later.
  static void CheckFiles(const Options& options, const BImagingDevice* camera);

  // [one thread] Return when all images are written.
  void TakeSingle(TriggerChoice trigger);
  void TakeContinuous(TriggerChoice trigger);

  // After that:
  const SnapReport& Report() const { return m_report; }
  const SnapFigures& Figures() const { return m_figures; }
  const std::optional<Fault>& RunFault() const { return m_run_fault; }
  const std::string& KindName() const { return m_kind_name; }
  bool HasFailed() const { return m_run_fault || m_report.HasFailed(); }

 private:
  struct TakenImage {
    ImageResult result;
    BSmartRef<BBaseAoi> area;
    std::int64_t rate_bytes_per_s = 0;  // of the stream, during the snap; 0: not asked for
  };

  // No further image is to be taken.
  bool IsOver() const;
  bool WaitForTurn(int number);
  template <class Take>
  void TakeImage(int number, const Take& take);
  void Snap(AcquisitionRun& run, TakenImage& image);
  // Whether the image is to be taken again. Otherwise it has its place among the results.
  bool Settle(const TakenImage& image, bool is_lost);
  // Waits for a lost camera. The series is over when it does not come back.
  void AwaitReturn();
  void Finish();
  // Asks a camera that is one of several for its stream rate, which stop-snap adapts.
  void NoteRate(TakenImage& image);
  void NoticeRetry(const ImageResult& result);

  // [the queue's thread]
  void FinishImage(TakenImage image);
  void Write(TakenImage& image);

  const Options& m_options;
  LastingCamera& m_camera;
  const FilePattern m_pattern;
  const BBaseAoi::Kind m_kind;  // of the areas
  const std::string m_kind_name;
  const std::string m_area_text;
  std::optional<int> m_bayer_order;     // of a colour camera's raw frames
  PictureDetails m_details;             // of all images until the camera is another one
  std::optional<AcquisitionRun> m_run;  // of a continuous run
  Schedule m_schedule;
  std::chrono::system_clock::time_point m_last_arrival;
  std::optional<Fault> m_run_fault;  // of a run as a whole
  SnapFigures m_figures;
  SnapReport m_report;
  std::atomic<bool> m_is_over = false;  // no further image is to be taken
  JobQueue m_writing;                   // last: its jobs use all of the above
};

}  // namespace Kelcam
