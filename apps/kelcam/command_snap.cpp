// command_snap.cpp
// kelcam snap: images as files.
#include <algorithm>
#include <chrono>
#include <iostream>

#include "acquisition_run.h"
#include "camera_session.h"
#include "camera_setup.h"
#include "commands.h"
#include "interrupt.h"
#include "picture.h"
#include "report.h"
#include "utf8.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct ImageResult {
  int number = 0;
  std::string file;
  std::optional<Fault> fault;  // none: the file holds the picture
  BSize size;
  Milliseconds time{0.0};  // from start-snap (continuous: from snap) until the image was there
};

// Takes the images of one command. Every image tried has a result; a failed one does not keep the next from being
// tried.
class PictureSeries {
 public:
  PictureSeries(const Options& options, const CameraSession& camera)
      : m_options(options),
        m_camera(camera),
        m_kind(PictureKind(options, camera.Device())),
        m_pattern(options.pattern, options.images),
        m_progress(options.images > 1 && !options.verbose),
        m_lost(options.retries) {}

  void TakeSingle(TriggerChoice trigger) {
    for (int number = 1; MayTake(number); ++number) {
      const Clock::time_point start = Clock::now();
      AcquisitionRun run(m_camera, true, trigger);
      ImageResult result{number, {}, run.StartFault(), {}, {}};
      const BSmartRef<BBaseAoi> area = Snap(run, result);
      result.time = Clock::now() - start;
      KeepFirst(result.fault, run.Stop());
      Finish(*area, std::move(result));
    }
    PrintRunFault();
  }

  void TakeContinuous(TriggerChoice trigger) {
    AcquisitionRun run(m_camera, false, trigger);
    m_fault = run.StartFault();
    for (int number = 1; MayTake(number); ++number) {
      const Clock::time_point start = Clock::now();
      ImageResult result{number, {}, std::nullopt, {}, {}};
      const BSmartRef<BBaseAoi> area = Snap(run, result);
      result.time = Clock::now() - start;
      Finish(*area, std::move(result));
    }
    KeepFirst(m_fault, run.Stop());
    PrintRunFault();
  }

  const std::vector<ImageResult>& Results() const { return m_results; }
  const std::optional<Fault>& RunFault() const { return m_fault; }
  BBaseAoi::Kind Kind() const { return m_kind; }
  int Taken() const {
    return static_cast<int>(std::count_if(m_results.begin(), m_results.end(), [](const auto& r) { return !r.fault; }));
  }
  bool HasFailed() const { return m_fault || Taken() < static_cast<int>(m_results.size()); }

 private:
  static void KeepFirst(std::optional<Fault>& fault, std::optional<Fault> later) {
    if (!fault) fault = std::move(later);
  }

  // A run that has failed as a whole takes no more.
  bool MayTake(int number) const { return !m_fault && number <= m_options.images && !Interrupted(); }

  void PrintRunFault() const {
    if (m_fault) std::cerr << m_fault->Sentence() << "\n" << m_fault->reason.Text();
  }

  // A new area for each image: no picture of an earlier one can be taken for it.
  BSmartRef<BBaseAoi> Snap(AcquisitionRun& run, ImageResult& result) {
    m_progress.Show("image " + std::to_string(result.number) + " of " + std::to_string(m_options.images));
    BSmartRef<BBaseAoi> area(new BBaseAoi(m_kind, Wide(m_options.area_text)));
    if (!result.fault) result.fault = run.Snap(*area, m_options.timeout);
    return area;
  }

  void Finish(BBaseAoi& area, ImageResult result) {
    const std::filesystem::path file = m_pattern.File(result.number);
    result.file = Utf8(file);
    try {
      if (!result.fault) WritePicture(area, m_pattern.Format(), file);
      result.size = area.ImageSize();
    } catch (const Failure& failure) {
      result.fault = failure.What();
    }
    m_progress.Wipe();
    Print(result);
    if (m_lost.IsLostAfter(result.fault && m_camera.LooksGone())) m_fault = m_lost.AsFault();
    m_results.push_back(std::move(result));
  }

  // A reason with the same next step as that of the failure before is not printed again.
  void Print(const ImageResult& result) {
    if (result.fault) {
      std::cerr << result.fault->Sentence();
      if (m_options.images > 1) std::cerr << " (image " << result.number << ")";
      std::cerr << "\n";
      const Reason& reason = result.fault->reason;
      if (reason.to_do != m_last_to_do) std::cerr << reason.Text();
      m_last_to_do = reason.to_do;
    } else if (!m_options.json) {
      std::cout << result.file << ": " << result.size.width << " x " << result.size.height << ", " << NameOf(m_kind)
                << ", " << Fixed(result.time.count(), 0) << " ms" << std::endl;
    }
  }

  const Options& m_options;
  const CameraSession& m_camera;
  const BBaseAoi::Kind m_kind;
  const FilePattern m_pattern;
  ProgressLine m_progress;
  std::vector<ImageResult> m_results;
  LostCamera m_lost;
  std::string m_last_to_do;
  std::optional<Fault> m_fault;  // of the run as a whole
};

Json ToJson(const ImageResult& result) {
  if (result.fault) return {{"number", result.number}, {"error", ToJson(*result.fault)}};
  return {{"number", result.number},
          {"file", result.file},
          {"width", result.size.width},
          {"height", result.size.height},
          {"milliseconds", result.time.count()}};
}

Json ToJson(const PictureSeries& series, const std::string& camera) {
  Json images = Json::array();
  for (const ImageResult& result : series.Results()) images.push_back(ToJson(result));
  Json document = {{"camera", camera},
                   {"kind", NameOf(series.Kind())},
                   {"images", images},
                   {"taken", series.Taken()},
                   {"interrupted", Interrupted()}};
  if (series.RunFault()) document["error"] = ToJson(*series.RunFault());
  return document;
}

}  // namespace

ExitCode RunSnap(const Options& options, const Module& module, const MessageLog& log) {
  CheckFolder(FilePattern(options.pattern, options.images).File(1));
  const CameraSession camera(module, log, options.profile_file);
  BImagingDevice& device = camera.Device();
  {
    const CallWatch::Call call(camera.Watch(), Operation::kControls);
    SetUpCamera(options, device);
  }
  const bool single = options.mode == SnapMode::kSingle;
  const TriggerChoice trigger = options.trigger.value_or(single ? TriggerChoice::kSoftware : TriggerChoice::kFree);
  const TriggerSetting trigger_setting(device, trigger, options.trigger.has_value());
  PictureSeries series(options, camera);
  single ? series.TakeSingle(trigger) : series.TakeContinuous(trigger);
  if (options.json) PrintDocument(ToJson(series, Utf8(WString(device.Name()))));
  if (options.images > 1 || series.HasFailed()) {
    std::cerr << series.Taken() << " of " << Counted(static_cast<std::uint64_t>(options.images), "image") << " taken\n";
  }
  return series.HasFailed() ? kFailed : kDone;
}

}  // namespace Kelcam
