// picture_series.cpp
// The images of one snap command: taken one after the other, written while the next is taken.
#include "snap/picture_series.h"

#include <algorithm>
#include <utility>

#include "base/interrupt.h"
#include "base/utf8.h"
#include "commands/camera_setup.h"
#include "picture/picture.h"
#include "picture/picture_file.h"
#include "picture/raw_frame.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

// Each holds the memory of a picture.
constexpr std::size_t kMostWaitingPictures = 4;

std::optional<int> FrameOrderOf(const CameraSession& camera) {
  if (!camera.Device().IsColor()) return std::nullopt;
  return BayerOrderOf(camera.Profile());
}

void KeepFirst(std::optional<Fault>& fault, std::optional<Fault> later) {
  if (!fault) fault = std::move(later);
}

}  // namespace

PictureSeries::PictureSeries(const Options& options, LastingCamera& camera, PlaceOnScreen place)
    : m_options(options),
      m_camera(camera),
      m_pattern(options.pattern, options.format, options.images),
      m_kind(options.raw ? BBaseAoi::eRgb : PictureKind(options, camera.Session().Device())),
      m_kind_name(options.raw ? "raw" : NameOf(m_kind)),
      m_area_text(options.raw ? kRawAreaText : options.area_text),
      m_bayer_order(FrameOrderOf(camera.Session())),
      m_details(DetailsOf(camera.Session().Device())),
      m_schedule(options.interval),
      m_report(options, m_kind_name, std::move(place)),
      m_writing(kMostWaitingPictures) {}

void PictureSeries::CheckFiles(const Options& options, const BImagingDevice* camera) {
  const FilePattern pattern(options.pattern, options.format, options.images);
  if (pattern.IsStandardOutput() || pattern.NamesCamera() != (camera != nullptr)) return;
  const auto file = [&](int number, int second) {
    PictureIdentity picture = camera ? IdentityOf(*camera) : PictureIdentity();
    picture.number = number;
    picture.time += std::chrono::seconds(second);
    return pattern.File(picture);
  };
  const bool folder_has_time = file(1, 0).parent_path() != file(1, 1).parent_path();
  if (!folder_has_time) CheckFolder(file(1, 0));
  if (!options.no_clobber || pattern.HasTime()) return;
  for (int number = 1; number <= options.images; ++number) CheckIsNew(file(number, 0));
}

void PictureSeries::TakeSingle(TriggerChoice trigger) {
  m_figures.Start();
  for (int number = 1; number <= m_options.images && WaitForTurn(number); ++number) {
    TakeImage(number, [&](TakenImage& image) {
      const Clock::time_point start = Clock::now();
      AcquisitionRun run(m_camera.Session(), true, trigger);
      image.result.fault = run.StartFault();
      Snap(run, image);
      image.result.time = Clock::now() - start;
      NoteRate(image);
      KeepFirst(image.result.fault, run.Stop());
    });
  }
  Finish();
}

void PictureSeries::TakeContinuous(TriggerChoice trigger) {
  m_figures.Start();
  const auto start = [&] { return m_run.emplace(m_camera.Session(), false, trigger).StartFault(); };
  if (!m_options.keep_going) m_run_fault = start();
  for (int number = 1; !m_run_fault && number <= m_options.images && WaitForTurn(number); ++number) {
    TakeImage(number, [&](TakenImage& image) {
      if (!m_run) image.result.fault = start();
      const Clock::time_point begin = Clock::now();
      Snap(*m_run, image);
      image.result.time = Clock::now() - begin;
      NoteRate(image);
      if (m_run->StartFault()) m_run.reset();
    });
  }
  if (m_run) KeepFirst(m_run_fault, m_run->Stop());
  m_run.reset();
  Finish();
}

void PictureSeries::Finish() {
  m_writing.Finish();
  if (!m_run_fault) return;
  m_figures.AddRunFault(*m_run_fault);
  m_report.AddRunFault(*m_run_fault);
}

bool PictureSeries::IsOver() const { return m_is_over || m_run_fault || Interrupted(); }

bool PictureSeries::WaitForTurn(int number) {
  if (!m_schedule.WaitForNext([this] { return IsOver(); })) return false;
  if (const std::int64_t missed = m_schedule.Missed()) {
    const std::string text = "image " + std::to_string(number) +
                             " is late: " + Counted(static_cast<std::uint64_t>(missed), "turn") +
                             " of --interval passed before it";
    m_writing.Push([this, text] { m_report.Notice(text); });
  }
  return true;
}

template <class Take>
void PictureSeries::TakeImage(int number, const Take& take) {
  for (int tries = 1;; ++tries) {
    TakenImage image;
    image.result.number = number;
    image.result.tries = tries;
    m_report.ShowProgress(number);
    take(image);
    m_figures.AddSnap(image.result.fault, image.rate_bytes_per_s);
    const bool is_lost = m_camera.IsLostAfter(image.result.fault);
    if (is_lost && !m_options.reconnect) m_run_fault = m_camera.Loss();
    const bool again = Settle(image, is_lost);
    if (is_lost && m_options.reconnect) AwaitReturn();
    if (!again) return;
    if (!IsOver()) continue;
    m_writing.Push([this, image] { FinishImage(image); });
    return;
  }
}

bool PictureSeries::Settle(const TakenImage& image, bool is_lost) {
  const bool ends = is_lost && !m_options.reconnect;
  if (image.result.fault && !ends && image.result.tries <= m_options.retries && !Interrupted()) {
    m_writing.Push([this, result = image.result] { NoticeRetry(result); });
    return true;
  }
  if (image.result.fault && m_options.fail_fast) m_is_over = true;
  m_writing.Push([this, image] { FinishImage(image); });
  return false;
}

// A new area for each image: no picture of an earlier one can be taken for it.
void PictureSeries::Snap(AcquisitionRun& run, TakenImage& image) {
  image.area = BSmartRef<BBaseAoi>(new BBaseAoi(m_kind, Wide(m_area_text)));
  if (!image.result.fault) image.result.fault = run.Snap(*image.area, m_options.timeout);
  // No two images have the same time: it may be all that their names differ in.
  const std::chrono::system_clock::time_point not_before = m_last_arrival + std::chrono::milliseconds(1);
  image.result.arrived = std::max(std::chrono::system_clock::now(), not_before);
  m_last_arrival = image.result.arrived;
}

void PictureSeries::AwaitReturn() {
  m_run.reset();
  const auto add_event = [this](const CameraEvent& event) {
    m_writing.Push([this, event] { m_report.AddEvent(event); });
  };
  const auto notice = [this](const std::string& text) { m_writing.Push([this, text] { m_report.Notice(text); }); };
  if (!m_camera.AwaitReturn([this] { return IsOver(); }, add_event, notice)) {
    m_run_fault = m_camera.Loss();
    return;
  }
  // What is still being written has the details of the camera that took it.
  m_writing.Finish();
  m_bayer_order = FrameOrderOf(m_camera.Session());
  m_details = DetailsOf(m_camera.Session().Device());
}

void PictureSeries::NoteRate(TakenImage& image) {
  if (m_options.cameras.size() < 2) return;
  const CallWatch::Call call(m_camera.Session().Watch(), Operation::kControls);
  image.rate_bytes_per_s = m_camera.Session().Device().GetBandwidth();
}

void PictureSeries::NoticeRetry(const ImageResult& result) {
  m_report.Notice("image " + std::to_string(result.number) + " is tried again (" + std::to_string(result.tries) +
                  " of " + std::to_string(m_options.retries) + "): " + result.fault->Sentence());
}

void PictureSeries::FinishImage(TakenImage image) {
  if (!image.result.fault) {
    const Clock::time_point start = Clock::now();
    try {
      Write(image);
    } catch (...) {
      image.result.fault = FaultOfCurrentException();
      // What follows on a broken stream reaches nobody.
      if (m_options.fail_fast || m_pattern.IsStandardOutput()) m_is_over = true;
    }
    image.result.writing = Clock::now() - start;
  }
  m_report.Add(std::move(image.result));
}

void PictureSeries::Write(TakenImage& image) {
  PictureDetails details = m_details;
  details.time = image.result.arrived;
  Pixels pixels = PixelsOf(*image.area);
  std::optional<RawFrame> frame;
  if (m_options.raw) {
    frame = RawFrameOf(*image.area->Rgb(), m_bayer_order);
    details.bayer_order = frame->bayer_order;
    pixels = frame->View();
  }
  image.result.size = pixels.size;
  const std::vector<std::uint8_t> bytes = Encode(pixels, m_pattern.Format(), details);
  if (m_pattern.IsStandardOutput()) {
    image.result.file = m_pattern.Text();
    return WriteToStandardOutput(bytes);
  }
  const std::filesystem::path file =
      m_pattern.File({image.result.number, details.time, details.serial, details.camera});
  image.result.file = Utf8(file);
  WritePictureFile(file, bytes, m_options.no_clobber ? ExistingFile::kStays : ExistingFile::kIsReplaced);
}

}  // namespace Kelcam
